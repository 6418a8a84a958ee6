#pragma once

#include <cstddef>
#include <vector>

#include "base/Progress.h"

namespace tarvex {

// Replaces a square matrix, row after row in `matrix`, by its inverse. False, with `matrix` destroyed, when a pivot is
// too small: the matrix counts as singular; or when stopped.
[[nodiscard]] bool invertMatrix(std::vector<double>& matrix, std::size_t order, const Progress& progress = {});

}  // namespace tarvex
