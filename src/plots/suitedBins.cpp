#include "plots/suitedBins.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <numeric>
#include <utility>

#include "postproc/UaStats.h"

namespace tarvex {

namespace {

constexpr std::size_t kWholeCount = kHistogramEntries - 1;

// What divides the hundred evenly, and is nearest to Scott's width.
std::size_t suitedGroup(const std::vector<double>& heights, double runs) {
  constexpr double kScott = 3.49;
  constexpr std::array<std::size_t, 6> kGroups = {1, 2, 4, 5, 10, 20};
  double whole = 0.0;
  double sum = 0.0;
  double squares = 0.0;
  for (std::size_t i = 0; i < heights.size(); ++i) {
    const auto at = static_cast<double>(i);
    whole += heights[i];
    sum += heights[i] * at;
    squares += heights[i] * at * at;
  }
  if (!(whole > 0.0)) return 1;
  const double variance = std::max(squares / whole - sum / whole * (sum / whole), 0.0);
  const double width = std::max(kScott * std::sqrt(variance) / std::cbrt(runs), 1.0);
  return *std::ranges::min_element(
      kGroups, {}, [width](std::size_t group) { return std::abs(std::log(static_cast<double>(group) / width)); });
}

}  // namespace

bool takeBinsTogether(std::vector<double>& edges, std::vector<double>& heights, double runs) {
  if (heights.size() != kHistogramEntries || edges.size() != heights.size() + 1) return false;
  const std::size_t group = suitedGroup(heights, runs);
  std::vector<double> wider, sums;
  for (std::size_t first = 0; first < kWholeCount; first += group) {
    const auto begin = heights.begin() + static_cast<std::ptrdiff_t>(first);
    wider.push_back(edges[first]);
    sums.push_back(std::accumulate(begin, begin + static_cast<std::ptrdiff_t>(group), 0.0));
  }
  wider.push_back(edges[kWholeCount]);
  sums.back() += heights[kWholeCount];
  edges = std::move(wider);
  heights = std::move(sums);
  return true;
}

}  // namespace tarvex
