#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <utility>

#include "base/uniformRandom.h"

namespace tarvex {

// Exchanges two values of `count` drawn by uniformRandom, `pairs` times. The places of a batch of pairs are drawn
// before the batch before it is exchanged, so that the processor fetches their values meanwhile.
template <class Value>
void exchangeAtRandom(std::int32_t& state, Value* values, std::int32_t count, std::size_t pairs) {
  constexpr std::size_t kTogether = 64;  // pairs: their values, and those of the batch before, lie in the nearest cache
  double numbers[2 * kTogether];
  std::int32_t batches[2][2 * kTogether];
  std::size_t waiting = 0;  // pairs of the batch before
  std::size_t turn = 0;
  for (std::size_t drawn = 0; drawn < pairs || waiting > 0; turn = 1 - turn) {
    std::int32_t* const next = batches[turn];
    const std::int32_t* const before = batches[1 - turn];
    const std::size_t some = std::min(pairs - drawn, kTogether);
    uniformRandom(state, numbers, 2 * some);
    for (std::size_t k = 0; k < 2 * some; ++k)
      next[k] = std::min(static_cast<std::int32_t>(numbers[k] * count), count - 1);
    for (std::size_t k = 0; k < 2 * std::max(some, waiting); k += 2) {
      if (k < 2 * some) {
        __builtin_prefetch(values + next[k], 1);
        __builtin_prefetch(values + next[k + 1], 1);
      }
      if (k < 2 * waiting) std::swap(values[before[k]], values[before[k + 1]]);
    }
    waiting = some;
    drawn += some;
  }
}

}  // namespace tarvex
