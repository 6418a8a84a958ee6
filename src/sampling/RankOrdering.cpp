#include "sampling/RankOrdering.h"

#include <utility>

#include "base/Memory.h"
#include "base/sampValues.h"
#include "correlation/ImanConover.h"
#include "correlation/SteinRanks.h"
#include "factors/FactorList.h"
#include "sampling/DesignColumn.h"
#include "sampling/Sampler.h"

namespace tarvex {

bool RankOrdering::startImanConover(const FactorList& factors, const sampValues& store, const Progress& progress,
                                    std::string& errorText) {
  // Where the ranks go to the disk for their size the store's column makes room for them.
  const auto columns = static_cast<std::size_t>(factors.correlatableCount());
  const bool isLarge = ColumnShelf<std::int32_t>::isLarge(columns, static_cast<std::size_t>(store.rows()));
  if (isLarge && !store.setColumnMode(false, progress)) {
    errorText = store.errorText();
    return false;
  }
  const auto ranks = std::make_shared<ImanConover>(factors, store.rows(), ImanConover::kSeed, progress);
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

bool RankOrdering::openColumn(std::int32_t factor, sampValues& store, const FactorList& factors,
                              const Progress& progress, std::string& errorText) {
  if (factors.isCorrelatable(factor) != 1) return true;
  stochasticIndex_ = stochasticIndexOf(factors, factor);
  double* const column = store.columnPointer(factor);
  if (column == nullptr) {
    errorText = store.errorText();
    return false;
  }
  const auto rows = static_cast<std::size_t>(store.rows());
  const auto sort = [&] {
    placed_ = std::make_shared<ColumnShelf<double>>(1, rows);
    // The store has read a column from its file, and may have written another.
    return progress.report(0.0) && sortAscending({column, rows}, progress);
  };
  bool sorted = false;
  if (fitsInMemory([&] { sorted = sort(); }) && sorted) return true;
  errorText = progress.stopped() ? kStoppedText : kNotEnoughMemory;
  return false;
}

bool RankOrdering::placeCells(std::int32_t factor, std::int32_t first, std::int32_t count, sampValues& store,
                              const FactorList& factors, std::string& errorText) {
  if (factors.isCorrelatable(factor) != 1) return true;
  const std::int32_t* const ranks = ranks_->ranks(stochasticIndex_, first, count, errorText);
  if (ranks == nullptr) return false;
  const auto failed = [&errorText](const std::string& reason) {
    errorText = reason;
    return false;
  };
  const double* const sorted = store.columnValues(factor);
  if (sorted == nullptr) return failed(store.errorText());
  cells_.resize(static_cast<std::size_t>(count));
  for (std::size_t i = 0; i < cells_.size(); ++i) cells_[i] = sorted[ranks[i]];
  if (!placed_->put(0, static_cast<std::size_t>(first), cells_.data(), cells_.size()))
    return failed(placed_->errorText());
  if (first + count < store.rows()) return true;
  if (std::vector<double>* const whole = placed_->whole(0))
    return store.setColumn(factor, std::move(*whole)) || failed(store.errorText());
  double* const column = store.columnPointer(factor);
  if (column == nullptr) return failed(store.errorText());
  return placed_->get(0, 0, column, static_cast<std::size_t>(store.rows())) || failed(placed_->errorText());
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
