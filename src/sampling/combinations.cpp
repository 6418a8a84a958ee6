#include "sampling/combinations.h"

#include <algorithm>
#include <numeric>

namespace tarvex {

std::int64_t combinationCount(std::int32_t n, std::int32_t r, std::int64_t limit) {
  if (r < 0 || r > n) return 0;
  const std::int32_t smaller = std::min(r, n - r);
  std::int64_t count = 1;
  for (std::int32_t i = 1; i <= smaller; ++i) {
    count = count * (n - smaller + i) / i;
    if (count >= limit) return limit;
  }
  return count;
}

std::vector<std::vector<std::int32_t>> combinations(const std::vector<std::int32_t>& items, std::int32_t r) {
  const auto n = static_cast<std::int32_t>(items.size());
  std::vector<std::vector<std::int32_t>> subsets;
  if (r < 0 || r > n) return subsets;
  std::vector<std::int32_t> positions(static_cast<std::size_t>(r));
  std::iota(positions.begin(), positions.end(), 0);
  while (true) {
    std::vector<std::int32_t>& subset = subsets.emplace_back();
    for (const std::int32_t position : positions) subset.push_back(items[static_cast<std::size_t>(position)]);
    // The last position that can still move up takes the ones behind it along.
    std::int32_t i = r - 1;
    while (i >= 0 && positions[static_cast<std::size_t>(i)] == n - r + i) --i;
    if (i < 0) return subsets;
    const auto first = positions.begin() + i;
    std::iota(first, positions.end(), *first + 1);
  }
}

}  // namespace tarvex
