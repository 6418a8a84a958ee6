#pragma once

#include <cstdint>
#include <vector>

namespace tarvex {

// Number of subsets of r out of n, as a binomial coefficient; 0 when r is above n. Values beyond `limit` come as
// `limit`.
std::int64_t combinationCount(std::int32_t n, std::int32_t r, std::int64_t limit);

// All subsets of r out of the `items`, in lexicographic order of the positions; none when r is above their number.
std::vector<std::vector<std::int32_t>> combinations(const std::vector<std::int32_t>& items, std::int32_t r);

}  // namespace tarvex
