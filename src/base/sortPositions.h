#pragma once

#include <cstdint>
#include <vector>

#include "base/Progress.h"

namespace tarvex {

// The positions of `values` in ascending order of value. Equal values stay in their order; values that are not numbers
// come last, in their order. Empty when stopped.
std::vector<std::int32_t> sortPositions(const std::vector<double>& values, const Progress& progress = {});

// The rank of each value, from 0: the inverse of sortPositions. Empty when stopped.
std::vector<std::int32_t> ranksOf(const std::vector<double>& values, const Progress& progress = {});

}  // namespace tarvex
