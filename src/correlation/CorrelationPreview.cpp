#include "correlation/CorrelationPreview.h"

#include <algorithm>
#include <cstdint>

#include "base/uniformRandom.h"
#include "correlation/DiagonalBand.h"
#include "correlation/ImanConover.h"
#include "correlation/SteinRanks.h"
#include "factors/Distribution.h"
#include "factors/FactorList.h"

namespace tarvex {

namespace {

constexpr std::int32_t kRankSeed = -5648423;
constexpr std::int32_t kParentSeed = -1;  // not that of the diagonal band, whose draws would repeat the parents'

std::vector<double> uniformColumn(std::int32_t& state, std::int32_t rows = CorrelationPreview::kPoints) {
  std::vector<double> column(static_cast<std::size_t>(rows));
  for (double& value : column) value = uniformRandom(state);
  return column;
}

void orderByRanks(const RankTable& ranks, std::int32_t column, std::vector<double>& values) {
  std::vector<double> sorted = values;
  std::sort(sorted.begin(), sorted.end());
  for (std::size_t row = 0; row < values.size(); ++row)
    values[row] = sorted[static_cast<std::size_t>(ranks.rankOf(column, static_cast<std::int32_t>(row)))];
}

// Turns uniform numbers into values of the factor. False when it has no inverse.
bool mapValues(Distribution& factor, std::vector<double>& values) {
  const bool mapped = !factor.needsTable() || factor.prepareInverse();
  if (mapped)
    for (double& value : values) value = factor.value(value);
  factor.clearTable();
  return mapped;
}

bool mapPair(Distribution& first, Distribution& second, CorrelationPreview& preview, std::string& message) {
  const bool firstMapped = mapValues(first, preview.x);
  if (firstMapped && mapValues(second, preview.y)) return true;
  message =
      std::string("I cannot calculate the inverse cumulative of the ") + (firstMapped ? "second" : "first") + " factor";
  preview = {};
  return false;
}

}  // namespace

bool previewRankCorrelation(Distribution& first, Distribution& second, float correlation, CorrelationPreview& preview,
                            std::string& message) {
  preview = {};
  const ImanConover ranks({1.0f, correlation, correlation, 1.0f}, 2, CorrelationPreview::kPoints);
  if (!ranks.isValid()) {
    message = "The Iman Conover Matrix is not positive definited.\nCorrelation's values cannot be calculated.";
    return false;
  }
  std::int32_t state = kRankSeed;
  preview.x = uniformColumn(state);
  preview.y = uniformColumn(state);
  orderByRanks(ranks, 0, preview.x);
  orderByRanks(ranks, 1, preview.y);
  return mapPair(first, second, preview, message);
}

bool previewTreeLink(Distribution& parent, Distribution& child, double correlation, CorrelationPreview& preview,
                     std::string& message) {
  std::int32_t state = kParentSeed;
  preview.x = uniformColumn(state);
  preview.y = preview.x;
  DiagonalBand diagonalBand;
  diagonalBand.setCorrelation(correlation);
  diagonalBand.sampleConditional(preview.y);
  return mapPair(parent, child, preview, message);
}

bool previewSteinRanks(Distribution& first, Distribution& second, const FactorList& stein, std::int32_t firstColumn,
                       std::int32_t secondColumn, CorrelationPreview& preview, std::string& message) {
  preview = {};
  const std::int32_t rows = std::min(stein.steinInfo.rows(), std::int32_t{CorrelationPreview::kPoints});
  const SteinRanks ranks(stein, rows, rows, 1);
  if (!ranks.isValid()) {
    message = ranks.errorText;
    return false;
  }
  std::int32_t state = kRankSeed;
  preview.x = uniformColumn(state, rows);
  preview.y = uniformColumn(state, rows);
  orderByRanks(ranks, firstColumn, preview.x);
  orderByRanks(ranks, secondColumn, preview.y);
  return mapPair(first, second, preview, message);
}

}  // namespace tarvex
