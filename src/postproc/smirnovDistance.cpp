#include "postproc/smirnovDistance.h"

#include <algorithm>
#include <cmath>

namespace tarvex {

double smirnovDistance(const std::vector<std::int32_t>& rowsByRank, const std::vector<char>& isHigh) {
  const auto high = static_cast<double>(std::count(isHigh.begin(), isHigh.end(), char{1}));
  const double low = static_cast<double>(isHigh.size()) - high;
  if (high == 0.0 || low == 0.0) return -1.0;
  // The difference of two rounded quotients, not the exact one: equal distances are ranked by their last bit. As long
  // as one of the shares grows alone the distance is largest at one end, so that the ends are looked at only.
  double highSeen = 0.0, lowSeen = 0.0;
  double distance = 0.0;
  for (auto row = rowsByRank.begin(); row != rowsByRank.end();) {
    const char kind = isHigh[static_cast<std::size_t>(*row)];
    double& seen = kind != 0 ? highSeen : lowSeen;
    do seen += 1.0;
    while (++row != rowsByRank.end() && isHigh[static_cast<std::size_t>(*row)] == kind);
    distance = std::max(distance, std::abs(highSeen / high - lowSeen / low));
  }
  return distance;
}

}  // namespace tarvex
