#include "base/sortPositions.h"

#include <gtest/gtest.h>

#include <cmath>

namespace tarvex {
namespace {

using Positions = std::vector<std::int32_t>;

TEST(SortPositions, EqualValuesKeepTheirOrderAndNansComeLast) {
  const std::vector<double> values = {2, NAN, -HUGE_VAL, 0.0, 2, -0.0, -NAN, HUGE_VAL, 1};
  EXPECT_EQ(sortPositions(values), (Positions{2, 3, 5, 8, 0, 4, 7, 1, 6}));
  EXPECT_EQ(ranksOf(values), (Positions{4, 7, 0, 1, 5, 2, 8, 6, 3}));
  EXPECT_TRUE(sortPositions({}).empty());
}

}  // namespace
}  // namespace tarvex
