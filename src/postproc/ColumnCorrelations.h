#pragma once

#include <cstdint>
#include <functional>
#include <vector>

#include "base/Progress.h"

namespace tarvex {

struct ColumnMoments {
  double mean = 0.0;
  double std = 0.0;  // by N - 1; exactly 0.0 for a column of equal values
};

// Moments and correlations of the columns of a table of any length, in two passes over its rows. Memory is that of the
// matrix. A column that holds a nan has moments and correlations of nan.
class ColumnCorrelations {
 public:
  // Fills `values` with the doubles of `count` rows from `row` on, one behind the other; false when they can't be read.
  using RowReader = std::function<bool(std::int32_t row, std::int32_t count, double* values)>;

  // False when a row can't be read, or when stopped. Sums are formed in row order, so that they are the same on every
  // machine.
  [[nodiscard]] bool compute(std::int32_t rows, std::size_t columns, const RowReader& readRows,
                             const Progress& progress = {});

  const std::vector<ColumnMoments>& moments() const { return moments_; }
  // 0.0 where one of the columns has no deviation.
  double correlation(std::size_t i, std::size_t j) const;

 private:
  bool computeMeans(std::int32_t rows, const RowReader& readRows, const Progress& progress);
  bool sumProducts(std::int32_t rows, const RowReader& readRows, const Progress& progress);

  std::int32_t rows_ = 0;
  std::vector<ColumnMoments> moments_;
  std::vector<bool> constant_;
  std::vector<double> products_;  // sums of products of deviations, upper triangle, by row
};

}  // namespace tarvex
