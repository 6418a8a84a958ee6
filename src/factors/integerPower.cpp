#include "factors/integerPower.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>

#include "base/VectorUnits.h"

namespace tarvex {
namespace {

// Not to be known to the compiler, which takes pow(x, 2.0) for a product.
double (*volatile const kPow)(double, double) = std::pow;

// A product as the nearest double and the rest, exactly, by T. J. Dekker's splitting; both factors and the product must
// lie well inside the range of doubles.
struct Product {
  double nearest;
  double rest;
};

TARVEX_INLINE Product product(double a, double b) {
  constexpr double kSplit = 134217729.0;  // 2^27 + 1
  const double bigA = kSplit * a;
  const double highA = bigA - (bigA - a);
  const double lowA = a - highA;
  const double bigB = kSplit * b;
  const double highB = bigB - (bigB - b);
  const double lowB = b - highB;
  const double nearest = a * b;
  return {nearest, ((highA * highB - nearest) + highA * lowB + lowA * highB) + lowA * lowB};
}

template <int kExponent>
TARVEX_INLINE Product power(double x) {
  const Product square = product(x, x);
  if constexpr (kExponent == 2) return square;
  const Product next = product(square.nearest, kExponent == 3 ? x : square.nearest);
  const double rest = next.rest + square.rest * (kExponent == 3 ? x : 2.0 * square.nearest);
  const double nearest = next.nearest + rest;
  return {nearest, (next.nearest - nearest) + rest};
}

// 0.0 where every double that pow() may give, as said in the header, is the nearest one to the power. A power of two
// has a nearer neighbour below: 1.0 there.
TARVEX_INLINE double doubtOf(double size, const Product& power) {
  // Fourth powers and their rests stay inside the range of normal doubles.
  constexpr double kLeast = 1e-60;
  constexpr double kLargest = 1e60;
  // Half a unit in the last place less what pow() errs by beyond half a unit, and some room.
  constexpr double kNearest = 0.44;
  constexpr double kNearestOfMedium = 0.48;
  constexpr double kLargestMedium = 0x1p16;
  constexpr std::uint64_t kMantissa = (std::uint64_t{1} << 52) - 1;
  constexpr std::uint64_t kExponent = 0x7ff0000000000000;
  const std::uint64_t bits = std::bit_cast<std::uint64_t>(power.nearest);
  const double unit = std::bit_cast<double>(bits & kExponent) * 0x1p-52;
  const double nearest = ((size > 1.0 / kLargestMedium) & (size < kLargestMedium)) ? kNearestOfMedium : kNearest;
  const bool isCertain =
      (size > kLeast) & (size < kLargest) & ((bits & kMantissa) != 0) & (std::fabs(power.rest) <= nearest * unit);
  return isCertain ? 0.0 : 1.0;
}

// Values and doubts.
template <int kExponent>
TARVEX_INLINE void powerRows(const double* x, double* result, double* doubts, std::size_t rows) {
  for (std::size_t i = 0; i < rows; ++i) {
    const Product found = power<kExponent>(x[i]);
    result[i] = found.nearest;
    doubts[i] = doubtOf(std::fabs(x[i]), found);
  }
}

template <int kExponent>
TARVEX_WIDE void powerRowsWide(const double* x, double* result, double* doubts, std::size_t rows) {
  powerRows<kExponent>(x, result, doubts, rows);
}

template <int kExponent>
void powers(const double* x, double* result, std::size_t count) {
  constexpr std::size_t kBlock = 128;
  double doubts[kBlock];
  for (std::size_t first = 0; first < count; first += kBlock) {
    const std::size_t rows = std::min(kBlock, count - first);
    const double* const from = x + first;
    double* const to = result + first;
    if (hasWideUnits())
      powerRowsWide<kExponent>(from, to, doubts, rows);
    else
      powerRows<kExponent>(from, to, doubts, rows);
    for (std::size_t i = 0; i < rows; ++i)
      if (doubts[i] != 0.0) to[i] = kPow(from[i], static_cast<double>(kExponent));
  }
}

}  // namespace

void integerPowers(int exponent, const double* x, double* result, std::size_t count) {
  switch (exponent) {
    case 2:
      return powers<2>(x, result, count);
    case 3:
      return powers<3>(x, result, count);
    default:
      return powers<4>(x, result, count);
  }
}

}  // namespace tarvex
