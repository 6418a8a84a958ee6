#pragma once

#include <cstdint>
#include <vector>

#include "base/Progress.h"
#include "base/sampValues.h"

namespace tarvex {

// The ranks, from 1, of the values of each column of some tables. Equal values take successive ranks in row order.
// Memory is 4 bytes a value, and while
// columns are added 8 more for those of one a core.
class RankColumns {
 public:
  // Appends the columns of `table`; false when one can't be read, there isn't enough memory, or when stopped.
  [[nodiscard]] bool add(const sampValues& table, const Progress& progress = {});

  std::size_t columns() const { return ranks_.size(); }
  const std::vector<std::int32_t>& ranks(std::size_t column) const { return ranks_[column]; }
  // Holds a value that is not a number: its ranks mean nothing.
  bool hasGap(std::size_t column) const { return gaps_[column]; }
  // The ranks of `count` rows from `row` on as numbers, row after row; nan for a column with a gap.
  void rows(std::int32_t row, std::int32_t count, double* values) const;

 private:
  std::vector<std::vector<std::int32_t>> ranks_;
  std::vector<bool> gaps_;
};

}  // namespace tarvex
