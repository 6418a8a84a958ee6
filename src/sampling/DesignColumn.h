#pragma once

#include <cstdint>
#include <vector>

#include "base/Progress.h"
#include "base/sampValues.h"

namespace tarvex {

// A column of the design on its way into the store: a method fills it cell by cell, in as many generate() calls as it
// takes, and the store then gets it whole, which costs one pass instead of one a cell.
class DesignColumn {
 public:
  void start(std::int32_t rows) { values_.assign(static_cast<std::size_t>(rows), 0.0); }
  // Takes the column that the store holds. False when the store refuses.
  [[nodiscard]] bool load(const sampValues& store, std::int32_t column) { return store.getColumn(column, values_); }
  // Hands the column over: what this holds then has no meaning. The first column of a design makes the rows, with 0.0
  // in every other cell. False when the store refuses.
  [[nodiscard]] bool finish(sampValues& store, std::int32_t column);
  void release() { values_ = {}; }

  double& operator[](std::int32_t row) { return values_[static_cast<std::size_t>(row)]; }
  double operator[](std::int32_t row) const { return values_[static_cast<std::size_t>(row)]; }
  std::int32_t size() const { return static_cast<std::int32_t>(values_.size()); }
  // False, with the values in no order, when there isn't enough memory, and after a stop.
  [[nodiscard]] bool sortAscending(const Progress& progress);

 private:
  std::vector<double> values_;
};

}  // namespace tarvex
