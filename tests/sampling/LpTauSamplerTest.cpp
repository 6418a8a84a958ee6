#include "sampling/LpTauSampler.h"

#include <gtest/gtest.h>

#include "sampling/Designs.h"

namespace tarvex {
namespace {

TEST(LpTauSampler, takesThePointsFromNumberOneInTheOrderOfTheList) {
  LpTauSampler sampler;
  sampler.setSamples(3);
  FactorList factors = listOf("scrs");
  const Table expected{{0.5, 101, 0, 0.5}, {0.25, 101, 0, 0.75}, {0.75, 101, 0, 0.25}};
  EXPECT_EQ(generated(sampler, factors), expected);
  FactorList tree = listOf("sss");
  tree.correlationMode = kDependenceTree;
  ASSERT_TRUE(tree.link(0, 2, 0.5));  // the order is 1, 2, 0
  EXPECT_EQ(generated(sampler, tree)[1], (std::vector<double>{0.25, 0.25, 0.75}));
}

TEST(LpTauSampler, failsAtTheFirstRunBeyond370Dimensions) {
  LpTauSampler sampler;
  sampler.setSamples(2);
  FactorList most = listOf(std::string(370, 's') + "c");
  EXPECT_EQ(generated(sampler, most).size(), 2U);
  for (const std::string& kinds : {std::string(371, 's'), std::string("cc")}) {
    FactorList factors = listOf(kinds);
    EXPECT_EQ(refusal(sampler, factors), "Sample number 1%: generation failed");
  }
}

}  // namespace
}  // namespace tarvex
