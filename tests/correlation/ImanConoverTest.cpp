#include "correlation/ImanConover.h"

#include "factors/FactorList.h"
#include "factors/Normal.h"
#include "support/Test.h"

namespace tarvex::test {
namespace {

std::vector<double> columnOf(const RankTable& ranks, std::int32_t column, std::int32_t rows) {
  std::vector<double> values;
  for (std::int32_t row = 0; row < rows; ++row) values.push_back(ranks.rankOf(column, row));
  return values;
}

void expectPermutation(const RankTable& ranks, std::int32_t column, std::int32_t rows) {
  std::vector<int> seen(static_cast<std::size_t>(rows), 0);
  for (std::int32_t row = 0; row < rows; ++row) {
    const std::int32_t rank = ranks.rankOf(column, row);
    ASSERT_TRUE(rank >= 0 && rank < rows);
    ++seen[static_cast<std::size_t>(rank)];
  }
  EXPECT_EQ(std::count(seen.begin(), seen.end(), 1), rows) << "column " << column;
}

struct Matrix {
  const char* name;
  std::int32_t count;
  std::vector<float> values;  // by row
};

// clang-format off
const std::vector<Matrix> kAccepted{
    {"one column",    1, {1}},
    {"identity",      3, {1, 0, 0,  0, 1, 0,  0, 0, 1}},
    {"pair",          2, {1, 0.9f,  0.9f, 1}},
    {"negative pair", 2, {1, -0.7f,  -0.7f, 1}},
    {"equal columns", 2, {1, 1,  1, 1}},
    {"opposite ones", 2, {1, -1,  -1, 1}},
    {"chain",         4, {1, 0.8f, 0.4f, -0.3f,  0.8f, 1, 0.6f, 0,  0.4f, 0.6f, 1, 0.2f,  -0.3f, 0, 0.2f, 1}},
};
const std::vector<Matrix> kRefused{
    {"contradiction",   3, {1, 0.9f, 0.9f,  0.9f, 1, -0.9f,  0.9f, -0.9f, 1}},
    {"beyond 1",        2, {1, 1.01f,  1.01f, 1}},
    {"not a number",    2, {1, NAN,  NAN, 1}},
    {"equal but apart", 3, {1, 1, 0.5f,  1, 1, -0.5f,  0.5f, -0.5f, 1}},
};
// clang-format on

// 0.75 exchanges a row leave e^-1.5 of a column in place, so e^-3 of the rows of two columns still stand alike: a
// correlation of 0.05 before the method sets in, which each further column adds to.
double shuffleBias(std::int32_t columns) {
  return std::exp(-3.0) * columns / 2.0;
}

TEST(ImanConover, achievedRankCorrelation) {
  for (const Matrix& matrix : kAccepted)
    for (const std::int32_t rows : {1, 2, 250, 1000, 5000}) {
      SCOPED_TRACE(std::string(matrix.name) + ", " + std::to_string(rows) + " rows");
      const ImanConover ranks(matrix.values, matrix.count, rows);
      ASSERT_TRUE(ranks.isValid());
      for (std::int32_t i = 0; i < matrix.count; ++i) {
        expectPermutation(ranks, i, rows);
        for (std::int32_t j = 0; rows > 2 && j < i; ++j) {
          const double target = matrix.values[static_cast<std::size_t>(i * matrix.count + j)];
          EXPECT_NEAR(rankCorrelation(columnOf(ranks, i, rows), columnOf(ranks, j, rows)), target,
                      rankTolerance(target, static_cast<std::size_t>(rows)) + shuffleBias(matrix.count))
              << i << ' ' << j;
        }
      }
    }
}

TEST(ImanConover, refusedMatrices) {
  for (const Matrix& matrix : kRefused) {
    SCOPED_TRACE(matrix.name);
    EXPECT_FALSE(ImanConover(matrix.values, matrix.count).isValid());
    const ImanConover ranks(matrix.values, matrix.count, 30);
    EXPECT_FALSE(ranks.isValid());
    for (std::int32_t row = 0; row < 30; ++row) EXPECT_EQ(ranks.rankOf(1, row), 0);
  }
}

}  // namespace
}  // namespace tarvex::test
