#pragma once

#include <cstddef>

namespace tarvex {

// std::pow(x, exponent) of `count` numbers for an exponent of 2, 3 or 4, to the last bit.
//
// The power is computed to about a hundred bits. Where its distance from the middle between two doubles is more than
// the library's pow() errs by beyond half a unit in the last place, below 0.04 in all its versions (0.54 units, glibc's
// e_pow.c), both round to the same double. Elsewhere pow() is asked.
void integerPowers(int exponent, const double* x, double* powers, std::size_t count);

inline constexpr int kLeastPower = 2;
inline constexpr int kLargestPower = 4;

}  // namespace tarvex
