#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace tarvex {

// Longest text that writeNumber makes at a precision of up to 17.
inline constexpr int kMaxNumberText = 32;

// `value` as "%.<precision>g" prints it in the C locale, but "nan" without a sign; "inf" and "-inf".
std::string numberText(double value, int precision = 6);

// The same into a buffer of at least kMaxNumberText bytes, without a terminator. Returns one past the last byte.
char* writeNumber(char* out, double value, int precision = 6);

// The number that stands at the start of `text`: optional sign, decimal digits with point and exponent, or "inf",
// "nan" (with either sign, any letter case, "infinity" too). Returns the bytes taken, 0 when there is no number or its
// size is beyond the type's range; `value` is set only on success. A number too small for the type is 0 or a denormal.
std::size_t parseNumber(std::string_view text, double& value);
std::size_t parseNumber(std::string_view text, float& value);

// The same for the usual number of a table, by a shorter way: a sign, some digits, a point and digits behind it,
// fifteen digits at most. 0 for every other text, which parseNumber() may yet take, and where 'e' follows. Requires:
// kShortNumberRoom bytes at `text`.
inline constexpr std::size_t kShortNumberRoom = 40;
std::size_t parseShortNumber(const char* text, double& value);

// True when the whole of `text`, blanks around it apart, is one number.
bool isNumber(std::string_view text, double& value);

}  // namespace tarvex
