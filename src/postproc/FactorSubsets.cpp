#include "postproc/FactorSubsets.h"

#include <algorithm>
#include <cstddef>
#include <numeric>

namespace tarvex {

namespace {

// C(n, r), kMany when more than that.
std::int64_t choose(std::int64_t n, std::int64_t r) {
  if (r < 0 || r > n) return 0;
  r = std::min(r, n - r);
  std::int64_t result = 1;
  for (std::int64_t i = 0; i < r; ++i) {
    result = result * (n - i) / (i + 1);
    if (result >= FactorSubsets::kMany) return FactorSubsets::kMany;
  }
  return result;
}

// The next subset of the same size out of `count` positions. False after the last.
bool advance(FactorSubsets::Subset& subset, std::int32_t count) {
  const auto size = static_cast<std::int32_t>(subset.size());
  for (std::int32_t i = size - 1; i >= 0; --i) {
    if (subset[i] == count - size + i) continue;
    std::iota(subset.begin() + i, subset.end(), subset[i] + 1);
    return true;
  }
  return false;
}

}  // namespace

std::int64_t FactorSubsets::countOf(std::int32_t count, std::int32_t maxSize) {
  std::int64_t total = 0;
  for (std::int32_t size = 1; size <= std::min(count, maxSize) && total < kMany; ++size) total += choose(count, size);
  return std::min(total, kMany);
}

FactorSubsets::FactorSubsets(std::int32_t count, std::int32_t maxSize) : count_(count) {
  all_.reserve(static_cast<std::size_t>(countOf(count, maxSize)));
  for (std::int32_t size = 1; size <= std::min(count, maxSize); ++size) {
    Subset subset(static_cast<std::size_t>(size));
    std::iota(subset.begin(), subset.end(), 0);
    do all_.push_back(subset);
    while (advance(subset, count));
  }
}

std::int64_t FactorSubsets::numberOf(const Subset& subset) const {
  const auto size = static_cast<std::int32_t>(subset.size());
  std::int64_t number = countOf(count_, size - 1);
  std::int32_t first = 0;  // least position that the place could hold
  for (std::int32_t i = 0; i < size && number < kMany; ++i) {
    // Passed over: all that hold a smaller position in this place.
    for (; first < subset[i] && number < kMany; ++first) number += choose(count_ - 1 - first, size - 1 - i);
    ++first;
  }
  return number;
}

FactorSubsets::Subset FactorSubsets::complement(const Subset& subset) const {
  Subset others;
  for (std::int32_t position = 0; position < count_; ++position)
    if (!std::binary_search(subset.begin(), subset.end(), position)) others.push_back(position);
  return others;
}

}  // namespace tarvex
