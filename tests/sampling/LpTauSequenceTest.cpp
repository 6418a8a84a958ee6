#include "sampling/LpTauSequence.h"

#include <random>

#include "sampling/LpTauDirections.h"
#include "support/Test.h"

namespace tarvex {
namespace {

std::vector<double> pointAt(LpTauSequence& sequence, std::int32_t n, std::int32_t dimension) {
  std::vector<double> point;
  EXPECT_TRUE(sequence.lpTauPoint(n, dimension, point)) << n;
  return point;
}

TEST(LpTauDirections, agreeWithThePublishedRows) {
  struct Row {
    std::size_t bit;
    std::int32_t columns[6];
  };
  for (const Row& row : {
           Row{1, {0x60000000, 0x20000000, 0x60000000, 0x20000000, 0x60000000, 0x20000000}},
           Row{2, {0x70000000, 0x70000000, 0x10000000, 0x50000000, 0x30000000, 0x30000000}},
           Row{3, {0x78000000, 0x08000000, 0x48000000, 0x78000000, 0x28000000, 0x38000000}},
           Row{30, {0x7FFFFFFF, 0x7FFFFFFF, 0x45005555, 0x50042483, 0x3004FF8F, 0x40333333}},
       })
    for (std::size_t j = 0; j < 6; ++j) EXPECT_EQ(kLpTauDirections[row.bit][j], row.columns[j]) << row.bit << ' ' << j;
}

// Each aligned run of 2^m points has one point in each dyadic interval of length 2^-m, in every dimension.
TEST(LpTauSequence, isBalancedInAllDimensions) {
  for (int m = 0; m <= 11; ++m) {
    const std::int32_t count = 1 << m;
    for (const std::int32_t first : {0, count, 5 * count}) {
      LpTauSequence sequence;
      std::vector<std::vector<int>> hits(LpTauSequence::kMaxDimension, std::vector<int>(1U << m, 0));
      for (std::int32_t n = first; n < first + count; ++n) {
        const std::vector<double> point = pointAt(sequence, n, LpTauSequence::kMaxDimension);
        for (std::size_t j = 0; j < point.size(); ++j) ++hits[j][static_cast<std::size_t>(point[j] * count)];
      }
      for (std::size_t j = 0; j < hits.size(); ++j)
        ASSERT_EQ(hits[j], std::vector<int>(hits[j].size(), 1)) << "dimension " << j << ", points from " << first;
    }
  }
}

TEST(LpTauSequence, givesTheSamePointByJumpAndByStep) {
  constexpr std::int32_t kDimension = 40;
  constexpr std::int32_t kPoints = 600;
  LpTauSequence stepped;
  std::vector<std::vector<double>> points;
  for (std::int32_t n = 0; n < kPoints; ++n) points.push_back(pointAt(stepped, n, kDimension));
  LpTauSequence jumping;
  EXPECT_EQ(pointAt(jumping, 3, 3), (std::vector<double>{0.75, 0.25, 0.75}));
  std::minstd_rand random(3);
  for (int i = 0; i < 2000; ++i) {
    // Repeats, successors, and a wider point after a narrow one.
    const auto n = static_cast<std::int32_t>(random() % (kPoints - 3));
    const auto dimension = static_cast<std::int32_t>(1 + random() % kDimension);
    for (std::int32_t next = n; next < n + 3; ++next) {
      std::vector<double> expected = points[static_cast<std::size_t>(next)];
      const std::int32_t size = next == n + 2 ? kDimension : dimension;
      expected.resize(static_cast<std::size_t>(size));
      ASSERT_EQ(pointAt(jumping, next, size), expected) << next << ' ' << size;
    }
  }
}

TEST(LpTauSequence, refusesWhatItHasNoDirectionsFor) {
  LpTauSequence sequence;
  std::vector<double> point;
  for (const auto& [n, dimension] : {std::pair{-1, 5}, {7, 0}, {7, 371}})
    EXPECT_FALSE(sequence.lpTauPoint(n, dimension, point));
  EXPECT_GT(pointAt(sequence, 2147483647, 1)[0], 0.0);  // the last index uses all 31 bits
}

}  // namespace
}  // namespace tarvex
