#include "sampling/RepLatinSampler.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "sampling/Designs.h"

namespace tarvex {
namespace {

RepLatinSampler configured(std::int32_t baseDesign, std::int32_t replications) {
  RepLatinSampler sampler;
  EXPECT_TRUE(sampler.setBaseDesign(baseDesign));
  sampler.setReplications(replications);
  return sampler;
}

FactorList correlated(const char* kinds) {
  FactorList factors = listOf(kinds);
  factors.correlationMode = kImanConover;
  for (std::int32_t i = 1; i < factors.correlatableCount(); ++i) {
    factors.setMatrix(i - 1, i, 0.3f);
    factors.setMatrix(i, i - 1, 0.3f);
  }
  return factors;
}

struct Size {
  std::int32_t m;
  std::int32_t r;
};

TEST(RepLatinSampler, replicatesPermuteTheBaseBlockAndTheRunTableSaysHow) {
  const char* const kinds = "csrsss";
  for (const Size& size : {Size{1, 1}, Size{1, 4}, Size{9, 1}, Size{2, 7}, Size{25, 6}, Size{100, 3}}) {
    SCOPED_TRACE(std::to_string(size.m) + " by " + std::to_string(size.r));
    FactorList factors = correlated(kinds);
    RepLatinSampler sampler = configured(size.m, size.r);
    const Table runs = generated(sampler, factors, 1.0);
    ASSERT_EQ(runs.size(), static_cast<std::size_t>(size.m) * static_cast<std::size_t>(size.r));
    EXPECT_EQ(sampler.numSamples, size.m * size.r);
    for (const std::int32_t factor : stochasticOf(kinds)) {
      const std::vector<double> column = columnOf(runs, factor);
      std::vector<double> values(column.begin(), column.begin() + size.m);
      std::sort(values.begin(), values.end());
      for (std::int32_t rank = 0; rank < size.m; ++rank) {
        EXPECT_EQ(std::floor(values[static_cast<std::size_t>(rank)] * size.m), rank);
        const std::int32_t* run = sampler.runOf(factor, rank);
        ASSERT_NE(run, nullptr);
        for (std::int32_t i = 0; i < size.r; ++i) {
          EXPECT_EQ(run[i] / size.m, i);
          EXPECT_EQ(column[static_cast<std::size_t>(run[i])], values[static_cast<std::size_t>(rank)]);
        }
      }
    }
    for (std::int32_t rank = 0; rank < size.m; ++rank)
      EXPECT_TRUE(
          std::all_of(sampler.runOf(0, rank), sampler.runOf(0, rank) + size.r, [](int run) { return run == 0; }));
    if (size.m == 25) {
      // Each replicate has ranks of its own.
      const std::vector<double> column = columnOf(runs, 1);
      EXPECT_FALSE(std::equal(column.begin(), column.begin() + 25, column.begin() + 25));
    }
    EXPECT_EQ(sampler.hasRunTable(), size.m * size.r > 1);
    for (const auto& [factor, rank] : {std::pair{-1, 0}, {6, 0}, {1, -1}, {1, size.m}})
      EXPECT_EQ(sampler.runOf(factor, rank), nullptr);
  }
}

TEST(RepLatinSampler, elementsFollowTheFactorList) {
  FactorList factors = listOf("scsrs");
  RepLatinSampler sampler;
  sampler.synchronise(factors);
  ASSERT_EQ(sampler.elements().size(), 5u);
  EXPECT_TRUE(sampler.setElementFlag(4, 1));
  EXPECT_FALSE(sampler.setElementFlag(5, 1));
  EXPECT_EQ(sampler.errorText, "index out of range");
  FactorList fewer = listOf("sc");
  fewer.factor(0).name = "f4";
  sampler.synchronise(fewer);
  EXPECT_EQ(sampler.elementFlag(0), 1);
  EXPECT_EQ(*sampler.elementName(0), "f4");
  EXPECT_EQ(sampler.elementFlag(1), -1);
  EXPECT_EQ(sampler.elementFlag(2), -2);
  EXPECT_EQ(sampler.elementName(-1), nullptr);
}

TEST(RepLatinSampler, settingsAndTheirResets) {
  FactorList factors = correlated("ss");
  RepLatinSampler sampler = configured(6, 3);
  const Table first = generated(sampler, factors);
  EXPECT_TRUE(sampler.hasRunTable());
  sampler.setReplications(3);
  EXPECT_FALSE(sampler.setBaseDesign(0));
  EXPECT_EQ(sampler.baseDesign(), 6);
  EXPECT_TRUE(sampler.hasRunTable());
  EXPECT_TRUE(sampler.setBaseDesign(6));
  EXPECT_FALSE(sampler.hasRunTable());
  sampler.setNumFactors(0);
  EXPECT_EQ(sampler.numFactors, 2);
  sampler.setReplications(0);
  EXPECT_EQ(refusal(sampler, factors), "  No samples to generate");
  EXPECT_TRUE(sampler.setBaseDesign(2147483647));
  sampler.setReplications(2147483647);
  EXPECT_EQ(refusal(sampler, factors), "  No samples to generate");

  RepLatinSampler chosen = configured(6, 3);
  chosen.setChoice(1);
  sampValues store;
  ASSERT_TRUE(store.allocate(2));
  factors.prepareOrder();
  EXPECT_EQ(chosen.generate(50.0, store, factors), 0.0);
  EXPECT_EQ(store.rows(), 0);
  EXPECT_FALSE(chosen.hasRunTable());
}

}  // namespace
}  // namespace tarvex
