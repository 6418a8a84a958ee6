#include "sampling/LpTauSequence.h"

#include <algorithm>
#include <bit>

namespace tarvex {

bool LpTauSequence::lpTauPoint(std::int32_t n, std::int32_t dimension, std::vector<double>& out) {
  constexpr double kScale = 0x1p-31;
  if (n < 0 || dimension < 1 || dimension > kMaxDimension) return false;
  const auto size = static_cast<std::size_t>(dimension);
  const auto index = static_cast<std::uint32_t>(n);
  const auto step = [this, size](int bit) {
    const auto& direction = kLpTauDirections[static_cast<std::size_t>(bit)];
    for (std::size_t j = 0; j < size; ++j) point_[j] ^= direction[j];
  };

  if (n == lastIndex_ + 1 && dimension <= lastDimension_) {
    step(std::countr_zero(index));
  } else {
    std::fill_n(point_.begin(), size, 0);
    for (std::uint32_t gray = index >> 1 ^ index; gray != 0; gray &= gray - 1) step(std::countr_zero(gray));
  }
  lastIndex_ = n;
  lastDimension_ = dimension;

  out.resize(size);
  for (std::size_t j = 0; j < size; ++j) out[j] = point_[j] * kScale;
  return true;
}

}  // namespace tarvex
