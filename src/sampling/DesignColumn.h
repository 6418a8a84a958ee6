#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "base/Progress.h"
#include "base/sampValues.h"

namespace tarvex {

// The column of a factor in the store, for a method to fill in place: `rows` values, valid until the next call on the
// store. The first column of a design makes the rows, with 0.0 in every cell. Null when the store refuses. Without the
// memory it throws std::bad_alloc, as a table of one's own would.
double* designColumn(sampValues& store, std::int32_t column, std::int32_t rows);

// Sorts numbers. False, with the values in no order, when there isn't enough memory, and after a stop.
[[nodiscard]] bool sortAscending(std::span<double> values, const Progress& progress);

// A column of the design beside the store.
class DesignColumn {
 public:
  void start(std::int32_t rows) { values_.assign(static_cast<std::size_t>(rows), 0.0); }
  // Takes the column that the store holds. False when the store refuses.
  [[nodiscard]] bool load(const sampValues& store, std::int32_t column) { return store.getColumn(column, values_); }
  void release() { values_ = std::vector<double>(); }  // `{}` would keep its memory

  double& operator[](std::int32_t row) { return values_[static_cast<std::size_t>(row)]; }
  double operator[](std::int32_t row) const { return values_[static_cast<std::size_t>(row)]; }
  // As above.
  [[nodiscard]] bool sortAscending(const Progress& progress) { return tarvex::sortAscending(values_, progress); }

 private:
  std::vector<double> values_;
};

}  // namespace tarvex
