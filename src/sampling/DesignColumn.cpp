#include "sampling/DesignColumn.h"

#include <algorithm>
#include <utility>

#include "base/Memory.h"
#include "base/WorkPace.h"
#include "base/sortPositions.h"

namespace tarvex {

bool DesignColumn::finish(sampValues& store, std::int32_t column) {
  if (store.rows() == 0 && column < store.columns() && !store.addZeroRows(size())) return false;
  return store.setColumn(column, std::move(values_));
}

bool DesignColumn::sortAscending(const Progress& progress) {
  constexpr std::int64_t kFetched = 4;  // additions in the time of a value from anywhere
  // Strata come sorted. A value that is no number compares as unsorted.
  const auto isDisorder = [](double a, double b) { return !(a <= b); };
  if (std::adjacent_find(values_.begin(), values_.end(), isDisorder) == values_.end()) return true;
  std::vector<std::int32_t> positions;
  std::vector<double> sorted;
  if (!sortPositions(values_, positions, progress)) return false;
  if (!fitsInMemory([&] { sorted.reserve(values_.size()); })) return false;
  WorkPace pace(progress, size(), kFetched);
  for (const std::int32_t position : positions) {
    if (!pace.step()) return false;
    sorted.push_back(values_[static_cast<std::size_t>(position)]);
  }
  values_.swap(sorted);
  return true;
}

}  // namespace tarvex
