#include "base/NumberText.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <limits>

namespace tarvex {
namespace {

constexpr int kMaxPrecision = 17;  // what kMaxNumberText has room for

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
  return std::to_chars(out, out + kMaxNumberText, value, std::chars_format::general, std::min(precision, kMaxPrecision))
      .ptr;
}

std::string numberText(double value, int precision) {
  char text[kMaxNumberText];
  return std::string(text, writeNumber(text, value, precision));
}

std::size_t parseNumber(std::string_view text, double& value) {
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
