// What is told of a matrix that is refused. Eigen is the second opinion on eigenvalues.
#include <Eigen/Eigenvalues>
#include <cmath>

#include "base/NumberText.h"
#include "base/uniformRandom.h"
#include "correlation/ImanConover.h"
#include "correlation/SymmetricEigen.h"
#include "correlation/nearestCorrelation.h"
#include "support/Test.h"

namespace tarvex::test {
namespace {

using Square = std::vector<double>;

// Symmetric with a diagonal of 1 and numbers of up to `size` beside it.
Square randomMatrix(std::size_t order, double size, std::int32_t seed) {
  Square matrix(order * order, 1.0);
  for (std::size_t row = 0; row < order; ++row)
    for (std::size_t column = 0; column < row; ++column)
      matrix[row * order + column] = matrix[column * order + row] = size * (2.0 * uniformRandom(seed) - 1.0);
  return matrix;
}

TEST(SymmetricEigen, valuesAndVectorsAreThoseOfTheMatrix) {
  std::vector<std::pair<std::size_t, Square>> rows{{0, {}},
                                                   {1, {-3.0}},
                                                   {2, {1, 1, 1, 1}},
                                                   {3, Square(9, 0.0)},
                                                   {4, {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, -2, 0, 0, 0, 0, 1e-9}}};
  for (const std::size_t order : {3u, 7u, 40u}) rows.emplace_back(order, randomMatrix(order, 1.0, -5));
  for (const auto& [order, matrix] : rows) {
    SCOPED_TRACE(order);
    const double tolerance = 1e-14 * (1.0 + static_cast<double>(order));
    SymmetricEigen eigen;
    ASSERT_TRUE(eigen.compute(matrix, order, SymmetricEigen::Wanted::Vectors));
    const auto size = static_cast<Eigen::Index>(order);
    const Eigen::Map<const Eigen::MatrixXd> given(matrix.data(), size, size);
    std::vector<double> sorted = eigen.values();
    std::sort(sorted.begin(), sorted.end());
    const Eigen::VectorXd expected =
        order == 0 ? Eigen::VectorXd() : Eigen::SelfAdjointEigenSolver<Eigen::MatrixXd>(given).eigenvalues();
    for (std::size_t i = 0; i < order; ++i) {
      EXPECT_NEAR(sorted[i], expected[static_cast<Eigen::Index>(i)], 10.0 * tolerance) << i;
      const Eigen::Map<const Eigen::VectorXd> v(eigen.vector(i), size);
      EXPECT_LT((given * v - eigen.values()[i] * v).norm(), 10.0 * tolerance) << i;
      for (std::size_t j = 0; j <= i; ++j)
        EXPECT_NEAR(v.dot(Eigen::Map<const Eigen::VectorXd>(eigen.vector(j), size)), i == j ? 1.0 : 0.0, tolerance);
    }
    SymmetricEigen alone;
    ASSERT_TRUE(alone.compute(matrix, order, SymmetricEigen::Wanted::Values));
    EXPECT_NEAR(alone.smallest(), order == 0 ? 0.0 : sorted.front(), 10.0 * tolerance);
  }
  SymmetricEigen eigen;
  for (const double bad : {std::nan(""), HUGE_VAL})
    EXPECT_FALSE(eigen.compute({1.0, bad, bad, 1.0}, 2, SymmetricEigen::Wanted::Vectors));
  EXPECT_FALSE(
      eigen.compute({1.0, 1e200, 1e200, 1.0, 1e200, 1e200, 1e200, 1e200, 1.0}, 3, SymmetricEigen::Wanted::Values));
}

TEST(NearestCorrelation, publishedAndClosedForms) {
  const struct {
    const char* name;
    std::vector<float> matrix;
    double smallest;
    std::vector<double> nearest;
  } rows[] = {
      // Higham, table of section 4.
      {"three in a chain",
       {1, 1, 0, 1, 1, 1, 0, 1, 1},
       1.0 - std::sqrt(2.0),
       {1, 0.760690, 0.157297, 0.760690, 1, 0.760690, 0.157297, 0.760690, 1}},
      // By symmetry all sizes stay alike, and three against each other go down to 1/2.
      {"contradiction",
       {1, 0.9f, 0.9f, 0.9f, 1, -0.9f, 0.9f, -0.9f, 1},
       -0.8,
       {1, 0.5, 0.5, 0.5, 1, -0.5, 0.5, -0.5, 1}},
      {"valid", {1, 0.9f, 0.9f, 1}, 0.1, {1, 0.9, 0.9, 1}},
      {"beyond 1", {1, 1.5f, 1.5f, 1}, -0.5, {1, 1, 1, 1}},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    const auto order = static_cast<std::int32_t>(std::lround(std::sqrt(row.matrix.size())));
    double smallest = 0.0;
    ASSERT_TRUE(smallestEigenvalue(row.matrix, order, smallest));
    EXPECT_NEAR(smallest, row.smallest, 1e-6);
    std::vector<float> nearest;
    ASSERT_TRUE(nearestCorrelation(row.matrix, order, nearest));
    ASSERT_EQ(nearest.size(), row.nearest.size());
    for (std::size_t i = 0; i < nearest.size(); ++i) EXPECT_NEAR(nearest[i], row.nearest[i], 2e-5) << i;
  }
  std::vector<float> untouched{7.0f};
  double value = 3.0;
  EXPECT_FALSE(smallestEigenvalue({1, NAN, NAN, 1}, 2, value) || nearestCorrelation({1, NAN, NAN, 1}, 2, untouched));
  EXPECT_FALSE(nearestCorrelation({1, 2, 2, 1}, 2, untouched, Progress([](double) { return false; })));
  EXPECT_EQ(value, 3.0);
  EXPECT_EQ(untouched.size(), 1u);
}

// Also as a file has it, with six digits.
TEST(NearestCorrelation, isValidWhateverWasAsked) {
  for (const std::int32_t order : {2, 3, 5, 12, 40})
    for (const double size : {0.3, 1.0}) {
      const Square asked = randomMatrix(static_cast<std::size_t>(order), size, -order);
      std::vector<float> nearest;
      ASSERT_TRUE(nearestCorrelation({asked.begin(), asked.end()}, order, nearest)) << order;
      for (float& number : nearest) {
        double read = 0.0;
        ASSERT_TRUE(isNumber(numberText(number), read));
        EXPECT_EQ(static_cast<float>(read), number);
        EXPECT_LE(std::abs(number), 1.0f);
      }
      EXPECT_TRUE(ImanConover(nearest, order).isValid()) << order << ' ' << size;
    }
}

}  // namespace
}  // namespace tarvex::test
