#include "base/uniformRandom.h"

#include <algorithm>
#include <cstddef>

#include "base/randomWords.h"

namespace tarvex {
namespace {

constexpr std::int32_t kInitialTrialWord = 5648423;

std::int32_t trialWord = kInitialTrialWord;

}  // namespace

void RandomWords::restart(std::int32_t& state) {
  constexpr int kWarmUp = 40;
  state = std::max(wrap(0U - bits(state)), 1);
  state2_ = state;
  for (int j = kWarmUp - 1; j >= 0; --j) {
    state = step<kFirst>(state);
    if (j < kTableSize) table_[static_cast<std::size_t>(j)] = state;
  }
  last_ = table_[0];
}

std::int32_t RandomWords::drawPlainly(std::int32_t& state) {
  if (state <= 0) restart(state);
  state = step<kFirst>(state);
  state2_ = step<kSecond>(state2_);
  const std::int32_t index = std::clamp(last_ / kTableStep, 0, kTableSize - 1);
  std::int32_t& entry = table_[static_cast<std::size_t>(index)];
  last_ = wrap(bits(entry) - bits(state2_));
  entry = state;
  if (last_ < 1) last_ = wrap(bits(last_) + bits(kModulus1 - 1));
  return last_;
}

double uniformRandom(std::int32_t& state) {
  return RandomWords::numberOf(RandomWords::shared.drawPlainly(state));
}

void uniformRandom(std::int32_t& state, double* numbers, std::size_t count) {
  RandomWords::shared.draw(state, count,
                           [numbers](std::size_t k, std::int32_t word) { numbers[k] = RandomWords::numberOf(word); });
}

void restoreInitialRandomState() {
  RandomWords::shared = RandomWords();
}

double trialRandom() {
  // 32-bit arithmetic that wraps around.
  const auto bits = static_cast<std::uint32_t>(trialWord) * 65539U;
  trialWord = static_cast<std::int32_t>(bits);
  if (trialWord < 0) trialWord = static_cast<std::int32_t>(0U - bits);
  return trialWord * static_cast<double>(4.656613e-10F);
}

void restoreInitialTrialState() {
  trialWord = kInitialTrialWord;
}

}  // namespace tarvex
