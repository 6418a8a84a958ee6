#pragma once

#include <string_view>

namespace tarvex {

// Characters that no name may hold, and those that it may not begin with: the same and the digits. Bytes above 127
// count as forbidden too, so names are ASCII.
bool isForbiddenInName(char c);
bool isForbiddenAtNameStart(char c);
// Not empty, a good first character, no forbidden one and no control character: one word on one line.
bool isValidName(std::string_view name);
// The first white-space-delimited word of a line.
std::string_view firstWord(std::string_view line);

}  // namespace tarvex
