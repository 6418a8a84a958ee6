#include "postproc/MatrixInverse.h"

#include <cmath>
#include <numeric>
#include <utility>

#include "postproc/MeasureSupport.h"

namespace tarvex {

namespace {

// The largest pivot of a matrix that counts as singular. Correlations of collinear columns cancel to about this.
constexpr double kSingularPivot = 3e-14;

// LU factors in place by rows with partial pivoting; rows[i] tells which row of the input stands in row i.
bool factorise(std::vector<double>& a, std::size_t order, std::vector<std::size_t>& rows, const Progress& progress) {
  std::iota(rows.begin(), rows.end(), std::size_t{0});
  const auto size = static_cast<std::int64_t>(order);
  WorkPace pace(progress, size, size * size);
  for (std::size_t column = 0; column < order; ++column) {
    if (!pace.step()) return false;
    std::size_t pivot = column;
    for (std::size_t i = column + 1; i < order; ++i)
      if (std::abs(a[i * order + column]) > std::abs(a[pivot * order + column])) pivot = i;
    if (pivot != column) {
      for (std::size_t j = 0; j < order; ++j) std::swap(a[pivot * order + j], a[column * order + j]);
      std::swap(rows[pivot], rows[column]);
    }
    // A pivot that is no number passes: its measures are no numbers either.
    const double divisor = a[column * order + column];
    if (std::abs(divisor) <= kSingularPivot) return false;
    for (std::size_t i = column + 1; i < order; ++i) {
      const double factor = a[i * order + column] /= divisor;
      for (std::size_t j = column + 1; j < order; ++j) a[i * order + j] -= factor * a[column * order + j];
    }
  }
  return true;
}

}  // namespace

bool invertMatrix(std::vector<double>& matrix, std::size_t order, const Progress& progress) {
  std::vector<std::size_t> rows(order);
  if (!factorise(matrix, order, rows, progress.part(0.0, 0.5))) return false;
  std::vector<double> inverse(order * order);
  std::vector<double> x(order);
  const Progress part = progress.part(0.5, 1.0);
  const auto size = static_cast<std::int64_t>(order);
  WorkPace pace(part, size, size * size);
  for (std::size_t column = 0; column < order; ++column) {
    if (!pace.step()) return false;
    for (std::size_t i = 0; i < order; ++i) {
      x[i] = rows[i] == column ? 1.0 : 0.0;
      for (std::size_t j = 0; j < i; ++j) x[i] -= matrix[i * order + j] * x[j];
    }
    for (std::size_t i = order; i-- > 0;) {
      for (std::size_t j = i + 1; j < order; ++j) x[i] -= matrix[i * order + j] * x[j];
      x[i] /= matrix[i * order + i];
      inverse[i * order + column] = x[i];
    }
  }
  matrix = std::move(inverse);
  return true;
}

}  // namespace tarvex
