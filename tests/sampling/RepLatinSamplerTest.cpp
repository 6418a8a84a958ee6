#include "sampling/RepLatinSampler.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "sampling/Designs.h"

namespace tarvex {
namespace {

FactorList correlated(const char* kinds) {
  FactorList factors = listOf(kinds);
  factors.correlationMode = kImanConover;
  for (std::int32_t i = 1; i < factors.correlatableCount(); ++i) {
    factors.setMatrix(i - 1, i, 0.3f);
    factors.setMatrix(i, i - 1, 0.3f);
  }
  return factors;
}

TEST(RepLatinSampler, replicatesPermuteTheBaseBlockAndTheRunTableSaysHow) {
  const char* const kinds = "csrsss";
  for (const auto& [m, r] : {std::pair{1, 1}, {1, 4}, {9, 1}, {2, 7}, {25, 6}, {100, 3}}) {
    SCOPED_TRACE(std::to_string(m) + " by " + std::to_string(r));
    FactorList factors = correlated(kinds);
    RepLatinSampler sampler;
    EXPECT_TRUE(sampler.setBaseDesign(m));
    sampler.setReplications(r);
    const Table runs = generated(sampler, factors, 1.0);
    ASSERT_EQ(runs.size(), static_cast<std::size_t>(m) * static_cast<std::size_t>(r));
    for (const std::int32_t factor : stochasticOf(kinds)) {
      const std::vector<double> column = columnOf(runs, factor);
      std::vector<double> values(column.begin(), column.begin() + m);
      std::sort(values.begin(), values.end());
      for (std::int32_t rank = 0; rank < m; ++rank) {
        EXPECT_EQ(std::floor(values[static_cast<std::size_t>(rank)] * m), rank);
        const std::int32_t* run = sampler.runOf(factor, rank);
        ASSERT_NE(run, nullptr);
        for (std::int32_t i = 0; i < r; ++i) {
          EXPECT_EQ(run[i] / m, i);
          EXPECT_EQ(column[static_cast<std::size_t>(run[i])], values[static_cast<std::size_t>(rank)]);
        }
      }
    }
    if (m == 25) {
      const std::vector<double> column = columnOf(runs, 1);
      EXPECT_FALSE(std::equal(column.begin(), column.begin() + 25, column.begin() + 25)) << "ranks of its own";
    }
    for (const auto& [factor, rank] : {std::pair{-1, 0}, {6, 0}, {1, -1}, {1, m}})
      EXPECT_EQ(sampler.runOf(factor, rank), nullptr);
  }
}

TEST(RepLatinSampler, settingsThatGiveNoDesign) {
  FactorList factors = correlated("ss");
  RepLatinSampler sampler;
  EXPECT_FALSE(sampler.setBaseDesign(0));
  for (const auto& [m, r] : {std::pair{6, 0}, {2147483647, 2147483647}}) {
    EXPECT_TRUE(sampler.setBaseDesign(m));
    sampler.setReplications(r);
    EXPECT_EQ(refusal(sampler, factors), "  No samples to generate");
  }
  sampler.setChoice(1);
  sampValues store;
  ASSERT_TRUE(store.allocate(2));
  factors.prepareOrder();
  EXPECT_EQ(sampler.generate(50.0, store, factors), 0.0);
  EXPECT_FALSE(sampler.hasRunTable());
}

}  // namespace
}  // namespace tarvex
