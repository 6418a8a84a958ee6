#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <utility>

#include "base/uniformRandom.h"

namespace tarvex {

// Exchanges two values of `count` drawn by uniformRandom, `pairs` times. The places of some pairs are drawn before the
// first of them is exchanged, so that the processor fetches their values side by side.
template <class Value>
void exchangeAtRandom(std::int32_t& state, Value* values, std::int32_t count, std::size_t pairs) {
  constexpr std::size_t kTogether = 128;
  double numbers[2 * kTogether];
  std::int32_t places[2 * kTogether];
  for (std::size_t done = 0; done < pairs;) {
    const std::size_t some = std::min(pairs - done, kTogether);
    uniformRandom(state, numbers, 2 * some);
    for (std::size_t k = 0; k < 2 * some; ++k) {
      places[k] = std::min(static_cast<std::int32_t>(numbers[k] * count), count - 1);
      __builtin_prefetch(values + places[k], 1);
    }
    for (std::size_t k = 0; k < 2 * some; k += 2) std::swap(values[places[k]], values[places[k + 1]]);
    done += some;
  }
}

}  // namespace tarvex
