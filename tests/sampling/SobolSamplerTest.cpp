#include "sampling/SobolSampler.h"

#include <gtest/gtest.h>

#include "sampling/Designs.h"
#include "sampling/LpTauSequence.h"
#include "sampling/combinations.h"

namespace tarvex {
namespace {

using Subset = std::vector<std::int32_t>;

SobolSampler configured(std::int32_t baseSize, std::int32_t k, std::int32_t kind, std::int32_t order = 1,
                        bool cheap = false) {
  SobolSampler sampler;
  EXPECT_TRUE(sampler.setBaseSize(baseSize) && sampler.setDesignKind(kind) && sampler.setOrder(order));
  EXPECT_TRUE(
      sampler.setSamples(static_cast<std::int32_t>(baseSize * SobolSampler::blockCount(k, order, kind, cheap))));
  return sampler;
}

// Block `block` of the design against block `from` with the columns `exchanged` of block `other`.
void expectBlock(const Table& runs, std::size_t baseSize, std::size_t block, std::size_t from, std::size_t other,
                 const Subset& exchanged) {
  for (std::size_t b = 0; b < baseSize; ++b) {
    std::vector<double> expected = runs[from * baseSize + b];
    for (const std::int32_t f : exchanged)
      expected[static_cast<std::size_t>(f)] = runs[other * baseSize + b][static_cast<std::size_t>(f)];
    ASSERT_EQ(runs[block * baseSize + b], expected) << "block " << block << ", row " << b;
  }
}

// Constants and relations before, between and behind the stochastic factors.
const char* const kLists[] = {"sss", "csss", "srscs", "rcs", "ssssssrc", "crsscssrsc"};

TEST(SobolSampler, exchangesOneColumnABlockForFirstAndTotalOrder) {
  for (const char* kinds : kLists) {
    SCOPED_TRACE(kinds);
    const Subset stochastic = stochasticOf(kinds);
    const auto k = static_cast<std::int32_t>(stochastic.size());
    SobolSampler sampler = configured(16, k, SobolSampler::kFirstAndTotal);
    FactorList factors = listOf(kinds);
    const Table runs = generated(sampler, factors);
    ASSERT_EQ(runs.size(), 16U * static_cast<std::size_t>(2 * k + 2));
    LpTauSequence sequence;
    std::vector<double> point;
    for (std::size_t b = 0; b < 16; ++b) {
      // The two base matrices are the halves of the points.
      ASSERT_TRUE(sequence.lpTauPoint(static_cast<std::int32_t>(b) + 1, 2 * k, point));
      for (std::size_t i = 0; i < stochastic.size(); ++i) {
        const auto f = static_cast<std::size_t>(stochastic[i]);
        EXPECT_EQ(runs[b][f], point[i]);
        EXPECT_EQ(runs[16 + b][f], point[stochastic.size() + i]);
      }
    }
    for (const std::vector<double>& run : runs)
      for (std::size_t i = 0; i < run.size(); ++i) {
        if (kinds[i] == 's') continue;
        EXPECT_EQ(run[i], kinds[i] == 'c' ? 100.0 + static_cast<double>(i) : 0.0);
      }
    for (std::size_t j = 0; j < stochastic.size(); ++j) {
      expectBlock(runs, 16, 2 + j, 1, 0, {stochastic[j]});
      expectBlock(runs, 16, 2 + stochastic.size() + j, 0, 1, {stochastic[j]});
    }
  }
}

TEST(SobolSampler, exchangesTheSubsetsInOrderUpToAnOrder) {
  for (const char* kinds : kLists) {
    const Subset stochastic = stochasticOf(kinds);
    const auto k = static_cast<std::int32_t>(stochastic.size());
    for (std::int32_t order = 1; order <= k; ++order)
      for (const bool cheap : {false, true}) {
        SCOPED_TRACE(std::string(kinds) + " to order " + std::to_string(order));
        SobolSampler sampler = configured(8, k, SobolSampler::kUpToOrder, order, cheap);
        FactorList factors = listOf(kinds);
        const Table runs = generated(sampler, factors, 1.0);
        std::size_t block = 2;
        for (std::int32_t size = 1; size <= order && size < k; ++size)
          for (const Subset& subset : combinations(stochastic, size)) {
            if ((block + 1) * 8 > runs.size()) break;  // the cheap design stops here
            expectBlock(runs, 8, block++, 1, 0, subset);
          }
        // Over one factor a third block stands without a subset.
        EXPECT_EQ(runs.size(), (k > 1 ? block : 3U) * 8);
      }
  }
}

TEST(SobolSampler, exchangesColumnsInListOrderUnderADependenceTree) {
  SobolSampler sampler = configured(8, 3, SobolSampler::kFirstAndTotal);
  FactorList factors = listOf("sss");
  factors.correlationMode = kDependenceTree;
  ASSERT_TRUE(factors.link(0, 2, 0.5));
  const Table runs = generated(sampler, factors);
  EXPECT_EQ(runs[1], (std::vector<double>{0.25, 0.25, 0.75}));  // coordinates in the tree's order 1, 2, 0
  for (std::int32_t j = 0; j < 3; ++j) expectBlock(runs, 8, static_cast<std::size_t>(2 + j), 1, 0, {j});
}

TEST(SobolSampler, countsBlocksOfManyFactors) {
  const auto count = [](std::int32_t k, std::int32_t order) {
    return SobolSampler::blockCount(k, order, SobolSampler::kUpToOrder, false);
  };
  EXPECT_EQ(count(4, 4), 2 + 4 + 6 + 4) << "the order of all factors has no block";
  EXPECT_EQ(count(185, 3), 2 + 185 + 17020 + 1038220);
  EXPECT_EQ(count(185, 90), SobolSampler::kManyBlocks);
}

TEST(SobolSampler, refusesWhatItHasNoPointsOrBlocksFor) {
  FactorList most = listOf(std::string(185, 's'));
  SobolSampler sampler = configured(1, 185, SobolSampler::kFirstAndTotal);
  EXPECT_EQ(generated(sampler, most).size(), 372U);
  FactorList tooMany = listOf(std::string(186, 's'));
  sampler = configured(1, 186, SobolSampler::kFirstAndTotal);
  EXPECT_EQ(refusal(sampler, tooMany), "Sample number 1%: generation failed");

  FactorList five = listOf("sssss");
  sampler = configured(16, 5, SobolSampler::kUpToOrder, 6);
  EXPECT_EQ(refusal(sampler, five), "  Incorrect order number, order too big.");
  sampler = configured(16, 4, SobolSampler::kFirstAndTotal);
  EXPECT_EQ(refusal(sampler, five), "The number of executions must be the base size times the number of blocks");
  SobolSampler empty;
  EXPECT_EQ(refusal(empty, five), "  No samples to generate");
}

}  // namespace
}  // namespace tarvex
