#include "correlation/ImanConover.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <memory>
#include <numeric>
#include <utility>

#include "base/Memory.h"
#include "base/WorkPace.h"
#include "base/randomExchanges.h"
#include "base/ranksOfMany.h"
#include "base/sortPositions.h"
#include "factors/Distribution.h"
#include "factors/FactorList.h"
#include "factors/makeFactor.h"

namespace tarvex {

namespace {

constexpr double kSwapsPerRow = 0.75;  // exchanges that shuffle a column, for each row
constexpr std::int32_t kSwapsAReport = 1 << 16;
constexpr std::size_t kScoresAReport = 4096;  // turned into quantiles together
constexpr std::size_t kRowsTogether = 1024;   // of a column's sums, in the nearest cache
constexpr std::int32_t kColumnsTogether = 4;  // columns for which a score is fetched once
// Where the scores, and the shuffled columns, are there: of the time, roughly.
constexpr double kScoresShare = 0.1;
constexpr double kShuffledShare = 0.4;
constexpr double kAddedShare = 0.2;  // of that of a few columns

// The van der Waerden scores of `rows` rows, rising: the quantiles of the standard normal at r / (rows + 1). Empty when
// the normal can't be inverted, and after a stop.
std::vector<double> normalScores(std::int32_t rows, const Progress& progress) {
  // Kept: the default normal is truncated, so the scores are squeezed into its span.
  const std::unique_ptr<Factor> factor = makeFactor("Normal");
  auto& normal = static_cast<Distribution&>(*factor);
  std::vector<double> scores;
  if (!normal.prepareInverse()) return scores;
  scores.resize(static_cast<std::size_t>(rows));
  for (std::int32_t r = 0; r < rows; ++r) scores[static_cast<std::size_t>(r)] = (r + 1) / (rows + 1.0);
  for (std::size_t first = 0; first < scores.size(); first += kScoresAReport) {
    if (!progress.report(first, scores.size())) return {};
    double* const some = scores.data() + first;
    normal.values(some, some, std::min(kScoresAReport, scores.size() - first));
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
  if (rowCount_ < 1) return factorise();
  return layScores(progress.part(0.0, kScoresShare)) && shufflePlaces(progress.part(kScoresShare, kShuffledShare)) &&
         factorise() && correlate(progress.part(kShuffledShare, 1.0));
}

bool ImanConover::fail(const std::string& reason) {
  errorText_ = reason;
  return false;
}

// False when the normal can't be inverted, and after a stop.
bool ImanConover::layScores(const Progress& progress) {
  std::vector<double> scores = normalScores(rowCount_, progress);
  if (scores.empty()) return false;
  scores_ = ColumnShelf<double>(1, scores.size());
  return scores_.put(0, std::move(scores)) || fail(scores_.errorText());
}

bool ImanConover::shufflePlaces(const Progress& progress) {
  const double rows = rowCount_;
  const auto swaps = static_cast<std::int32_t>(rows * kSwapsPerRow);
  ranks_ = PlaceColumns(static_cast<std::size_t>(factorCount_), static_cast<std::size_t>(rowCount_));
  for (std::int32_t column = 0; column < factorCount_; ++column) {
    std::vector<std::int32_t> places(static_cast<std::size_t>(rowCount_));
    std::iota(places.begin(), places.end(), 0);
    for (std::int32_t done = 0; done < swaps; done += kSwapsAReport) {
      if (!progress.report(column + done / rows, factorCount_ + 0.0)) return false;
      exchangeAtRandom(seed_, places.data(), rowCount_,
                       static_cast<std::size_t>(std::min(kSwapsAReport, swaps - done)));
    }
    if (!ranks_.put(static_cast<std::size_t>(column), std::move(places))) return fail(ranks_.errorText());
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
  ColumnShelf<double> sums(static_cast<std::size_t>(std::min(kColumnsTogether, factorCount_)),
                           static_cast<std::size_t>(rowCount_));
  for (std::int32_t last = factorCount_ - 1; last >= 0;) {
    const std::int32_t first = std::max(last - kColumnsTogether + 1, 0);
    const auto shareTo = [this](std::int32_t column) { return 1.0 - (column + 1.0) / factorCount_; };
    if (!correlateColumns(first, last, sums, progress.part(shareTo(last), shareTo(first - 1)))) return false;
    last = first - 1;
  }
  return true;
}

bool ImanConover::correlateColumns(std::int32_t first, std::int32_t last, ColumnShelf<double>& sums,
                                   const Progress& progress) {
  if (!addScores(first, last, sums, progress.part(0.0, kAddedShare))) return false;
  const Progress ranking = progress.part(kAddedShare, 1.0);
  const double columns = last - first + 1;
  for (std::int32_t j = first; j <= last; ++j)
    if (!rankSums(static_cast<std::size_t>(j - first), j, sums,
                  ranking.part((j - first) / columns, (j - first + 1) / columns)))
      return false;
  return true;
}

// The correlated scores of neighbouring columns. A sum is formed in the order of the columns.
bool ImanConover::addScores(std::int32_t first, std::int32_t last, ColumnShelf<double>& sums,
                            const Progress& progress) {
  const auto rows = static_cast<std::size_t>(rowCount_);
  std::vector<double> buffer;
  const double* const scores = scores_.view(0, 0, rows, buffer);
  if (scores == nullptr) return fail(scores_.errorText());
  std::array<double, kRowsTogether> some;
  std::array<std::array<double, kRowsTogether>, kColumnsTogether> someSums;
  WorkPace pace(progress, static_cast<std::int64_t>(rows / kRowsTogether) + 1,
                (last + 1) * static_cast<std::int64_t>(kRowsTogether));
  for (std::size_t row = 0; row < rows; row += kRowsTogether) {
    if (!pace.step()) return false;
    const std::size_t count = std::min(kRowsTogether, rows - row);
    for (auto& sum : someSums) sum.fill(0.0);
    for (std::int32_t k = 0; k <= last; ++k) {
      const std::int32_t* const places =
          ranks_.at(k, static_cast<std::int32_t>(row), static_cast<std::int32_t>(count), errorText_);
      if (places == nullptr) return false;
      for (std::size_t i = 0; i < count; ++i) some[i] = scores[places[i]];
      for (std::int32_t j = std::max(first, k); j <= last; ++j) {
        const double factor = cholesky_[index(j, k)];
        double* const sum = someSums[static_cast<std::size_t>(j - first)].data();
        for (std::size_t i = 0; i < count; ++i) sum[i] += factor * some[i];
      }
    }
    for (std::int32_t j = first; j <= last; ++j) {
      const auto column = static_cast<std::size_t>(j - first);
      if (!sums.put(column, row, someSums[column].data(), count)) return fail(sums.errorText());
    }
  }
  return true;
}

// The ranks of a column's sums take the place of its score places.
bool ImanConover::rankSums(std::size_t sum, std::int32_t column, ColumnShelf<double>& sums, const Progress& progress) {
  const auto source = [&](std::size_t first, std::size_t count, double* numbers) {
    return sums.get(sum, first, numbers, count) || fail(sums.errorText());
  };
  std::vector<std::int32_t> ranks;
  const std::vector<double>* const whole = sums.whole(sum);
  const bool ranked = whole != nullptr ? ranksOf(*whole, ranks, progress)
                                       : ranksOfMany(static_cast<std::size_t>(rowCount_), source, ranks, progress);
  if (!ranked) return fail(errorText_.empty() && !progress.stopped() ? kNotEnoughMemory : errorText_);
  return ranks_.put(static_cast<std::size_t>(column), std::move(ranks)) || fail(ranks_.errorText());
}

std::size_t ImanConover::index(std::int32_t row, std::int32_t column) const {
  return static_cast<std::size_t>(row) * static_cast<std::size_t>(factorCount_) + static_cast<std::size_t>(column);
}

}  // namespace tarvex
