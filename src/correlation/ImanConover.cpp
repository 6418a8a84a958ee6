#include "correlation/ImanConover.h"

#include <algorithm>
#include <cmath>
#include <memory>
#include <numeric>
#include <utility>

#include "base/Memory.h"
#include "base/WorkPace.h"
#include "base/randomExchanges.h"
#include "base/sortPositions.h"
#include "factors/Distribution.h"
#include "factors/FactorList.h"
#include "factors/makeFactor.h"

namespace tarvex {

namespace {

constexpr double kSwapsPerRow = 0.75;  // exchanges that shuffle a column, for each row
constexpr std::int32_t kSwapsAReport = 1 << 16;
// Where the scores, and the shuffled columns, are there: of the time, roughly.
constexpr double kScoresShare = 0.1;
constexpr double kShuffledShare = 0.4;

// The van der Waerden scores of `rows` rows, rising: the quantiles of the standard normal at r / (rows + 1). Empty when
// the normal can't be inverted, and after a stop.
std::vector<double> normalScores(std::int32_t rows, const Progress& progress) {
  // Kept: the default normal is truncated, so the scores are squeezed into its span.
  const std::unique_ptr<Factor> factor = makeFactor("Normal");
  auto& normal = static_cast<Distribution&>(*factor);
  std::vector<double> scores;
  if (!normal.prepareInverse()) return scores;
  scores.reserve(static_cast<std::size_t>(rows));
  constexpr std::int64_t kInverse = 1000;  // simple operations, about
  WorkPace pace(progress, rows, kInverse);
  for (std::int32_t r = 1; r <= rows; ++r) {
    if (!pace.step()) return {};
    scores.push_back(normal.inverse(r / (rows + 1.0)));
  }
  return scores;
}

}  // namespace

ImanConover::ImanConover(const FactorList& factors, std::int32_t rows, std::int32_t seed, const Progress& progress)
    : factorCount_(factors.correlatableCount()), rowCount_(rows), seed_(-seed) {
  for (std::int32_t i = 0; i < factorCount_; ++i)
    for (std::int32_t j = 0; j < factorCount_; ++j) target_.push_back(static_cast<double>(factors.matrixAt(i, j)));
  compute(progress);
}

ImanConover::ImanConover(const std::vector<float>& matrix, std::int32_t count, std::int32_t rows)
    : factorCount_(count), rowCount_(rows), seed_(-kSeed), target_(matrix.begin(), matrix.end()) {
  compute({});
}

void ImanConover::compute(const Progress& progress) {
  if (!fitsInMemory([&] { failed_ = !build(progress); })) {
    failed_ = true;
    errorText_ = kNotEnoughMemory;
  } else if (progress.stopped()) {
    failed_ = true;
    errorText_ = kStoppedText;
  }
  scores_ = {};
  if (failed_) ranks_ = {};
}

bool ImanConover::build(const Progress& progress) {
  return drawShuffledScores(progress) && factorise() && correlate(progress.part(kShuffledShare, 1.0));
}

// False when the normal can't be inverted, and after a stop.
bool ImanConover::drawShuffledScores(const Progress& progress) {
  if (rowCount_ < 1) return true;
  scores_ = normalScores(rowCount_, progress.part(0.0, kScoresShare));
  if (scores_.empty()) return false;
  const Progress shuffling = progress.part(kScoresShare, kShuffledShare);
  const double rows = rowCount_;
  const auto swaps = static_cast<std::int32_t>(rows * kSwapsPerRow);
  std::vector<std::int32_t> sorted(static_cast<std::size_t>(rowCount_));
  std::iota(sorted.begin(), sorted.end(), 0);
  for (std::int32_t column = 0; column < factorCount_; ++column) {
    std::vector<std::int32_t>& places = ranks_.emplace_back(sorted);
    for (std::int32_t done = 0; done < swaps; done += kSwapsAReport) {
      if (!shuffling.report(column + done / rows, factorCount_ + 0.0)) return false;
      exchangeAtRandom(seed_, places.data(), rowCount_,
                       static_cast<std::size_t>(std::min(kSwapsAReport, swaps - done)));
    }
  }
  return true;
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
bool ImanConover::correlate(const Progress& progress) {
  if (rowCount_ < 1) return true;
  std::vector<double> correlated(scores_.size());
  double columns = 0.0;  // passed through, of all that are
  const double allColumns = factorCount_ * (factorCount_ + 1.0) / 2.0;
  for (std::int32_t j = factorCount_ - 1; j >= 0; --j) {
    std::fill(correlated.begin(), correlated.end(), 0.0);
    for (std::int32_t k = 0; k <= j; ++k, ++columns) {
      if (!progress.report(columns / allColumns)) return false;
      const double factor = cholesky(j, k);
      const std::vector<std::int32_t>& places = ranks_[static_cast<std::size_t>(k)];
      for (std::size_t row = 0; row < correlated.size(); ++row)
        correlated[row] += factor * scores_[static_cast<std::size_t>(places[row])];
    }
    const Progress ranking = progress.part(columns / allColumns, columns / allColumns);
    if (ranksOf(correlated, ranks_[static_cast<std::size_t>(j)], ranking)) continue;
    if (!progress.stopped()) errorText_ = kNotEnoughMemory;
    return false;
  }
  return true;
}

std::int32_t ImanConover::rankOf(std::int32_t column, std::int32_t row) const {
  if (failed_ || column < 0 || column >= factorCount_ || row < 0 || row >= rowCount_) return 0;
  return ranks_[static_cast<std::size_t>(column)][static_cast<std::size_t>(row)];
}

std::size_t ImanConover::index(std::int32_t row, std::int32_t column) const {
  return static_cast<std::size_t>(row) * static_cast<std::size_t>(factorCount_) + static_cast<std::size_t>(column);
}

}  // namespace tarvex
