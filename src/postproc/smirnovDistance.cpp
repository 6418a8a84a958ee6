#include "postproc/smirnovDistance.h"

#include <algorithm>
#include <cstdlib>

namespace tarvex {

double smirnovDistance(const std::vector<std::int32_t>& rowsByRank, const std::vector<char>& isHigh) {
  const auto high = static_cast<std::int64_t>(std::count(isHigh.begin(), isHigh.end(), char{1}));
  const std::int64_t low = static_cast<std::int64_t>(isHigh.size()) - high;
  if (high == 0 || low == 0) return -1.0;
  // The distance of the two distribution functions behind each rank, times high * low: exact in integers.
  std::int64_t highSeen = 0;
  std::int64_t lowSeen = 0;
  std::int64_t largest = 0;
  for (const std::int32_t row : rowsByRank) {
    const std::int64_t isIn = isHigh[static_cast<std::size_t>(row)];
    highSeen += isIn;
    lowSeen += 1 - isIn;
    largest = std::max(largest, std::abs(highSeen * low - lowSeen * high));
  }
  return static_cast<double>(largest) / static_cast<double>(high * low);
}

}  // namespace tarvex
