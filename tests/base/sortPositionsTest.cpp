#include "base/sortPositions.h"

#include <cstring>
#include <numeric>

#include "base/ranksOfMany.h"
#include "support/Test.h"

namespace tarvex {
namespace {

using Positions = std::vector<std::int32_t>;

Positions positionsOf(const std::vector<double>& values) {
  Positions positions;
  EXPECT_TRUE(sortPositions(values, positions));
  return positions;
}

TEST(SortPositions, EqualValuesKeepTheirOrderAndNansComeLast) {
  const std::vector<double> values = {2, NAN, -HUGE_VAL, 0.0, 2, -0.0, -NAN, HUGE_VAL, 1};
  EXPECT_EQ(positionsOf(values), (Positions{2, 3, 5, 8, 0, 4, 7, 1, 6}));
  Positions ranks;
  EXPECT_TRUE(ranksOf(values, ranks));
  EXPECT_EQ(ranks, (Positions{4, 7, 0, 1, 5, 2, 8, 6, 3}));
  EXPECT_TRUE(positionsOf({}).empty());
}

// Long columns are sorted by other means; the order must be the same.
TEST(SortPositions, LongColumnsLikeShortOnes) {
  const std::vector<double> special = {0.0, -0.0, NAN, -NAN, HUGE_VAL, -HUGE_VAL, 5e-324, -5e-324, 1e308, -1e308};
  for (const std::size_t size : {1999u, 2000u, 2001u, 50000u}) {
    std::vector<double> values(size);
    std::uint64_t state = size;
    for (double& value : values) {
      state = state * 6364136223846793005u + 1442695040888963407u;
      const std::uint64_t kind = state >> 62;
      if (kind == 0)
        value = special[(state >> 20) % special.size()];
      else if (kind == 1 && size % 2 == 0)  // many neighbours
        value = 1.0 + static_cast<double>(state >> 20 & 0xFFF) * 0x1p-52;
      else if (kind == 1)
        value = static_cast<double>(static_cast<std::int64_t>(state) >> 56);  // many equal ones
      else
        std::memcpy(&value, &state, sizeof value);  // any bits
    }
    Positions expected(size);
    std::iota(expected.begin(), expected.end(), 0);
    std::stable_sort(expected.begin(), expected.end(), [&values](std::int32_t a, std::int32_t b) {
      const double x = values[static_cast<std::size_t>(a)];
      const double y = values[static_cast<std::size_t>(b)];
      return std::isnan(y) ? !std::isnan(x) : x < y;
    });
    EXPECT_EQ(positionsOf(values), expected) << size;
  }
}

TEST(SortPositions, RanksOfManyAreThoseOfAll) {
  std::vector<double> values((std::size_t{1} << 20) + 4321);  // more than are sorted together
  std::uint64_t state = 7;
  for (double& value : values) {
    state = state * 6364136223846793005u + 1442695040888963407u;
    if ((state >> 60) == 0)
      value = (state >> 59 & 1) != 0 ? -0.0 : NAN;
    else if ((state >> 60) == 1)
      std::memcpy(&value, &state, sizeof value);  // any bits
    else
      value = static_cast<double>(static_cast<std::int64_t>(state) >> 24);  // some equal
  }
  Positions expected;
  Positions ranks;
  ASSERT_TRUE(ranksOf(values, expected));
  std::size_t readable = values.size();
  const NumberSource source = [&](std::size_t first, std::size_t count, double* numbers) {
    std::copy_n(values.data() + first, count, numbers);
    return first + count <= readable;
  };
  ASSERT_TRUE(ranksOfMany(values.size(), source, ranks));
  EXPECT_TRUE(ranks == expected);
  readable /= 2;
  EXPECT_FALSE(ranksOfMany(values.size(), source, ranks));
  EXPECT_TRUE(ranks.empty());
}

}  // namespace
}  // namespace tarvex
