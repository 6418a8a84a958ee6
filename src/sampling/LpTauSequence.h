#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "sampling/LpTauDirections.h"

namespace tarvex {

// The points of Sobol's LP-tau sequence (I. M. Sobol', USSR Comput. Maths. Math. Phys. 7, 1967), a quasi-random
// sequence in base 2, in its natural order. Asking for the points one after the other is the fast way.
class LpTauSequence {
 public:
  static constexpr std::int32_t kMaxDimension = kLpTauDimensions;

  // Point number n, each coordinate in [0, 1), into `out`; point 0 is the zero point. False, with nothing changed, when
  // n is negative or `dimension` is outside 1 to 370.
  [[nodiscard]] bool lpTauPoint(std::int32_t n, std::int32_t dimension, std::vector<double>& out);

 private:
  std::int32_t lastIndex_ = -2;  // not the predecessor of any point
  std::int32_t lastDimension_ = 0;
  std::array<std::int32_t, kMaxDimension> point_{};  // coordinates, scaled to 31 bits
};

}  // namespace tarvex
