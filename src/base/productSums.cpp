#include "base/productSums.h"

#include "base/VectorUnits.h"

namespace tarvex {
namespace {

TARVEX_INLINE void addRowsProducts(const double* rows, std::size_t count, std::size_t columns, double* sums) {
  for (; count >= kProductRows; count -= kProductRows, rows += kProductRows * columns) {
    const double *d0 = rows, *d1 = d0 + columns, *d2 = d1 + columns, *d3 = d2 + columns;
    double* sum = sums;
    for (std::size_t i = 0; i < columns; ++i, sum += columns) {
      const double a0 = d0[i], a1 = d1[i], a2 = d2[i], a3 = d3[i];
      for (std::size_t j = i; j < columns; ++j)
        sum[j] = (((sum[j] + a0 * d0[j]) + a1 * d1[j]) + a2 * d2[j]) + a3 * d3[j];
    }
  }
  for (; count > 0; --count, rows += columns) {
    double* sum = sums;
    for (std::size_t i = 0; i < columns; ++i, sum += columns)
      for (std::size_t j = i; j < columns; ++j) sum[j] += rows[i] * rows[j];
  }
}

TARVEX_WIDE void addWide(const double* rows, std::size_t count, std::size_t columns, double* sums) {
  addRowsProducts(rows, count, columns, sums);
}

}  // namespace

// Wider registers take more columns at a time, never more rows.
void addProducts(const double* rows, std::size_t count, std::size_t columns, double* sums) {
  if (hasWideUnits())
    addWide(rows, count, columns, sums);
  else
    addRowsProducts(rows, count, columns, sums);
}

}  // namespace tarvex
