#include "base/NumberText.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <limits>

#include "base/DecimalDigits.h"

namespace tarvex {
namespace {

constexpr int kMaxPrecision = 17;  // what kMaxNumberText has room for

// Powers of ten that a double holds exactly.
constexpr double kPowersOfTen[] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,  1e8,  1e9,  1e10, 1e11,
                                   1e12, 1e13, 1e14, 1e15, 1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};

bool isDigit(char c) {
  return c >= '0' && c <= '9';
}
char lower(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

bool startsWith(std::string_view text, std::string_view lowerWord) {
  return text.size() >= lowerWord.size() &&
         std::equal(lowerWord.begin(), lowerWord.end(), text.begin(), [](char a, char b) { return a == lower(b); });
}

constexpr std::array<char, 200> kPairs = [] {
  std::array<char, 200> pairs{};
  for (std::size_t i = 0; i < pairs.size(); ++i) pairs[i] = static_cast<char>('0' + (i % 2 == 0 ? i / 20 : i / 2 % 10));
  return pairs;
}();

void writePair(char* out, std::uint32_t number) {
  std::memcpy(out, kPairs.data() + std::size_t{2} * number, 2);
}

// What "%.<precision>g" makes of a number's first digits. Whole blocks are copied: `out` has room for kMaxNumberText,
// less a sign.
char* writeDigits(char* out, const DecimalDigits& number, int precision) {
  constexpr int kLeastFixedExponent = -4;
  constexpr std::uint32_t kHalfOfEight = 10000;
  constexpr std::size_t kBlock = 16;
  char digits[2 * kBlock]{};  // what stands behind the digits is copied and written over
  const std::uint64_t ten = number.digits * DecimalDigits::integerPower(DecimalDigits::kMost - precision);
  const auto low = static_cast<std::uint32_t>(ten % 100000000);
  writePair(digits, static_cast<std::uint32_t>(ten / 100000000));
  writePair(digits + 2, low / kHalfOfEight / 100);
  writePair(digits + 4, low / kHalfOfEight % 100);
  writePair(digits + 6, low % kHalfOfEight / 100);
  writePair(digits + 8, low % kHalfOfEight % 100);
  int count = DecimalDigits::kMost;
  while (count > 1 && digits[count - 1] == '0') --count;

  const int point = number.exponent + 1;  // digits before it
  const bool fixed = number.exponent >= kLeastFixedExponent && number.exponent < precision;
  if (fixed && point <= 0) {
    std::copy_n("0.000", 5, out);
    std::memcpy(out + 2 - point, digits, kBlock);
    return out + 2 - point + count;
  }
  const int whole = fixed ? point : 1;
  std::memcpy(out, digits, kBlock);
  out += whole;
  if (count > whole) {
    *out++ = '.';
    std::memcpy(out, digits + whole, kBlock);
    out += count - whole;
  }
  if (fixed) return out;
  *out++ = 'e';
  *out++ = number.exponent < 0 ? '-' : '+';
  const auto exponent = static_cast<std::uint32_t>(std::abs(number.exponent));
  if (exponent >= 100) *out++ = static_cast<char>('0' + exponent / 100);
  writePair(out, exponent % 100);
  return out + 2;
}

// "inf", "infinity" or "nan" at the start of `text`; returns the bytes taken.
template <class Real>
std::size_t parseNonFinite(std::string_view text, Real& value) {
  if (startsWith(text, "nan")) {
    value = std::numeric_limits<Real>::quiet_NaN();
    return 3;
  }
  if (!startsWith(text, "inf")) return 0;
  value = std::numeric_limits<Real>::infinity();
  return startsWith(text, "infinity") ? 8 : 3;
}

// Whether a number out of range is too small rather than too large: from_chars tells no difference. Looks for the
// decimal place of the first digit that isn't 0.
bool isTiny(const char* first, const char* last) {
  long long place = 0;  // of the digit last seen, counted from the point
  bool point = false;
  bool found = false;
  const char* p = first;
  for (; p != last && (isDigit(*p) || *p == '.'); ++p) {
    if (*p == '.') {
      point = true;
      continue;
    }
    found = found || *p != '0';
    if (found && !point) ++place;
    if (!found && point) --place;
  }
  if (!found) return true;
  long long exponent = 0;
  if (p != last && lower(*p) == 'e') {
    const bool plus = ++p != last && *p == '+';
    if (std::from_chars(p + (plus ? 1 : 0), last, exponent).ec == std::errc::result_out_of_range) return *p == '-';
  }
  return exponent < -place;
}

constexpr std::size_t kWordCharacters = sizeof(std::uint64_t);  // characters that are looked at together
constexpr int kByteBits = 8;

// Eight characters, the first in the lowest byte, less '0' each. A borrow shows in the highest bit of the first byte
// that is no digit, and spoils those behind it.
struct EightCharacters {
  explicit EightCharacters(const char* p) {
    constexpr std::uint64_t kEach = 0x0101010101010101;
    std::uint64_t word = 0;
    std::memcpy(&word, p, sizeof word);
    if constexpr (std::endian::native == std::endian::big) word = __builtin_bswap64(word);
    digits = word - '0' * kEach;
    // So does a sum beyond 0x7F.
    others = (digits | (word + (0x7F - '9') * kEach)) & 0x80 * kEach;
  }
  // How many digits stand there before anything else.
  std::size_t count() const { return static_cast<std::size_t>(std::countr_zero(others)) / kByteBits; }
  // The whole number of the first `length` characters, 1 to 8. Requires: they are digits.
  std::uint64_t number(std::size_t length) const {
    // With zeros in front of them; then added up in pairs, fours and eights within the word.
    const std::uint64_t eight = digits << (kByteBits * (kWordCharacters - length));
    const std::uint64_t pairs = (eight * 10 + (eight >> 8)) & 0x00FF00FF00FF00FF;
    const std::uint64_t fours = (pairs * 100 + (pairs >> 16)) & 0x0000FFFF0000FFFF;
    return (fours * 10000 + (fours >> 32)) & 0xFFFFFFFF;
  }

  std::uint64_t digits;
  std::uint64_t others;  // 0: all are digits
};

// A number without a sign. Branches on what is usual, a digit before the point and ten behind it, so that the next
// number need not wait for the lengths of this one to be computed.
std::size_t parseUnsigned(const char* p, double& value) {
  constexpr std::size_t kMostDigits = 15;  // their whole number is below 2^53
  std::uint64_t digits = 0;
  std::size_t whole = 1;
  if (p[1] == '.') {
    if (!isDigit(*p)) return 0;
    digits = static_cast<std::uint64_t>(*p - '0');
  } else {
    const EightCharacters first(p);
    whole = first.count();
    if (whole == 0 || whole == kWordCharacters || p[whole] != '.') return 0;
    digits = first.number(whole);
  }
  const char* const fraction = p + whole + 1;
  const EightCharacters first(fraction);
  std::size_t count = kWordCharacters;
  if (first.others == 0) {
    digits = digits * 100000000 + first.number(kWordCharacters);
    const EightCharacters rest(fraction + kWordCharacters);
    const std::size_t more = rest.count();
    if (more > 0) digits = digits * DecimalDigits::integerPower(static_cast<int>(more)) + rest.number(more);
    count += more;
  } else {
    count = first.count();
    if (count == 0) return 0;
    digits = digits * DecimalDigits::integerPower(static_cast<int>(count)) + first.number(count);
  }
  if (whole + count > kMostDigits || lower(fraction[count]) == 'e') return 0;
  // The digits are exact, and so is the power of ten: one quotient rounds as the text does (W. D. Clinger, PLDI 1990).
  value = static_cast<double>(digits) / kPowersOfTen[count];
  return whole + 1 + count;
}

template <class Real>
std::size_t parseReal(std::string_view text, Real& value) {
  const char* const begin = text.data();
  const char* const end = begin + text.size();
  const bool negative = begin != end && *begin == '-';
  const char* first = begin + (negative || (begin != end && *begin == '+') ? 1 : 0);
  if (first == end) return 0;
  Real parsed = 0;
  const char* last = first;
  if (isDigit(*first) || *first == '.') {
    const std::from_chars_result result = std::from_chars(first, end, parsed);
    last = result.ptr;
    if (result.ec == std::errc::invalid_argument) return 0;
    if (result.ec == std::errc::result_out_of_range) {
      if (!isTiny(first, last)) return 0;
      parsed = 0;
    }
    if (std::isinf(parsed)) return 0;
  } else {
    const std::size_t taken = parseNonFinite({first, static_cast<std::size_t>(end - first)}, parsed);
    if (taken == 0) return 0;
    last = first + taken;
  }
  value = negative && !std::isnan(parsed) ? -parsed : parsed;
  return static_cast<std::size_t>(last - begin);
}

}  // namespace

char* writeNumber(char* out, double value, int precision) {
  if (std::isnan(value)) return std::copy_n("nan", 3, out);
  DecimalDigits number;
  const double size = std::fabs(value);
  if (precision >= 1 && precision <= DecimalDigits::kMost && size > 0 && std::isfinite(size) &&
      number.find(size, precision)) {
    if (value < 0) *out++ = '-';
    return writeDigits(out, number, precision);
  }
  return std::to_chars(out, out + kMaxNumberText, value, std::chars_format::general, std::min(precision, kMaxPrecision))
      .ptr;
}

std::string numberText(double value, int precision) {
  char text[kMaxNumberText];
  return std::string(text, writeNumber(text, value, precision));
}

std::size_t parseShortNumber(const char* text, double& value) {
  if (*text != '-') return parseUnsigned(text, value);
  const std::size_t taken = parseUnsigned(text + 1, value);
  if (taken == 0) return 0;
  value = -value;
  return taken + 1;
}

std::size_t parseNumber(std::string_view text, double& value) {
  if (text.size() >= kShortNumberRoom)
    if (const std::size_t taken = parseShortNumber(text.data(), value); taken > 0) return taken;
  return parseReal(text, value);
}
std::size_t parseNumber(std::string_view text, float& value) {
  return parseReal(text, value);
}

bool isNumber(std::string_view text, double& value) {
  constexpr std::string_view kBlanks = " \t\n\v\f\r";
  const std::size_t first = text.find_first_not_of(kBlanks);
  if (first == std::string_view::npos) return false;
  text = text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
  double parsed = 0;
  if (parseNumber(text, parsed) != text.size()) return false;
  value = parsed;
  return true;
}

}  // namespace tarvex
