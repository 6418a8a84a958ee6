#include "factors/NumberLiteral.h"

#include <cmath>
#include <cstdint>

#include "base/NumberText.h"

namespace tarvex {

namespace {

bool isDigitAt(std::string_view text, std::size_t position) {
  return position < text.size() && text[position] >= '0' && text[position] <= '9';
}

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
  char buffer[kMaxNumberText];
  const char* end = writeNumber(buffer, value, precision);
  const std::string_view text(buffer, static_cast<std::size_t>(end - buffer));
  std::size_t position = text.front() == '-' ? 1 : 0;
  double number = 0.0;
  readNumberLiteral(text, position, number);
  return text.front() == '-' ? -number : number;
}

}  // namespace tarvex
