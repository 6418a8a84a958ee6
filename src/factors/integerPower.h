#pragma once

#include <cstddef>

namespace tarvex {

// std::pow(x, exponent) of `count` numbers for an exponent of 2, 3 or 4, to the last bit.
//
// The power is computed to about a hundred bits. Where its distance from the middle between two doubles is more than
// the library's pow() errs by beyond half a unit in the last place, both round to the same double. Elsewhere pow() is
// asked. glibc's e_pow.c tells its errors: 0.54 units for any arguments; 0.511 of its exp(), and 1.5 * 2^-68 * 2^53 for
// each unit of the logarithm of the power, which for x of 2^-16 to 2^16 and exponents up to 4 adds 0.002.
void integerPowers(int exponent, const double* x, double* powers, std::size_t count);

inline constexpr int kLeastPower = 2;
inline constexpr int kLargestPower = 4;

}  // namespace tarvex
