#include "factors/NumberLiteral.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>

#include "base/NumberText.h"

namespace tarvex {

namespace {

bool isDigitAt(std::string_view text, std::size_t position) {
  return position < text.size() && text[position] >= '0' && text[position] <= '9';
}

constexpr int kSixDigits = 6;

constexpr double kPowersOfTen[] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,  1e8,  1e9,  1e10, 1e11,
                                   1e12, 1e13, 1e14, 1e15, 1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};  // exact

// Fractions of up to three digits, and the powers of ten of exponents, as readNumberLiteral makes them.
struct LiteralTables {
  static constexpr int kDigits = 3;
  static constexpr std::uint32_t kThousand = 1000;
  static constexpr int kLargestExponent = 30;

  LiteralTables() {
    fractions[0][0] = 0.0;
    std::uint32_t count = 1;
    for (int digits = 1; digits <= kDigits; ++digits) {
      count *= 10;
      for (std::uint32_t i = 0; i < count; ++i)
        fractions[digits][i] = (i / (count / 10) + fractions[digits - 1][i % (count / 10)]) * 0.1;
    }
    for (int exponent = -kLargestExponent; exponent <= kLargestExponent; ++exponent)
      powers[exponent + kLargestExponent] = std::pow(10.0, static_cast<double>(exponent));
  }

  double fractions[kDigits + 1][kThousand] = {};
  double powers[2 * kLargestExponent + 1];
};

// A positive number's six significant digits, rounded as "%g" does, and their exponent: digits / 1e5 * 10^exponent.
class SixDigits {
 public:
  // False where the digits need a look at the whole number: 0, beyond 1e-16 to 1e21, or too near to a tie.
  bool of(double size) {
    if (!(size >= 1e-16 && size < 1e21)) return false;
    // The scaled number errs by less than 1e-9: one rounding, or two near a power of ten.
    constexpr double kError = 1e-9;
    const int exponent2 = static_cast<int>(std::bit_cast<std::uint64_t>(size) >> 52) - 1023;
    exponent_ = (exponent2 * 1233) >> 12;  // 1233 / 4096: log10(2); at most one too small
    double scaled = scaledBy(size, 5 - exponent_);
    if (scaled >= 1e6) scaled = scaledBy(size, 5 - ++exponent_);
    digits_ = static_cast<std::uint32_t>(static_cast<std::int32_t>(scaled));
    const double rest = scaled - digits_;
    if (!(scaled >= 1e5 && scaled < 1e6 && std::fabs(rest - 0.5) > kError)) return false;
    digits_ += rest > 0.5 ? 1u : 0u;
    if (digits_ == 1000000) {
      digits_ = 100000;
      ++exponent_;
    }
    return true;
  }

  // The value of their text by the rule of readNumberLiteral.
  double read() const {
    static const LiteralTables tables;
    constexpr std::uint32_t kUnits[] = {1, 10, 100, 1000, 10000, 100000, 1000000};
    // 2^40 over the unit, rounded up: a product with it divides any number up to a million.
    constexpr int kShift = 40;
    constexpr std::uint64_t kDivisors[] = {1099511627776, 109951162778, 10995116278, 1099511628,
                                           109951163,     10995117,     1099512};
    const bool isFixed = exponent_ >= -4 && exponent_ < kSixDigits;
    const int point = isFixed ? kSixDigits - 1 - exponent_ : kSixDigits - 1;  // digits behind the point
    const int place = point < kSixDigits ? point : kSixDigits;
    const std::uint32_t whole = static_cast<std::uint32_t>(digits_ * kDivisors[place] >> kShift);
    std::uint32_t behind = digits_ - whole * kUnits[place];
    double fraction = tables.fractions[std::min(point, LiteralTables::kDigits)][behind % LiteralTables::kThousand];
    behind /= LiteralTables::kThousand;
    // One more digit, two or three: chosen at the end, as a processor can't tell beforehand.
    const double four = (behind % 10 + fraction) * 0.1;
    const double five = (behind / 10 % 10 + four) * 0.1;
    const double six = (behind / 100 + five) * 0.1;
    fraction = point > LiteralTables::kDigits ? four : fraction;
    fraction = point > LiteralTables::kDigits + 1 ? five : fraction;
    fraction = point > LiteralTables::kDigits + 2 ? six : fraction;
    for (int digit = kSixDigits; digit < point; ++digit) fraction *= 0.1;
    const double number = whole + fraction;
    return isFixed ? number : number * tables.powers[exponent_ + LiteralTables::kLargestExponent];
  }

 private:
  static double scaledBy(double size, int shift) {
    return shift >= 0 ? size * kPowersOfTen[shift] : size / kPowersOfTen[-shift];
  }

  std::uint32_t digits_ = 0;
  int exponent_ = 0;
};

}  // namespace

bool readNumberLiteral(std::string_view text, std::size_t& position, double& value) {
  const std::size_t start = position;
  double number = 0.0;
  for (; isDigitAt(text, position); ++position) number = number * 10.0 + (text[position] - '0');
  const bool hasInteger = position > start;
  if (position < text.size() && text[position] == '.') {
    const std::size_t fractionStart = ++position;
    while (isDigitAt(text, position)) ++position;
    if (!hasInteger && position == fractionStart) return false;
    double fraction = 0.0;
    // Kept: from the right, times 0.1. Equations have always seen 0.3 as 0.30000000000000004.
    for (std::size_t i = position; i > fractionStart; --i) fraction = ((text[i - 1] - '0') + fraction) * 0.1;
    number += fraction;
  } else if (!hasInteger) {
    return false;
  }
  if (position < text.size() && (text[position] == 'e' || text[position] == 'E')) {
    ++position;
    const bool negative = position < text.size() && text[position] == '-';
    if (negative || (position < text.size() && text[position] == '+')) ++position;
    if (!isDigitAt(text, position)) return false;
    std::uint32_t exponent = 0;  // wraps like the 32-bit integer that it stands for
    for (; isDigitAt(text, position); ++position) {
      exponent = exponent * 10u + static_cast<std::uint32_t>(text[position] - '0');
    }
    number *= std::pow(10.0, static_cast<double>(static_cast<std::int32_t>(negative ? 0u - exponent : exponent)));
  }
  value = number;
  return true;
}

double enteringValue(double value, int precision) {
  if (!std::isfinite(value)) return value;
  SixDigits digits;
  if (precision == kSixDigits && digits.of(std::fabs(value))) return std::copysign(digits.read(), value);
  char buffer[kMaxNumberText];
  const char* end = writeNumber(buffer, value, precision);
  const std::string_view text(buffer, static_cast<std::size_t>(end - buffer));
  std::size_t position = text.front() == '-' ? 1 : 0;
  double number = 0.0;
  static_cast<void>(readNumberLiteral(text, position, number));  // what was written can be read
  return text.front() == '-' ? -number : number;
}

}  // namespace tarvex
