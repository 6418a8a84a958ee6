#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace tarvex {

// How a text fares that a user types as a variable.
struct VariableTrial {
  std::string reason = {};  // empty: it can be analysed
  std::size_t place = 0;    // of what is wrong, in bytes from the start of the text
};

// Takes and refuses what OutputVariables::check() takes and refuses, and says where a refused text goes wrong.
VariableTrial tryVariable(const std::string& text, const std::vector<std::string>& outputNames);

}  // namespace tarvex
