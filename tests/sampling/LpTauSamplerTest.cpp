#include "sampling/LpTauSampler.h"

#include <gtest/gtest.h>

#include "sampling/Designs.h"

namespace tarvex {
namespace {

TEST(LpTauSampler, takesThePointsFromNumberOne) {
  LpTauSampler sampler;
  sampler.setSamples(3);
  FactorList factors = listOf("scrs");
  const Table expected{{0.5, 101, 0, 0.5}, {0.25, 101, 0, 0.75}, {0.75, 101, 0, 0.25}};
  EXPECT_EQ(generated(sampler, factors), expected);
  EXPECT_EQ(sectionOf(sampler), "3\n2\n");
}

TEST(LpTauSampler, givesCoordinatesInTheOrderOfTheDependenceTree) {
  LpTauSampler sampler;
  sampler.setSamples(2);
  FactorList factors = listOf("sss");
  factors.correlationMode = kDependenceTree;
  ASSERT_TRUE(factors.link(0, 2, 0.5));
  // The order is 1, 2, 0.
  EXPECT_EQ(generated(sampler, factors), (Table{{0.5, 0.5, 0.5}, {0.25, 0.25, 0.75}}));
}

TEST(LpTauSampler, failsAtTheFirstRunBeyond370Dimensions) {
  LpTauSampler sampler;
  sampler.setSamples(2);
  FactorList most = listOf(std::string(370, 's') + "c");
  EXPECT_EQ(generated(sampler, most).size(), 2U);
  FactorList tooMany = listOf(std::string(371, 's'));
  EXPECT_EQ(refusal(sampler, tooMany), "Sample number 1%: generation failed");
  FactorList none = listOf("cc");
  EXPECT_EQ(refusal(sampler, none), "Sample number 1%: generation failed");
}

}  // namespace
}  // namespace tarvex
