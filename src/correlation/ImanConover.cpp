#include "correlation/ImanConover.h"

#include <algorithm>
#include <cmath>
#include <memory>
#include <numeric>
#include <utility>

#include "base/Memory.h"
#include "base/sortPositions.h"
#include "base/uniformRandom.h"
#include "factors/Distribution.h"
#include "factors/FactorList.h"

namespace tarvex {

namespace {

constexpr double kSwapsPerRow = 0.75;  // exchanges that shuffle a column, for each row

// The van der Waerden scores of `rows` rows, rising: the quantiles of the standard normal at r / (rows + 1). Empty when
// the normal can't be inverted.
std::vector<double> normalScores(std::int32_t rows) {
  // Kept: the default normal is truncated, so the scores are squeezed into its span.
  const std::unique_ptr<Factor> factor = makeFactor("Normal");
  auto& normal = static_cast<Distribution&>(*factor);
  std::vector<double> scores;
  if (!normal.prepareInverse()) return scores;
  scores.reserve(static_cast<std::size_t>(rows));
  for (std::int32_t r = 1; r <= rows; ++r) scores.push_back(normal.inverse(r / (rows + 1.0)));
  return scores;
}

}  // namespace

ImanConover::ImanConover(const FactorList& factors, std::int32_t rows, std::int32_t seed)
    : factorCount_(factors.correlatableCount()), rowCount_(rows), seed_(-seed) {
  for (std::int32_t i = 0; i < factorCount_; ++i)
    for (std::int32_t j = 0; j < factorCount_; ++j) target_.push_back(static_cast<double>(factors.matrixAt(i, j)));
  compute();
}

ImanConover::ImanConover(const std::vector<float>& matrix, std::int32_t count, std::int32_t rows)
    : factorCount_(count), rowCount_(rows), seed_(-kSeed), target_(matrix.begin(), matrix.end()) {
  compute();
}

void ImanConover::compute() {
  if (fitsInMemory([this] { build(); })) return;
  failed_ = true;
  errorText_ = kNotEnoughMemory;
  scores_ = {};
  ranks_ = {};
}

void ImanConover::build() {
  drawShuffledScores();
  failed_ = failed_ || !factorise();
  if (!failed_) correlate();
  scores_ = {};
  if (failed_) ranks_ = {};
}

void ImanConover::drawShuffledScores() {
  if (rowCount_ < 1) return;
  scores_ = normalScores(rowCount_);
  failed_ = scores_.empty();
  const double rows = rowCount_;
  const auto swaps = static_cast<std::int32_t>(rows * kSwapsPerRow);
  const auto drawRow = [&] {
    return static_cast<std::size_t>(std::min(static_cast<std::int32_t>(uniformRandom(seed_) * rows), rowCount_ - 1));
  };
  std::vector<std::int32_t> sorted(static_cast<std::size_t>(rowCount_));
  std::iota(sorted.begin(), sorted.end(), 0);
  ranks_.assign(static_cast<std::size_t>(factorCount_), sorted);
  for (std::vector<std::int32_t>& column : ranks_)
    for (std::int32_t swap = 0; swap < swaps; ++swap) {
      const std::size_t a = drawRow();
      const std::size_t b = drawRow();
      std::swap(column[a], column[b]);
    }
}

// The lower triangular factor of the wanted matrix. False when the matrix isn't positive semidefinite.
bool ImanConover::factorise() {
  cholesky_.assign(target_.size(), 0.0);
  for (std::int32_t j = 0; j < factorCount_; ++j) {
    double sum = 0.0;
    for (std::int32_t k = 0; k < j; ++k) sum += cholesky(j, k) * cholesky(j, k);
    const double d = target(j, j) - sum;
    if (!(d >= 0.0)) return false;
    cholesky(j, j) = std::sqrt(d);
    for (std::int32_t i = j + 1; i < factorCount_; ++i) {
      sum = 0.0;
      for (std::int32_t k = 0; k < j; ++k) sum += cholesky(j, k) * cholesky(i, k);
      // Kept: a d of exactly 0, from a correlation of 1, divides by 0 here and is let through.
      cholesky(i, j) = (target(i, j) - sum) / cholesky(j, j);
    }
  }
  return true;
}

// Replaces the score places by the ranks of the correlated scores. A column is a sum over itself and the columns before
// it, so going from the last to the first needs no second table.
void ImanConover::correlate() {
  if (rowCount_ < 1) return;
  std::vector<double> correlated(scores_.size());
  for (std::int32_t j = factorCount_ - 1; j >= 0; --j) {
    std::fill(correlated.begin(), correlated.end(), 0.0);
    for (std::int32_t k = 0; k <= j; ++k) {
      const double factor = cholesky(j, k);
      const std::vector<std::int32_t>& places = ranks_[static_cast<std::size_t>(k)];
      for (std::size_t row = 0; row < correlated.size(); ++row)
        correlated[row] += factor * scores_[static_cast<std::size_t>(places[row])];
    }
    if (!ranksOf(correlated, ranks_[static_cast<std::size_t>(j)])) throw std::bad_alloc();
  }
}

std::int32_t ImanConover::rankOf(std::int32_t column, std::int32_t row) const {
  if (failed_ || column < 0 || column >= factorCount_ || row < 0 || row >= rowCount_) return 0;
  return ranks_[static_cast<std::size_t>(column)][static_cast<std::size_t>(row)];
}

std::size_t ImanConover::index(std::int32_t row, std::int32_t column) const {
  return static_cast<std::size_t>(row) * static_cast<std::size_t>(factorCount_) + static_cast<std::size_t>(column);
}

}  // namespace tarvex
