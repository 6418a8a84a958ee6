#pragma once

#include <cstddef>

namespace tarvex {

// Rows that addProducts() takes at its best: its sums then go through the processor's registers once for all of them.
inline constexpr std::size_t kProductRows = 4;

// Adds the products of each row's numbers with one another, row after row, to the upper triangle of `sums`, which is
// `columns` by `columns`, diagonal included. The rows lie one behind the other. Sums are formed in the order of the
// rows, however many come at once.
void addProducts(const double* rows, std::size_t count, std::size_t columns, double* sums);

}  // namespace tarvex
