#include "base/sortPositions.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace tarvex {

std::vector<std::int32_t> sortPositions(const std::vector<double>& values) {
  std::vector<std::int32_t> positions(values.size());
  std::iota(positions.begin(), positions.end(), 0);
  std::stable_sort(positions.begin(), positions.end(), [&values](std::int32_t a, std::int32_t b) {
    const double x = values[static_cast<std::size_t>(a)];
    const double y = values[static_cast<std::size_t>(b)];
    return x < y || (!std::isnan(x) && std::isnan(y));
  });
  return positions;
}

std::vector<std::int32_t> ranksOf(const std::vector<double>& values) {
  const std::vector<std::int32_t> positions = sortPositions(values);
  std::vector<std::int32_t> ranks(values.size());
  for (std::size_t p = 0; p < positions.size(); ++p)
    ranks[static_cast<std::size_t>(positions[p])] = static_cast<std::int32_t>(p);
  return ranks;
}

}  // namespace tarvex
