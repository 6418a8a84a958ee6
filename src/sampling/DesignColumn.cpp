#include "sampling/DesignColumn.h"

#include "base/Memory.h"
#include "base/WorkPace.h"
#include "base/sortPositions.h"

namespace tarvex {

bool DesignColumn::finish(sampValues& store, std::int32_t column, const Progress& progress) const {
  if (store.rows() > 0 || column >= store.columns()) return store.setColumn(column, values_);
  std::vector<double> row(static_cast<std::size_t>(store.columns()), 0.0);
  WorkPace pace(progress, size(), store.columns());
  for (const double value : values_) {
    row[static_cast<std::size_t>(column)] = value;
    if (!pace.step() || store.addRow(row.data()) == 0) return false;
  }
  return true;
}

bool DesignColumn::sortAscending(const Progress& progress) {
  constexpr std::int64_t kFetched = 4;  // additions in the time of a value from anywhere
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
