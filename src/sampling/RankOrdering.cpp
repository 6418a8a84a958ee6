#include "sampling/RankOrdering.h"

#include "base/Memory.h"
#include "correlation/ImanConover.h"
#include "correlation/SteinRanks.h"
#include "factors/FactorList.h"
#include "sampling/Sampler.h"

namespace tarvex {

bool RankOrdering::startImanConover(const FactorList& factors, std::int32_t rows, const Progress& progress,
                                    std::string& errorText) {
  const auto ranks = std::make_shared<ImanConover>(factors, rows, ImanConover::kSeed, progress);
  if (ranks->isValid()) {
    ranks_ = ranks;
    return true;
  }
  errorText = ranks->errorText().empty() ? kRefusedMatrix : ranks->errorText();
  return false;
}

bool RankOrdering::startStein(const FactorList& factors, std::int32_t rows, const Progress& progress,
                              std::string& errorText) {
  const auto ranks = std::make_shared<SteinRanks>(factors, rows, rows, 1, progress);
  if (ranks->isValid()) {
    ranks_ = ranks;
    return true;
  }
  errorText = ranks->errorText;
  return false;
}

bool RankOrdering::openColumn(std::int32_t factor, const sampValues& store, const FactorList& factors,
                              const Progress& progress, std::string& errorText) {
  if (factors.isCorrelatable(factor) != 1) return true;
  stochasticIndex_ = stochasticIndexOf(factors, factor);
  if (!column_.load(store, factor)) {
    errorText = store.errorText();
    return false;
  }
  // The store has read a column from its file, and may have written another.
  if (progress.report(0.0)) {
    sortedColumn_ = column_;
    if (progress.report(0.0) && sortedColumn_.sortAscending(progress)) return true;
  }
  errorText = progress.stopped() ? kStoppedText : kNotEnoughMemory;
  return false;
}

bool RankOrdering::placeCells(std::int32_t factor, std::int32_t first, std::int32_t count, sampValues& store,
                              const FactorList& factors) {
  if (factors.isCorrelatable(factor) != 1) return true;
  const std::int32_t end = first + count;
  for (std::int32_t row = first; row < end; ++row) column_[row] = sortedColumn_[ranks_->rankOf(stochasticIndex_, row)];
  return end < column_.size() || column_.finish(store, factor);
}

std::string matrixRefusal(const FactorList& factors) {
  return factors.correlationMode == kImanConover && !ImanConover::accepts(factors) ? kRefusedMatrix : "";
}

std::int32_t stochasticIndexOf(const FactorList& factors, std::int32_t factor) {
  std::int32_t index = -1;
  for (std::int32_t i = 0; i <= factor; ++i)
    if (factors.isCorrelatable(i) == 1) ++index;
  return index;
}

}  // namespace tarvex
