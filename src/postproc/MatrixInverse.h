#pragma once

#include <cstddef>
#include <vector>

namespace tarvex {

// Replaces a square matrix, row after row in `matrix`, by its inverse. False, with `matrix` destroyed, when a pivot is
// too small: the matrix counts as singular.
[[nodiscard]] bool invertMatrix(std::vector<double>& matrix, std::size_t order);

}  // namespace tarvex
