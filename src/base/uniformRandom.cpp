#include "base/uniformRandom.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace tarvex {
namespace {

constexpr std::int32_t kModulus1 = 2147483563;
constexpr std::int32_t kModulus2 = 2147483399;
constexpr int kTableSize = 32;
constexpr int kWarmUp = 40;
constexpr std::int32_t kTableStep = 1 + (kModulus1 - 1) / kTableSize;
constexpr double kScale = 4.656613057391769e-10;  // the double nearest 1 / kModulus1
constexpr double kLargest = static_cast<double>(0.99999988F);
constexpr std::int32_t kInitialSecondWord = 123456789;
constexpr std::int32_t kInitialTrialWord = 5648423;

struct SharedWords {
  std::int32_t state2 = kInitialSecondWord;
  std::array<std::int32_t, kTableSize> shuffle{};
  std::int32_t last = 0;
};

SharedWords shared;
std::int32_t trialWord = kInitialTrialWord;

// 32-bit arithmetic that wraps around.
constexpr std::uint32_t bits(std::int32_t x) {
  return static_cast<std::uint32_t>(x);
}
constexpr std::int32_t wrap(std::uint32_t x) {
  return static_cast<std::int32_t>(x);
}

// Schrage's form of multiplier * x modulo modulus.
std::int32_t step(std::int32_t x, std::int32_t multiplier, std::int32_t quotient, std::int32_t remainder,
                  std::int32_t modulus) {
  const std::int32_t k = x / quotient;
  const std::int32_t y = wrap(bits(multiplier) * (bits(x) - bits(k) * bits(quotient)) - bits(remainder) * bits(k));
  return y < 0 ? wrap(bits(y) + bits(modulus)) : y;
}

// Kept: the published quotient is 53668. Every stream that users know was drawn with this one.
std::int32_t step1(std::int32_t x) {
  return step(x, 40014, 53688, 12211, kModulus1);
}
std::int32_t step2(std::int32_t x) {
  return step(x, 40692, 52774, 3791, kModulus2);
}

void restart(std::int32_t& state) {
  state = std::max(wrap(0U - bits(state)), 1);
  shared.state2 = state;
  for (int j = kWarmUp - 1; j >= 0; --j) {
    state = step1(state);
    if (j < kTableSize) shared.shuffle[static_cast<std::size_t>(j)] = state;
  }
  shared.last = shared.shuffle[0];
}

}  // namespace

double uniformRandom(std::int32_t& state) {
  double number = 0.0;
  uniformRandom(state, &number, 1);
  return number;
}

void uniformRandom(std::int32_t& state, double* numbers, std::size_t count) {
  // The words in registers.
  std::int32_t state1 = state;
  std::int32_t state2 = shared.state2;
  std::int32_t last = shared.last;
  for (std::size_t k = 0; k < count; ++k) {
    if (state1 <= 0) {
      state = state1;
      restart(state);
      state1 = state;
      state2 = shared.state2;
      last = shared.last;
    }
    state1 = step1(state1);
    state2 = step2(state2);
    const std::int32_t index = std::clamp(last / kTableStep, 0, kTableSize - 1);
    std::int32_t& entry = shared.shuffle[static_cast<std::size_t>(index)];
    last = wrap(bits(entry) - bits(state2));
    entry = state1;
    if (last < 1) last = wrap(bits(last) + bits(kModulus1 - 1));
    const double result = last * kScale;
    numbers[k] = result > kLargest ? kLargest : result;
  }
  state = state1;
  shared.state2 = state2;
  shared.last = last;
}

void restoreInitialRandomState() {
  shared = SharedWords();
}

double trialRandom() {
  trialWord = wrap(bits(trialWord) * 65539U);
  if (trialWord < 0) trialWord = wrap(0U - bits(trialWord));
  return trialWord * static_cast<double>(4.656613e-10F);
}

void restoreInitialTrialState() {
  trialWord = kInitialTrialWord;
}

}  // namespace tarvex
