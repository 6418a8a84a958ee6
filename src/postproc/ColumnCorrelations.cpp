#include "postproc/ColumnCorrelations.h"

#include <algorithm>
#include <cmath>

#include "base/productSums.h"
#include "postproc/MeasureSupport.h"

namespace tarvex {

namespace {

constexpr std::int32_t kBatch = 64;  // rows that are read together, and stay near the processor
static_assert(kBatch % kProductRows == 0);
constexpr double kMeansDone = 0.3;  // of the progress
constexpr std::int64_t kOperationsACell = 4;

std::int64_t batchesOf(std::int32_t rows) {
  return (std::int64_t{rows} + kBatch - 1) / kBatch;
}

}  // namespace

bool ColumnCorrelations::compute(std::int32_t rows, std::size_t columns, const RowReader& readRows,
                                 const Progress& progress) {
  rows_ = rows;
  moments_.assign(columns, {});
  constant_.assign(columns, false);
  products_.assign(columns * columns, 0.0);
  if (!computeMeans(rows, readRows, progress.part(0.0, kMeansDone))) return false;
  if (!sumProducts(rows, readRows, progress.part(kMeansDone, 1.0))) return false;
  for (std::size_t i = 0; i < columns; ++i)
    moments_[i].std = constant_[i] ? 0.0 : std::sqrt(products_[i * columns + i] / (static_cast<double>(rows) - 1.0));
  return true;
}

bool ColumnCorrelations::computeMeans(std::int32_t rows, const RowReader& readRows, const Progress& progress) {
  const std::size_t columns = moments_.size();
  std::vector<double> batch(columns * kBatch), first(columns), sums(columns, 0.0), varies(columns, 0.0);
  WorkPace pace(progress, batchesOf(rows), kBatch * kOperationsACell * static_cast<std::int64_t>(columns));
  for (std::int64_t start = 0; start < rows; start += kBatch) {
    const auto count = static_cast<std::int32_t>(std::min<std::int64_t>(kBatch, rows - start));
    if (!pace.step() || !readRows(static_cast<std::int32_t>(start), count, batch.data())) return false;
    if (start == 0) std::copy_n(batch.begin(), columns, first.begin());
    const double* row = batch.data();
    for (std::int32_t r = 0; r < count; ++r, row += columns)
      for (std::size_t i = 0; i < columns; ++i) {
        sums[i] += row[i];
        varies[i] = row[i] != first[i] ? 1.0 : varies[i];
      }
  }
  for (std::size_t i = 0; i < columns; ++i) {
    moments_[i].mean = sums[i] / static_cast<double>(rows);
    constant_[i] = varies[i] == 0.0 && rows > 0;
  }
  return true;
}

bool ColumnCorrelations::sumProducts(std::int32_t rows, const RowReader& readRows, const Progress& progress) {
  const std::size_t columns = moments_.size();
  std::vector<double> batch(columns * kBatch);
  const auto cells = static_cast<std::int64_t>(columns);
  WorkPace pace(progress, batchesOf(rows), kBatch * (kOperationsACell * cells + cells * cells / 2));
  for (std::int64_t start = 0; start < rows; start += kBatch) {
    const auto count = static_cast<std::int32_t>(std::min<std::int64_t>(kBatch, rows - start));
    if (!pace.step() || !readRows(static_cast<std::int32_t>(start), count, batch.data())) return false;
    double* row = batch.data();
    for (std::int32_t r = 0; r < count; ++r, row += columns)
      for (std::size_t i = 0; i < columns; ++i) row[i] -= moments_[i].mean;
    addProducts(batch.data(), static_cast<std::size_t>(count), columns, products_.data());
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
