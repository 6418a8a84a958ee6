#include "correlation/nearestCorrelation.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

#include "base/Memory.h"
#include "correlation/ImanConover.h"
#include "correlation/SymmetricEigen.h"

namespace tarvex {
namespace {

constexpr double kDecimals = 1e6;  // numbers of a file have six digits
// For each row: rounding to six decimals moves an eigenvalue by less than half a unit of the last one a row, and the
// projections leave the diagonal at 1 but for a little.
constexpr double kFloorPerRow = 2.0 / kDecimals;
constexpr double kStill = 0.1 / kDecimals;  // movement of a number at which the projections end
constexpr int kMostRounds = 300;            // they come nearer by a factor each; what is left then is rounding
constexpr double kRoundShare = 0.05;        // of the time that is left, roughly, for a round

// Lifts the eigenvalues below `floor` to it: the nearest matrix that has none below.
bool lift(std::vector<double>& matrix, std::size_t order, double floor, const Progress& progress) {
  SymmetricEigen eigen;
  if (!eigen.compute(matrix, order, SymmetricEigen::Wanted::Vectors, progress)) return false;
  for (std::size_t i = 0; i < order; ++i) {
    const double missing = floor - eigen.values()[i];
    if (missing <= 0.0) continue;
    const double* const v = eigen.vector(i);
    for (std::size_t row = 0; row < order; ++row) {
      const double weight = missing * v[row];
      for (std::size_t column = row; column < order; ++column) matrix[row * order + column] += weight * v[column];
    }
  }
  for (std::size_t row = 0; row < order; ++row)
    for (std::size_t column = 0; column < row; ++column) matrix[row * order + column] = matrix[column * order + row];
  return true;
}

// The point of both sets, eigenvalues from the floor on and a diagonal of 1, that is nearest; the diagonal isn't quite
// 1 yet.
bool project(std::vector<double>& matrix, std::size_t order, double floor, const Progress& progress) {
  std::vector<double> unit = matrix;  // with a diagonal of 1
  std::vector<double> correction(matrix.size(), 0.0);
  double left = 1.0;
  for (int round = 0; round < kMostRounds; ++round) {
    const double next = left * (1.0 - kRoundShare);
    for (std::size_t i = 0; i < matrix.size(); ++i) matrix[i] = unit[i] - correction[i];
    const std::vector<double> before = matrix;
    if (!lift(matrix, order, floor, progress.part(1.0 - left, 1.0 - next))) return false;
    left = next;
    double moved = 0.0;
    for (std::size_t i = 0; i < matrix.size(); ++i) {
      correction[i] = matrix[i] - before[i];
      const double target = i % (order + 1) == 0 ? 1.0 : matrix[i];
      moved = std::max(moved, std::abs(target - unit[i]));
      unit[i] = target;
    }
    if (moved < kStill) return true;
  }
  return true;
}

// Scaled so that the diagonal is 1, which leaves the matrix definite.
std::vector<float> rounded(const std::vector<double>& matrix, std::size_t order) {
  std::vector<float> result(matrix.size());
  for (std::size_t row = 0; row < order; ++row)
    for (std::size_t column = 0; column < order; ++column) {
      const double scale = std::sqrt(matrix[row * (order + 1)] * matrix[column * (order + 1)]);
      result[row * order + column] =
          static_cast<float>(std::round(matrix[row * order + column] / scale * kDecimals) / kDecimals);
    }
  return result;
}

}  // namespace

bool smallestEigenvalue(const std::vector<float>& matrix, std::int32_t order, double& value) {
  SymmetricEigen eigen;
  bool solved = false;
  if (!fitsInMemory([&] {
        solved = eigen.compute({matrix.begin(), matrix.end()}, static_cast<std::size_t>(order),
                               SymmetricEigen::Wanted::Values);
      }) ||
      !solved)
    return false;
  value = eigen.smallest();
  return true;
}

bool nearestCorrelation(const std::vector<float>& matrix, std::int32_t order, std::vector<float>& nearest,
                        const Progress& progress) {
  const auto rows = static_cast<std::size_t>(order);
  bool found = false;
  const bool fits = fitsInMemory([&] {
    std::vector<double> projected(matrix.begin(), matrix.end());
    if (!project(projected, rows, kFloorPerRow * order, progress)) return;
    std::vector<float> result = rounded(projected, rows);
    found = ImanConover(result, order).isValid();
    if (found) nearest = std::move(result);
  });
  return fits && found;
}

}  // namespace tarvex
