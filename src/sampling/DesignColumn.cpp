#include "sampling/DesignColumn.h"

#include <algorithm>

namespace tarvex {

bool DesignColumn::finish(sampValues& store, std::int32_t column) const {
  if (store.rows() > 0 || column >= store.columns()) return store.setColumn(column, values_);
  std::vector<double> row(static_cast<std::size_t>(store.columns()), 0.0);
  for (const double value : values_) {
    row[static_cast<std::size_t>(column)] = value;
    if (store.addRow(row.data()) == 0) return false;
  }
  return true;
}

void DesignColumn::sortAscending() {
  std::sort(values_.begin(), values_.end());
}

}  // namespace tarvex
