#include "postproc/ColumnCorrelations.h"

#include <algorithm>
#include <cmath>

#include "base/productSums.h"
#include "postproc/MeasureSupport.h"

namespace tarvex {

namespace {

constexpr auto kBatch = static_cast<std::int32_t>(kProductRows);
constexpr double kMeansDone = 0.3;  // of the progress
constexpr std::int64_t kOperationsACell = 4;

}  // namespace

bool ColumnCorrelations::compute(std::int32_t rows, std::size_t columns, const RowReader& readRow,
                                 const Progress& progress) {
  rows_ = rows;
  moments_.assign(columns, {});
  constant_.assign(columns, false);
  products_.assign(columns * columns, 0.0);
  if (!computeMeans(rows, readRow, progress.part(0.0, kMeansDone))) return false;
  if (!sumProducts(rows, readRow, progress.part(kMeansDone, 1.0))) return false;
  for (std::size_t i = 0; i < columns; ++i)
    moments_[i].std = constant_[i] ? 0.0 : std::sqrt(products_[i * columns + i] / (static_cast<double>(rows) - 1.0));
  return true;
}

bool ColumnCorrelations::computeMeans(std::int32_t rows, const RowReader& readRow, const Progress& progress) {
  const std::size_t columns = moments_.size();
  std::vector<double> row(columns), first(columns), sums(columns, 0.0);
  std::vector<char> varies(columns, 0);
  WorkPace pace(progress, rows, kOperationsACell * static_cast<std::int64_t>(columns));
  for (std::int32_t r = 0; r < rows; ++r) {
    if (!pace.step() || !readRow(r, row.data())) return false;
    if (r == 0) first = row;
    for (std::size_t i = 0; i < columns; ++i) {
      sums[i] += row[i];
      varies[i] |= static_cast<char>(row[i] != first[i]);
    }
  }
  for (std::size_t i = 0; i < columns; ++i) {
    moments_[i].mean = sums[i] / static_cast<double>(rows);
    constant_[i] = !varies[i] && rows > 0;
  }
  return true;
}

bool ColumnCorrelations::sumProducts(std::int32_t rows, const RowReader& readRow, const Progress& progress) {
  const std::size_t columns = moments_.size();
  std::vector<double> batch(columns * kBatch);
  const auto cells = static_cast<std::int64_t>(columns);
  WorkPace pace(progress, (std::int64_t{rows} + kBatch - 1) / kBatch,
                kBatch * (kOperationsACell * cells + cells * cells / 2));
  for (std::int32_t start = 0; start < rows; start += kBatch) {
    if (!pace.step()) return false;
    const std::int32_t count = std::min(kBatch, rows - start);
    for (std::int32_t r = 0; r < count; ++r) {
      double* row = batch.data() + static_cast<std::size_t>(r) * columns;
      if (!readRow(start + r, row)) return false;
      for (std::size_t i = 0; i < columns; ++i) row[i] -= moments_[i].mean;
    }
    addProducts(batch.data(), static_cast<std::size_t>(count), columns, products_.data());
    if (rows - start <= kBatch) break;  // the next start could be beyond the range of row numbers
  }
  return true;
}

double ColumnCorrelations::correlation(std::size_t i, std::size_t j) const {
  if (i == j) return 1.0;
  const double si = moments_[i].std;
  const double sj = moments_[j].std;
  if (si == 0.0 || sj == 0.0) return 0.0;
  const double sum = products_[std::min(i, j) * moments_.size() + std::max(i, j)];
  return sum / ((static_cast<double>(rows_) - 1.0) * si * sj);
}

}  // namespace tarvex
