#include "correlation/SymmetricEigen.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "base/Memory.h"

namespace tarvex {
namespace {

// Of the time, roughly, where vectors are wanted.
constexpr double kTridiagonalShare = 0.25;
constexpr double kCollectedShare = 0.45;

// The symmetric product of the upper triangle of `matrix`, from (start, start) on, with `v`.
void multiply(const std::vector<double>& matrix, std::size_t order, std::size_t start, const std::vector<double>& v,
              std::vector<double>& product) {
  const std::size_t size = order - start;
  std::fill_n(product.begin(), size, 0.0);
  for (std::size_t i = 0; i < size; ++i) {
    const double* const row = matrix.data() + (start + i) * order + start;
    double sum = row[i] * v[i];
    for (std::size_t j = i + 1; j < size; ++j) {
      sum += row[j] * v[j];
      product[j] += row[j] * v[i];
    }
    product[i] += sum;
  }
}

}  // namespace

double SymmetricEigen::smallest() const {
  return values_.empty() ? 0.0 : *std::min_element(values_.begin(), values_.end());
}

bool SymmetricEigen::compute(std::vector<double> matrix, std::size_t order, Wanted wanted, const Progress& progress) {
  bool solved = false;
  const bool fits = fitsInMemory([&] { solved = solve(matrix, order, wanted, progress); });
  if (!fits || !solved) values_.clear();
  return fits && solved;
}

bool SymmetricEigen::solve(std::vector<double>& matrix, std::size_t order, Wanted wanted, const Progress& progress) {
  if (!std::all_of(matrix.begin(), matrix.end(), [](double value) { return std::isfinite(value); })) return false;
  values_.assign(order, 0.0);
  beside_.assign(order, 0.0);
  vectors_.clear();
  std::vector<double> factors(order, 0.0);
  if (!makeTridiagonal(matrix, factors, progress.part(0.0, kTridiagonalShare))) return false;
  if (wanted == Wanted::Vectors &&
      !collectReflections(matrix, factors, progress.part(kTridiagonalShare, kCollectedShare)))
    return false;
  return makeDiagonal(progress.part(kCollectedShare, 1.0));
}

// Row by row: the reflection I - factor v v' takes what stands right of the diagonal to its first place. The row then
// keeps v for those who want vectors.
bool SymmetricEigen::makeTridiagonal(std::vector<double>& matrix, std::vector<double>& factors,
                                     const Progress& progress) {
  const std::size_t order = values_.size();
  std::vector<double> v(order);
  std::vector<double> w(order);
  for (std::size_t k = 0; k < order; ++k) {
    if (!progress.report(k, order)) return false;
    double* const row = matrix.data() + k * order;
    values_[k] = row[k];
    const std::size_t start = k + 1;
    const std::size_t size = order - start;
    if (size == 0) break;
    std::copy_n(row + start, size, v.begin());
    double rest = 0.0;
    for (std::size_t i = 1; i < size; ++i) rest += v[i] * v[i];
    const double length = std::sqrt(v[0] * v[0] + rest);
    beside_[k] = v[0];
    if (rest == 0.0) continue;
    beside_[k] = v[0] > 0.0 ? -length : length;  // away from v[0], so that nothing cancels
    v[0] -= beside_[k];
    factors[k] = 2.0 / (v[0] * v[0] + rest);
    std::copy_n(v.begin(), size, row + start);
    multiply(matrix, order, start, v, w);
    double along = 0.0;
    for (std::size_t i = 0; i < size; ++i) along += (w[i] *= factors[k]) * v[i];
    for (std::size_t i = 0; i < size; ++i) w[i] -= 0.5 * factors[k] * along * v[i];
    for (std::size_t i = 0; i < size; ++i) {
      double* const target = matrix.data() + (start + i) * order + start;
      for (std::size_t j = i; j < size; ++j) target[j] -= v[i] * w[j] + w[i] * v[j];
    }
  }
  return true;
}

// The product of all reflections, last first. One that was made for row k leaves rows and columns up to k alone.
bool SymmetricEigen::collectReflections(const std::vector<double>& matrix, const std::vector<double>& factors,
                                        const Progress& progress) {
  const std::size_t order = values_.size();
  vectors_.assign(order * order, 0.0);
  for (std::size_t i = 0; i < order; ++i) vectors_[i * (order + 1)] = 1.0;
  for (std::size_t k = order; k-- > 0;) {
    if (!progress.report(order - k, order)) return false;
    if (factors[k] == 0.0) continue;
    const double* const v = matrix.data() + k * order;
    for (std::size_t r = k + 1; r < order; ++r) {
      double* const row = vectors_.data() + r * order;
      double sum = 0.0;
      for (std::size_t j = k + 1; j < order; ++j) sum += row[j] * v[j];
      sum *= factors[k];
      for (std::size_t j = k + 1; j < order; ++j) row[j] -= sum * v[j];
    }
  }
  return true;
}

// From below: where the last number beside the diagonal has vanished, the last value is found.
bool SymmetricEigen::makeDiagonal(const Progress& progress) {
  constexpr double kEpsilon = std::numeric_limits<double>::epsilon();
  const auto vanished = [this](std::size_t k) {
    return std::abs(beside_[k]) <= kEpsilon * (std::abs(values_[k]) + std::abs(values_[k + 1])) ||
           std::abs(beside_[k]) < std::numeric_limits<double>::min();
  };
  constexpr int kMostSteps = 60;  // for a value; some two are usual
  const std::size_t order = values_.size();
  for (std::size_t last = order; last-- > 1;) {
    for (int steps = 0; !vanished(last - 1); ++steps) {
      if (steps == kMostSteps || !progress.report(order - last, order)) return false;
      std::size_t first = last - 1;
      while (first > 0 && !vanished(first - 1)) --first;
      step(first, last);
    }
  }
  return true;
}

// A QR step, its shift the eigenvalue of the last two rows that is nearer to the last value: the numbers beside the
// diagonal shrink by their cubes.
void SymmetricEigen::step(std::size_t first, std::size_t last) {
  const double corner = beside_[last - 1];
  const double half = 0.5 * (values_[last - 1] - values_[last]);
  const double shift = values_[last] - corner * corner / (half + std::copysign(std::hypot(half, corner), half));
  double along = values_[first] - shift;
  double bulge = beside_[first];
  for (std::size_t k = first; k < last; ++k) {
    const double length = std::hypot(along, bulge);
    const double cosine = length > 0.0 ? along / length : 1.0;
    const double sine = length > 0.0 ? bulge / length : 0.0;
    if (k > first) beside_[k - 1] = length;
    const double upper = values_[k];
    const double lower = values_[k + 1];
    const double mixed = 2.0 * cosine * sine * beside_[k];
    values_[k] = cosine * cosine * upper + mixed + sine * sine * lower;
    values_[k + 1] = sine * sine * upper - mixed + cosine * cosine * lower;
    beside_[k] = cosine * sine * (lower - upper) + (cosine * cosine - sine * sine) * beside_[k];
    if (k + 1 < last) {
      along = beside_[k];
      bulge = sine * beside_[k + 1];
      beside_[k + 1] *= cosine;
    }
    if (!vectors_.empty()) turn(k, cosine, sine);
  }
}

void SymmetricEigen::turn(std::size_t row, double cosine, double sine) {
  const std::size_t order = values_.size();
  double* const upper = vectors_.data() + row * order;
  double* const lower = upper + order;
  for (std::size_t j = 0; j < order; ++j) {
    const double was = upper[j];
    upper[j] = cosine * was + sine * lower[j];
    lower[j] = cosine * lower[j] - sine * was;
  }
}

}  // namespace tarvex
