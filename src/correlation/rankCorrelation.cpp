#include "correlation/rankCorrelation.h"

#include <cmath>
#include <cstddef>
#include <cstdint>

#include "base/sortPositions.h"

namespace tarvex {
namespace {

// Ranks less their mean; empty without the memory.
std::vector<double> centredRanks(const std::vector<double>& values) {
  std::vector<std::int32_t> positions;
  if (!sortPositions(values, positions)) return {};
  const auto at = [&](std::size_t place) { return static_cast<std::size_t>(positions[place]); };
  std::vector<double> ranks(values.size());
  const double mean = (static_cast<double>(values.size()) - 1.0) / 2.0;
  for (std::size_t first = 0; first < positions.size();) {
    std::size_t last = first;
    while (last + 1 < positions.size() && values[at(last + 1)] == values[at(first)]) ++last;
    const double shared = static_cast<double>(first + last) / 2.0 - mean;
    for (; first <= last; ++first) ranks[at(first)] = shared;
  }
  return ranks;
}

}  // namespace

double rankCorrelation(const std::vector<double>& x, const std::vector<double>& y) {
  const std::vector<double> first = centredRanks(x);
  const std::vector<double> second = centredRanks(y);
  if (first.size() != second.size()) return 0.0;
  double products = 0.0;
  double squares = 0.0;
  double others = 0.0;
  for (std::size_t i = 0; i < first.size(); ++i) {
    products += first[i] * second[i];
    squares += first[i] * first[i];
    others += second[i] * second[i];
  }
  return squares > 0.0 && others > 0.0 ? products / std::sqrt(squares * others) : 0.0;
}

}  // namespace tarvex
