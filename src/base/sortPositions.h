#pragma once

#include <cstdint>
#include <vector>

namespace tarvex {

// The positions of `values` in ascending order of value. Equal values stay in their order; values that are not numbers
// come last, in their order.
std::vector<std::int32_t> sortPositions(const std::vector<double>& values);

// The rank of each value, from 0: the inverse of sortPositions.
std::vector<std::int32_t> ranksOf(const std::vector<double>& values);

}  // namespace tarvex
