#include "factors/integerPower.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>

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

Product product(double a, double b) {
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
Product power(double x) {
  const Product square = product(x, x);
  if constexpr (kExponent == 2) return square;
  const Product next = product(square.nearest, kExponent == 3 ? x : square.nearest);
  const double rest = next.rest + square.rest * (kExponent == 3 ? x : 2.0 * square.nearest);
  const double nearest = next.nearest + rest;
  return {nearest, (next.nearest - nearest) + rest};
}

// Whether every double within 0.54 units in the last place of the power is the nearest one. A power of two has a nearer
// neighbour below: not there.
bool isCertain(const Product& power) {
  constexpr double kNearest = 0.44;
  constexpr std::uint64_t kMantissa = (std::uint64_t{1} << 52) - 1;
  constexpr std::uint64_t kExponent = 0x7ff0000000000000;
  const std::uint64_t bits = std::bit_cast<std::uint64_t>(power.nearest);
  const double unit = std::bit_cast<double>(bits & kExponent) * 0x1p-52;
  return ((bits & kMantissa) != 0) & (std::fabs(power.rest) <= kNearest * unit);
}

template <int kExponent>
void powers(const double* x, double* result, std::size_t count) {
  // Fourth powers and their rests stay inside the range of normal doubles.
  constexpr double kLeast = 1e-60;
  constexpr double kLargest = 1e60;
  constexpr std::size_t kBlock = 64;
  bool isGood[kBlock];
  for (std::size_t first = 0; first < count; first += kBlock) {
    const std::size_t rows = std::min(kBlock, count - first);
    const double* const from = x + first;
    double* const to = result + first;
    for (std::size_t i = 0; i < rows; ++i) {
      const double size = std::fabs(from[i]);
      const Product found = power<kExponent>(from[i]);
      to[i] = found.nearest;
      isGood[i] = (size > kLeast) & (size < kLargest) & isCertain(found);
    }
    for (std::size_t i = 0; i < rows; ++i)
      if (!isGood[i]) to[i] = kPow(from[i], static_cast<double>(kExponent));
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
