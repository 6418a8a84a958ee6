#include "postproc/smirnovDistance.h"

#include <algorithm>
#include <cmath>

namespace tarvex {

double smirnovDistance(const std::vector<std::int32_t>& rowsByRank, const std::vector<char>& isHigh) {
  const auto high = static_cast<double>(std::count(isHigh.begin(), isHigh.end(), char{1}));
  const double low = static_cast<double>(isHigh.size()) - high;
  if (high == 0.0 || low == 0.0) return -1.0;
  // The difference of two rounded quotients, not the exact one: equal distances are ranked by their last bit.
  double highSeen = 0.0, lowSeen = 0.0;
  double highShare = 0.0, lowShare = 0.0;
  double distance = 0.0;
  for (const std::int32_t row : rowsByRank) {
    if (isHigh[static_cast<std::size_t>(row)])
      highShare = ++highSeen / high;
    else
      lowShare = ++lowSeen / low;
    distance = std::max(distance, std::abs(highShare - lowShare));
  }
  return distance;
}

}  // namespace tarvex
