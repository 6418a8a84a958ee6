#include "sampling/FixedSampler.h"

#include <gtest/gtest.h>

#include "sampling/Designs.h"

namespace tarvex {
namespace {

TEST(FixedSampler, handsOverTheTypedNumbersToAListOfTheirWidth) {
  const Table rows{{0.1, -3.0, 1e300}, {1.0 / 3.0, 0.0, 2.5}};
  FixedSampler sampler;
  sampler.setNumFactors(3);
  for (const std::vector<double>& row : rows) EXPECT_TRUE(sampler.addRow(row));
  EXPECT_FALSE(sampler.addRow({1.0, 2.0}));
  EXPECT_TRUE(sampler.setSamples(2));
  FactorList factors = listOf("scr");
  EXPECT_EQ(generated(sampler, factors), rows);

  FactorList wider = listOf("ssss");
  EXPECT_EQ(refusal(sampler, wider), "The fixed samples have another number of factors than the list");
  sampler.setNumFactors(3);
  EXPECT_EQ(sampler.values().rows(), 2) << "opening the panel again shows the rows typed earlier";
  sampler.setNumFactors(4);
  EXPECT_EQ(sampler.values().rows(), 0);
  sampler.setSamples(0);
  EXPECT_EQ(refusal(sampler, wider), "  No samples to generate");
}

}  // namespace
}  // namespace tarvex
