#pragma once

#include <array>
#include <cstdint>

namespace tarvex {

inline constexpr int kLpTauBits = 31;  // of a point's index, and of a coordinate
inline constexpr int kLpTauDimensions = 370;

// The stepping table of the LP-tau sequence: row b is what changes in each coordinate, scaled to 31 bits, when bit b of
// the Gray code of the point's index changes.
using LpTauDirections = std::array<std::array<std::int32_t, kLpTauDimensions>, kLpTauBits>;
extern const LpTauDirections kLpTauDirections;

}  // namespace tarvex
