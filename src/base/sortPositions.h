#pragma once

#include <cstdint>
#include <vector>

#include "base/Progress.h"

namespace tarvex {

// The positions of `values` in ascending order of value. Equal values stay in their order; values that are not numbers
// come last, in their order. False, with the result empty, when there isn't enough memory, or when stopped.
[[nodiscard]] bool sortPositions(const std::vector<double>& values, std::vector<std::int32_t>& positions,
                                 const Progress& progress = {});

// The rank of each value, from 0: the inverse of sortPositions.
[[nodiscard]] bool ranksOf(const std::vector<double>& values, std::vector<std::int32_t>& ranks,
                           const Progress& progress = {});

}  // namespace tarvex
