#include "sampling/FixedSampler.h"

#include <gtest/gtest.h>

#include "sampling/Designs.h"

namespace tarvex {
namespace {

FixedSampler typed(const Table& rows) {
  FixedSampler sampler;
  sampler.setNumFactors(static_cast<std::int32_t>(rows.front().size()));
  for (const std::vector<double>& row : rows) EXPECT_TRUE(sampler.addRow(row));
  EXPECT_TRUE(sampler.setSamples(static_cast<std::int32_t>(rows.size())));
  return sampler;
}

TEST(FixedSampler, handsOverExactlyTheTypedNumbers) {
  const Table rows{{0.1, -3.0, 1e300}, {1.0 / 3.0, 0.0, 2.5}};
  FixedSampler sampler = typed(rows);
  FactorList factors = listOf("scr");
  EXPECT_EQ(generated(sampler, factors), rows);
  EXPECT_EQ(sampler.copyRow(1), rows[1]);
  EXPECT_TRUE(sampler.copyRow(2).empty());
  EXPECT_FALSE(sampler.addRow({1.0, 2.0}));
  EXPECT_EQ(sampler.values().rows(), 2);
}

TEST(FixedSampler, dropsItsRowsWithTheWidthOfTheList) {
  FixedSampler sampler = typed({{1.0, 2.0}});
  sampler.setNumFactors(2);
  EXPECT_EQ(sampler.values().rows(), 1);  // opening the panel again shows the rows typed earlier
  FactorList wider = listOf("sss");
  EXPECT_EQ(refusal(sampler, wider), "The fixed samples have another number of factors than the list");
  sampler.setNumFactors(3);
  EXPECT_EQ(sampler.values().rows(), 0);
  EXPECT_TRUE(sampler.addRow({1.0, 2.0, 3.0}));
  sampler.clearRows();
  EXPECT_EQ(sampler.values().columns(), 3);
  sampler.setSamples(0);
  EXPECT_EQ(refusal(sampler, wider), "  No samples to generate");
}

TEST(FixedSampler, writesItsTableByRunAndByFactor) {
  FixedSampler sampler = typed({{0.5, 2.0}, {1.0 / 3.0, 4.0}});
  EXPECT_EQ(sectionOf(sampler), "2\n2\n2\n2\n0\n0.5\t2\t\n0.3333333333\t4\t\n");
  EXPECT_TRUE(sampler.setOrder(1));
  EXPECT_EQ(sectionOf(sampler), "2\n2\n2\n2\n1\n0.5\t0.3333333333\t\n2\t4\t\n");
  FixedSampler back;
  ASSERT_TRUE(readSection(back, sectionOf(sampler)));
  EXPECT_EQ(back.copyRow(1), (std::vector<double>{0.3333333333, 4.0}));
  EXPECT_EQ(sectionOf(back), sectionOf(sampler));
}

TEST(FixedSampler, refusesATableOfAnotherWidth) {
  FixedSampler sampler;
  EXPECT_FALSE(readSection(sampler, "1\n3\n1\n2\n0\n0.5\t2\t\n"));
  EXPECT_EQ(sampler.numFactors, 0);
  EXPECT_EQ(sampler.values().rows(), 0);
}

}  // namespace
}  // namespace tarvex
