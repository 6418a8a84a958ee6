// The measures of RegressionStats, from the correlations of the raw data and of the ranks.
#include <algorithm>
#include <cmath>
#include <limits>

#include "base/sortPositions.h"
#include "postproc/MatrixInverse.h"
#include "postproc/MeasureSupport.h"
#include "postproc/RankColumns.h"
#include "postproc/RegressionStats.h"
#include "postproc/smirnovDistance.h"

namespace tarvex {

namespace {

constexpr double kCollinear = 0.99;  // correlation above which the later of two factors is left out
constexpr double kLowOutputs = 0.9;  // share of the runs whose outputs aren't high ones
constexpr std::int64_t kOperationsARank = 10;
constexpr double kUndefined = std::numeric_limits<double>::quiet_NaN();

double* slotsOfVariable(IndexRecord& record, std::int32_t variable) {
  return record.values.data() + static_cast<std::size_t>(variable) * RegressionStats::kSlots;
}

}  // namespace

std::vector<std::size_t> RegressionStats::activeFactors() const {
  std::vector<std::size_t> active;
  for (std::size_t i = 0; i < records.size(); ++i)
    if (records[i].kind == FactorKind::Uncertain) active.push_back(i);
  return active;
}

void RegressionStats::markCollinear(const ColumnCorrelations& raw) {
  const std::vector<std::size_t> uncertain = activeFactors();
  // Kept: only a positive correlation counts, and a factor that is left out itself still pushes out others.
  for (std::size_t a = 0; a < uncertain.size(); ++a)
    for (std::size_t b = a + 1; b < uncertain.size(); ++b)
      if (raw.correlation(uncertain[a], uncertain[b]) > kCollinear) records[uncertain[b]].kind = FactorKind::Correlated;
  activeCount = static_cast<std::int32_t>(activeFactors().size());
}

bool RegressionStats::deriveMeasures(const ColumnCorrelations& correlations, std::int32_t runs, DataKind kind,
                                     const Progress& progress) {
  const std::vector<std::size_t> active = activeFactors();
  const std::size_t k = active.size();
  const std::size_t order = k + 1;
  std::vector<double> matrix(order * order, 1.0);
  for (std::size_t i = 0; i < k; ++i)
    for (std::size_t j = 0; j < k; ++j) matrix[i * order + j] = correlations.correlation(active[i], active[j]);

  for (std::int32_t variable = 0; variable < variableCount; ++variable) {
    if (!progress.report(variable, variableCount)) return false;
    const std::size_t column = static_cast<std::size_t>(factorCount) + static_cast<std::size_t>(variable);
    for (std::size_t j = 0; j < k; ++j)
      matrix[k * order + j] = matrix[j * order + k] = correlations.correlation(active[j], column);
    std::vector<double> inverse = matrix;
    const double from = static_cast<double>(variable) / variableCount;
    if (!invertMatrix(inverse, order, progress.part(from, (variable + 1.0) / variableCount))) {
      if (progress.stopped()) return false;
      setSingular(variable, kind);
      return false;
    }
    // The inverse of the correlation matrix holds the standardised coefficients and the partial correlations of its
    // last variable on the others (R. L. Iman, M. J. Shortencarier, J. D. Johnson, NUREG/CR-4122, 1985).
    const double own = inverse[k * order + k];
    for (std::size_t j = 0; j < k; ++j) {
      const double cross = inverse[j * order + k];
      double* slots = slotsOfVariable(records[active[j]], variable);
      slots[kPear + kind] = correlations.correlation(active[j], column);
      slots[kPcc + kind] = -cross / std::sqrt(own * inverse[j * order + j]);
      slots[kSrc + kind] = -cross / own;
    }
    const double determined = 1.0 - 1.0 / own;
    auto& coefficients = determinations_[static_cast<std::size_t>(variable)];
    coefficients[static_cast<std::size_t>(kind)] = determined;
    coefficients[static_cast<std::size_t>(2 + kind)] =
        1.0 - (1.0 - determined) * (static_cast<double>(runs) - 1.0) / (static_cast<double>(runs) - activeCount);
  }
  return true;
}

void RegressionStats::setSingular(std::int32_t variable, DataKind kind) {
  singular_[static_cast<std::size_t>(kind)] = variable;
  constexpr std::int32_t kRankMeasures[] = {kSpea, kPrcc, kSrrc, kSmirnov};
  auto& coefficients = determinations_[static_cast<std::size_t>(variable)];
  if (kind == kRaw)
    coefficients.fill(kSingularValue);
  else
    coefficients[1] = coefficients[3] = kSingularValue;
  for (const std::size_t factor : activeFactors()) {
    double* slots = slotsOfVariable(records[factor], variable);
    if (kind == kRaw)
      std::fill(slots, slots + kMeasures, kSingularValue);
    else
      for (const std::int32_t measure : kRankMeasures) slots[measure] = kSingularValue;
  }
}

bool RegressionStats::computeSmirnov(const RankColumns& ranks, std::int32_t runs, const Progress& progress) {
  const auto threshold = static_cast<std::int32_t>(kLowOutputs * runs);
  std::vector<std::vector<char>> isHigh(static_cast<std::size_t>(variableCount));
  for (std::size_t v = 0; v < isHigh.size(); ++v)
    for (const std::int32_t rank : ranks.ranks(static_cast<std::size_t>(factorCount) + v))
      isHigh[v].push_back(rank > threshold);

  std::vector<std::int32_t> rowsByRank(static_cast<std::size_t>(runs));
  // A step to put the runs in a factor's order, and one for each variable.
  WorkPace pace(progress, std::int64_t{activeCount} * (variableCount + 1), kOperationsARank * std::int64_t{runs});
  for (const std::size_t factor : activeFactors()) {
    if (!pace.step()) return false;
    const std::vector<std::int32_t>& own = ranks.ranks(factor);
    for (std::size_t row = 0; row < own.size(); ++row)
      rowsByRank[static_cast<std::size_t>(own[row] - 1)] = static_cast<std::int32_t>(row);
    for (std::size_t v = 0; v < isHigh.size(); ++v) {
      if (!pace.step()) return false;
      const bool gap = ranks.hasGap(factor) || ranks.hasGap(static_cast<std::size_t>(factorCount) + v);
      slotsOfVariable(records[factor], static_cast<std::int32_t>(v))[kSmirnov] =
          gap ? kUndefined : smirnovDistance(rowsByRank, isHigh[v]);
    }
  }
  return true;
}

bool RegressionStats::rankMeasures() {
  std::vector<double> sizes(records.size());
  for (std::int32_t variable = 0; variable < variableCount; ++variable)
    for (std::int32_t measure = 0; measure < kMeasures; ++measure) {
      for (std::size_t i = 0; i < records.size(); ++i)
        sizes[i] = std::abs(slotsOfVariable(records[i], variable)[measure]);
      std::vector<std::int32_t> ranks;
      if (!ranksOf(sizes, ranks)) return false;
      for (std::size_t i = 0; i < records.size(); ++i)
        slotsOfVariable(records[i], variable)[kRankSlots + measure] = factorCount - ranks[i];
    }
  return true;
}

}  // namespace tarvex
