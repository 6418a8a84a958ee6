#include "sampling/RankOrdering.h"

#include "factors/FactorList.h"

namespace tarvex {

bool RankOrdering::placeCell(std::int32_t factor, std::int32_t row, sampValues& store, const FactorList& factors) {
  if (!ranks_->isValid() || factors.isCorrelatable(factor) != 1) return true;
  if (row == 0) {
    stochasticIndex_ = stochasticIndexOf(factors, factor);
    if (!column_.load(store, factor)) return false;
    sortedColumn_ = column_;
    sortedColumn_.sortAscending();
  }
  column_[row] = sortedColumn_[ranks_->rankOf(stochasticIndex_, row)];
  return row + 1 < column_.size() || column_.finish(store, factor);
}

std::int32_t stochasticIndexOf(const FactorList& factors, std::int32_t factor) {
  std::int32_t index = -1;
  for (std::int32_t i = 0; i <= factor; ++i)
    if (factors.isCorrelatable(i) == 1) ++index;
  return index;
}

}  // namespace tarvex
