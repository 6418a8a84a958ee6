#pragma once

#include <cstdint>

namespace tarvex {

// The leading decimal digits of a double, correctly rounded: an exact value half-way between two goes to the even one.
class DecimalDigits {
 public:
  static constexpr int kMost = 10;

  std::uint64_t digits = 0;  // `count` of them, the first not 0
  int exponent = 0;          // of the first digit: value = d.ddd * 10^exponent

  // Finds the first `count` digits (1 to kMost) of a finite `size` above 0. False when integer arithmetic can't tell to
  // which side the rest rounds: it is a half to within 2^-26 in the last digit or better.
  [[nodiscard]] bool find(double size, int count);
  // 10^n, n up to kMost.
  static std::uint64_t integerPower(int n) { return kIntegerPowers[n]; }

 private:
  static constexpr std::uint64_t kIntegerPowers[] = {1,       10,       100,       1000,       10000,      100000,
                                                     1000000, 10000000, 100000000, 1000000000, 10000000000};
};

}  // namespace tarvex
