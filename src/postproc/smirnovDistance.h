#pragma once

#include <cstdint>
#include <vector>

namespace tarvex {

// Two-sample Kolmogorov-Smirnov distance between a factor's ranks in the runs of high output and in the others.
// `rowsByRank` lists the rows by the factor's rank, ascending. -1.0 when either set of runs is empty.
double smirnovDistance(const std::vector<std::int32_t>& rowsByRank, const std::vector<char>& isHigh);

}  // namespace tarvex
