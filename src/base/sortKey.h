#pragma once

#include <bit>
#include <cmath>
#include <cstdint>

namespace tarvex {

// A key whose unsigned order is that of the numbers: equal numbers, both zeros too, have one key, and what is not a
// number has the highest.
inline std::uint64_t sortKey(double value) {
  constexpr std::uint64_t kSign = std::uint64_t{1} << 63;
  if (std::isnan(value)) return ~std::uint64_t{0};
  const auto bits = std::bit_cast<std::uint64_t>(value + 0.0);
  return bits & kSign ? ~bits : bits | kSign;
}

}  // namespace tarvex
