#pragma once

#include <string>
#include <string_view>

namespace tarvex {

// Files of comma-separated values.

inline constexpr int kCsvPrecision = 17;  // significant digits: a double comes back as it was

// A text in quotes, each of its own doubled.
std::string csvQuoted(std::string_view text);
// A text as a field: in quotes only where it needs them.
std::string csvText(std::string_view text);

}  // namespace tarvex
