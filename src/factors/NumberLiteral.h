#pragma once

#include <cstddef>
#include <string_view>

namespace tarvex {

// Reads the real that stands at `position` of `text` and moves `position` behind it. The value is built digit by digit
// in double arithmetic, so it may differ from the nearest double in the last bit. False for a point without digits or
// an exponent without digits; `position` is then where a digit was missing.
[[nodiscard]] bool readNumberLiteral(std::string_view text, std::size_t& position, double& value);

// `value` as it enters an equation: written by "%.<precision>g" and read back by the rule of readNumberLiteral, a minus
// sign counting as an operator. A value that is not finite stays what it is.
double enteringValue(double value, int precision = 6);
// The same at six digits for `count` values that stand `step` apart, in less time.
void enteringValues(const double* values, std::size_t step, std::size_t count, double* entering);

}  // namespace tarvex
