#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>

namespace tarvex {

// The words behind uniformRandom(), for what draws many of them.
class RandomWords {
 public:
  static RandomWords shared;

  // Calls take(k, word) for each k below `count`, with the words of as many numbers.
  template <class Take>
  void draw(std::int32_t& state, std::size_t count, const Take& take) {
    constexpr std::size_t kFew = 8;  // words for which looking at all of the table doesn't pay
    for (std::size_t done = 0; done < count;) {
      if (count - done > kFew && areRegular(state)) done = drawQuickly(state, done, count, take);
      if (done < count) {
        take(done, drawPlainly(state));
        ++done;
      }
    }
  }
  std::int32_t drawPlainly(std::int32_t& state);

  // In the open interval (0, 1).
  static double numberOf(std::int32_t word) {
    const double result = word * kScale;
    return result > kLargest ? kLargest : result;
  }

 private:
  static constexpr std::int32_t kModulus1 = 2147483563;
  static constexpr std::int32_t kModulus2 = 2147483399;
  static constexpr int kTableSize = 32;
  static constexpr std::int32_t kTableStep = 1 + (kModulus1 - 1) / kTableSize;
  static constexpr double kScale = 4.656613057391769e-10;  // the double nearest 1 / kModulus1
  static constexpr double kLargest = static_cast<double>(0.99999988F);
  static constexpr std::int32_t kInitialSecondWord = 123456789;

  // Of Schrage's form of multiplier * x modulo modulus. Kept: the published quotient of the first generator is 53668.
  // Every stream that users know was drawn with this one.
  struct Generator {
    std::int32_t multiplier;
    std::int32_t quotient;
    std::int32_t remainder;
    std::int32_t modulus;
  };
  static constexpr Generator kFirst{40014, 53688, 12211, kModulus1};
  static constexpr Generator kSecond{40692, 52774, 3791, kModulus2};

  // 32-bit arithmetic that wraps around.
  static constexpr std::uint32_t bits(std::int32_t x) { return static_cast<std::uint32_t>(x); }
  static constexpr std::int32_t wrap(std::uint32_t x) { return static_cast<std::int32_t>(x); }

  template <Generator kGenerator>
  static std::int32_t step(std::int32_t x) {
    const std::int32_t k = x / kGenerator.quotient;
    const std::int32_t rest = wrap(bits(x) - bits(k) * bits(kGenerator.quotient));
    const std::int32_t y = wrap(bits(kGenerator.multiplier) * bits(rest) - bits(kGenerator.remainder) * bits(k));
    return y < 0 ? wrap(bits(y) + bits(kGenerator.modulus)) : y;
  }
  // step() of a word from 1 to 2^31 - 1, by a reciprocal. The results are such words, too: the quotient of the first
  // generator lets them reach beyond 2^31, where the sum with the modulus makes words of them again, none of which is
  // below 1.
  template <Generator kGenerator>
  static std::uint32_t quickStep(std::uint32_t x) {
    constexpr int kShift = 46;
    constexpr std::uint32_t kMultiplier = bits(kGenerator.multiplier);
    constexpr std::uint32_t kQuotient = bits(kGenerator.quotient);
    constexpr std::uint64_t kReciprocal = ((std::uint64_t{1} << kShift) + kQuotient - 1) / kQuotient;
    static_assert((kReciprocal * kQuotient - (std::uint64_t{1} << kShift)) << 31 <= std::uint64_t{1} << kShift,
                  "rounded up so little that the quotients of all words are exact");
    const auto k = static_cast<std::uint32_t>(x * kReciprocal >> kShift);
    const std::uint32_t y = kMultiplier * x - (kMultiplier * kQuotient + bits(kGenerator.remainder)) * k;
    return wrap(y) < 0 ? y + bits(kGenerator.modulus) : y;
  }

  void restart(std::int32_t& state);

  // All words are where drawQuickly() can take them up: above 0.
  bool areRegular(std::int32_t state) const {
    std::int32_t least = std::min({state, state2_, last_});
    for (const std::int32_t entry : table_) least = std::min(least, entry);
    return least > 0;
  }

  // What drawPlainly() makes of the words, from the number `done` on, up to `count` or to where the place in the table
  // asks for a division. Returns how many are done. Requires: areRegular(). Each word waits for the one before it, so
  // what counts is the length of that chain: nothing but a shift is done to get an entry's place, and both candidates
  // for the difference are there when it is known which one it is.
  template <class Take>
  std::size_t drawQuickly(std::int32_t& state, std::size_t done, std::size_t count, const Take& take) {
    constexpr int kPlaceBits = 26;
    static_assert(kTableStep == (1 << kPlaceBits) - 2);
    // With last - 1 = q 2^26 + r the quotient of last by 2^26 - 2 is q as long as r + 2q + 3 stays below 2^26.
    constexpr std::uint32_t kRest = (1U << kPlaceBits) - 1;
    constexpr std::uint32_t kUnsure = (1U << kPlaceBits) - 3 - 2 * (kTableSize - 1);
    // One less than the words, so that a sign says which candidate it is.
    std::array<std::uint32_t, kTableSize> table;
    for (std::size_t i = 0; i < table.size(); ++i) table[i] = bits(table_[i]) - 1;
    std::uint32_t word1 = bits(state);
    std::uint32_t word2 = bits(state2_);
    std::uint32_t before = bits(last_) - 1;
    for (; done < count && (before & kRest) < kUnsure; ++done) {
      word1 = quickStep<kFirst>(word1);
      word2 = quickStep<kSecond>(word2);
      std::uint32_t& entry = table[before >> kPlaceBits];
      const std::uint32_t difference = entry - word2;
      entry = word1 - 1;
      before = wrap(difference) < 0 ? difference + bits(kModulus1 - 1) : difference;
      take(done, wrap(before + 1));
    }
    for (std::size_t i = 0; i < table.size(); ++i) table_[i] = wrap(table[i] + 1);
    state = wrap(word1);
    state2_ = wrap(word2);
    last_ = wrap(before + 1);
    return done;
  }

  std::int32_t state2_ = kInitialSecondWord;
  std::array<std::int32_t, kTableSize> table_{};
  std::int32_t last_ = 0;
};

inline constinit RandomWords RandomWords::shared{};

}  // namespace tarvex
