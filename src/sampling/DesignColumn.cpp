#include "sampling/DesignColumn.h"

#include <algorithm>

namespace tarvex {

void DesignColumn::finish(sampValues& store, std::int32_t column) const {
  if (store.rows() > 0) {
    store.setColumn(column, values_);
    return;
  }
  std::vector<double> row(static_cast<std::size_t>(store.columns()), 0.0);
  for (const double value : values_) {
    row[static_cast<std::size_t>(column)] = value;
    store.addRow(row.data());
  }
}

void DesignColumn::sortAscending() {
  std::sort(values_.begin(), values_.end());
}

}  // namespace tarvex
