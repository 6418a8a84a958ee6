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

double numberOf(std::int32_t word) {
  const double result = word * kScale;
  return result > kLargest ? kLargest : result;
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

double drawPlainly(std::int32_t& state) {
  if (state <= 0) restart(state);
  state = step1(state);
  shared.state2 = step2(shared.state2);
  const std::int32_t index = std::clamp(shared.last / kTableStep, 0, kTableSize - 1);
  std::int32_t& entry = shared.shuffle[static_cast<std::size_t>(index)];
  shared.last = wrap(bits(entry) - bits(shared.state2));
  entry = state;
  if (shared.last < 1) shared.last = wrap(bits(shared.last) + bits(kModulus1 - 1));
  return numberOf(shared.last);
}

// step() of a word from 1 to 2^31 - 1, by a reciprocal and without a branch: a negative result wraps around with its
// sum with the modulus. The quotient of the first generator lets results reach beyond 2^31, which the sum makes words
// again; none lies from 2^31 to 2^31 + 85, where it would not wrap. So both generators stay in that range.
template <std::uint32_t kMultiplier, std::uint32_t kQuotient, std::uint32_t kRemainder, std::int32_t kModulus>
std::uint32_t quickStep(std::uint32_t x) {
  constexpr int kShift = 46;
  constexpr std::uint64_t kReciprocal = ((std::uint64_t{1} << kShift) + kQuotient - 1) / kQuotient;
  static_assert((kReciprocal * kQuotient - (std::uint64_t{1} << kShift)) << 31 <= std::uint64_t{1} << kShift,
                "rounded up so little that the quotients of all words are exact");
  const auto k = static_cast<std::uint32_t>(x * kReciprocal >> kShift);
  const std::uint32_t y = kMultiplier * x - (kMultiplier * kQuotient + kRemainder) * k;
  return std::min(y, y + bits(kModulus));
}

// All words are where drawWords() can take them up: above 0.
bool areRegular(std::int32_t state) {
  return state > 0 && shared.state2 > 0 && shared.last > 0 &&
         std::ranges::all_of(shared.shuffle, [](std::int32_t entry) { return entry > 0; });
}

// What drawPlainly() makes `last` of, `count` times; fewer where the place in the table is beyond its end. Returns how
// many. Requires: areRegular(). Each number waits for the one before it, so what counts is the length of that chain:
// the entry's place without a division, and both candidates for the difference at once.
std::size_t drawWords(std::int32_t& state, std::int32_t* words, std::size_t count) {
  constexpr int kPlaceBits = 26;
  static_assert(kTableStep == (1 << kPlaceBits) - 2);
  std::uint32_t word1 = bits(state);
  std::uint32_t word2 = bits(shared.state2);
  std::uint32_t before = bits(shared.last) - 1;
  std::size_t done = 0;
  for (; done < count; ++done) {
    // With last - 1 = q 2^26 + r the quotient of last by 2^26 - 2 is q, or one more where r + 2q + 3 reaches 2^26.
    const std::uint32_t place = (before + 3 + 2 * (before >> kPlaceBits)) >> kPlaceBits;
    if (place >= kTableSize) [[unlikely]]
      break;
    word1 = quickStep<40014, 53688, 12211, kModulus1>(word1);
    word2 = quickStep<40692, 52774, 3791, kModulus2>(word2);
    const std::uint32_t entry = bits(shared.shuffle[place]);
    shared.shuffle[place] = wrap(word1);
    // Less 1, as it is kept here, a difference below 1 has wrapped around, and wraps back with what is added to it.
    before = std::min(entry - (word2 + 1), entry + (bits(kModulus1 - 2) - word2));
    words[done] = wrap(before + 1);
  }
  state = wrap(word1);
  shared.state2 = wrap(word2);
  shared.last = wrap(before + 1);
  return done;
}

}  // namespace

double uniformRandom(std::int32_t& state) {
  return drawPlainly(state);
}

void uniformRandom(std::int32_t& state, double* numbers, std::size_t count) {
  constexpr std::size_t kFew = 8;  // draws for which looking at all words doesn't pay
  constexpr std::size_t kTogether = 256;
  std::int32_t words[kTogether];
  for (std::size_t done = 0; done < count;) {
    const std::size_t some = std::min(count - done, kTogether);
    const std::size_t drawn = some > kFew && areRegular(state) ? drawWords(state, words, some) : 0;
    for (std::size_t k = 0; k < drawn; ++k) numbers[done + k] = numberOf(words[k]);
    done += drawn;
    if (drawn < some) numbers[done++] = drawPlainly(state);
  }
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
