#pragma once

#include <map>
#include <string_view>

namespace tarvex {

// The names that a text of the calculator language uses as values or targets, each with whether the text assigns it
// anywhere. Names of called functions and comments don't count. The names point into `text`.
std::map<std::string_view, bool> namesInText(std::string_view text);

}  // namespace tarvex
