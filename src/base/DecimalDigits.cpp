#include "base/DecimalDigits.h"

#include <array>
#include <bit>
#include <cstddef>

namespace tarvex {
namespace {

// From the first digit of the least double to what scales that double up to kMost digits.
constexpr int kLeastPower = -324;
constexpr int kMostPower = 324 + DecimalDigits::kMost - 1;
constexpr std::size_t kPowers = kMostPower - kLeastPower + 1;

// A whole number long enough for 10^kMostPower, and with 64 bits to spare for 10^-kLeastPower.
constexpr std::size_t kLimbs = 37;
constexpr std::size_t kLimbBits = 32;
using Whole = std::array<std::uint32_t, kLimbs>;  // least limb first

constexpr void multiplyByTen(Whole& number) {
  std::uint64_t carry = 0;
  for (std::uint32_t& limb : number) {
    carry += std::uint64_t{limb} * 10;
    limb = static_cast<std::uint32_t>(carry);
    carry >>= kLimbBits;
  }
}

constexpr void divideByTen(Whole& number) {
  std::uint64_t rest = 0;
  for (std::size_t i = kLimbs; i-- > 0;) {
    rest = rest << kLimbBits | number[i];
    number[i] = static_cast<std::uint32_t>(rest / 10);
    rest %= 10;
  }
}

constexpr std::uint64_t leading64Bits(const Whole& number) {
  std::size_t top = kLimbs - 1;
  while (number[top] == 0) --top;
  const auto limb = [&](std::size_t below) -> std::uint64_t { return top >= below ? number[top - below] : 0; };
  const std::uint64_t bits = limb(0) << kLimbBits | limb(1);
  const int shift = std::countl_zero(bits);
  return shift == 0 ? bits : bits << shift | limb(2) >> (static_cast<int>(kLimbBits) - shift);
}

// The leading 64 bits of each power, cut off. Cutting after each division by ten cuts the quotient by the whole power.
constexpr std::array<std::uint64_t, kPowers> leadingBits() {
  std::array<std::uint64_t, kPowers> table{};
  Whole number{1};
  for (int power = 0; power <= kMostPower; ++power) {
    table[static_cast<std::size_t>(power - kLeastPower)] = leading64Bits(number);
    if (power < kMostPower) multiplyByTen(number);
  }
  number = {};
  number.back() = 1;
  for (int power = -1; power >= kLeastPower; --power) {
    divideByTen(number);
    table[static_cast<std::size_t>(power - kLeastPower)] = leading64Bits(number);
  }
  return table;
}

constexpr std::array<std::uint64_t, kPowers> kLeadingBits = leadingBits();

__extension__ using Wide = unsigned __int128;

std::uint64_t leadingBitsOf(int power) {
  return kLeadingBits[static_cast<std::size_t>(power - kLeastPower)];
}

// floor(n log10 2) for |n| up to 1650, floor(n log2 10) for |n| up to 1233.
constexpr int floorLog10OfPower2(int n) {
  return (n * 78913) >> 18;
}
constexpr int floorLog2OfPower10(int n) {
  return (n * 1741647) >> 19;
}

}  // namespace

// Size is m * 2^e with 64 bits in m, the power of ten that leaves `count` digits before the point is g * 2^q with
// g cut to 64 bits: size times the power lies between m g 2^(e + q) and m (g + 1) 2^(e + q). Of m g the upper 64 bits
// are kept. So the scaled number is `high` in units of its last bit, or less than two units more.
bool DecimalDigits::find(double size, int count) {
  constexpr int kFractionBits = 52;
  constexpr int kLeastExponent = -1074;
  const auto bits = std::bit_cast<std::uint64_t>(size);
  const int biased = static_cast<int>(bits >> kFractionBits);
  std::uint64_t m = bits & ((std::uint64_t{1} << kFractionBits) - 1);
  if (biased > 0) m |= std::uint64_t{1} << kFractionBits;
  const int zeros = std::countl_zero(m);
  m <<= zeros;
  const int e = kLeastExponent + (biased > 0 ? biased - 1 : 0) - zeros;

  // The exponent of a number in [2^(e + 63), 2^(e + 64)) is this or, from the next power of ten on, one more. Found by
  // the power's cut bits it may be one too large within a last bit below the power, to which the digits round then.
  exponent = floorLog10OfPower2(e + 63);
  const bool sameBinade = floorLog2OfPower10(exponent + 1) == e + 63;
  exponent += static_cast<int>(sameBinade && m >= leadingBitsOf(exponent + 1));
  const std::uint64_t limit = kIntegerPowers[count];
  for (;; ++exponent) {
    const int power = count - 1 - exponent;
    const std::uint64_t g = leadingBitsOf(power);
    const auto high = static_cast<std::uint64_t>(static_cast<Wide>(m) * g >> 64);
    const int shift = -(e + floorLog2OfPower10(power) - 63 + 64);
    digits = high >> shift;
    if (digits >= limit) continue;
    const std::uint64_t rest = high & ((std::uint64_t{1} << shift) - 1);
    const std::uint64_t half = std::uint64_t{1} << (shift - 1);
    if (rest == half || rest == half - 1) return false;
    if (rest > half && ++digits == limit) {
      digits /= 10;
      ++exponent;
    }
    return true;
  }
}

}  // namespace tarvex
