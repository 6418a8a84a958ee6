#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <utility>

#include "base/randomWords.h"

namespace tarvex {

// Exchanges two values of `count` drawn as by uniformRandom, `pairs` times. The values of a batch of pairs are fetched
// while the rest of it is drawn, and exchanged while the next one is: the three wait for different things.
template <class Value>
void exchangeAtRandom(std::int32_t& state, Value* values, std::int32_t count, std::size_t pairs) {
  constexpr std::size_t kTogether = 64;  // pairs: their values, and those of the batch before, lie in the nearest cache
  std::int32_t batches[2][2 * kTogether];
  std::size_t waiting = 0;  // places of the batch before
  std::size_t turn = 0;
  for (std::size_t drawn = 0; drawn < pairs || waiting > 0; turn = 1 - turn) {
    std::int32_t* const next = batches[turn];
    const std::int32_t* const before = batches[1 - turn];
    const std::size_t some = std::min(pairs - drawn, kTogether);
    RandomWords::shared.draw(state, 2 * some, [=](std::size_t k, std::int32_t word) {
      const auto place = static_cast<std::int32_t>(RandomWords::numberOf(word) * count);
      next[k] = std::min(place, count - 1);
      __builtin_prefetch(values + next[k], 1);
      if (k % 2 != 0 && k < waiting) std::swap(values[before[k - 1]], values[before[k]]);
    });
    for (std::size_t k = 2 * some; k < waiting; k += 2) std::swap(values[before[k]], values[before[k + 1]]);
    waiting = 2 * some;
    drawn += some;
  }
}

}  // namespace tarvex
