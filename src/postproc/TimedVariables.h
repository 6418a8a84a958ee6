#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace tarvex {

// The analysed variables that are one output at two times or more.
struct TimedVariables {
  std::string output;
  std::vector<std::pair<double, std::int32_t>> at;  // time and place among the variables, upwards by time
};

// The place of the output among the names that a variable is a value of: by itself, at a time or at its maximum.
// Nothing for an expression.
std::optional<std::size_t> outputOfVariable(const std::string& variable, const std::vector<std::string>& outputNames);
// The time of a variable that is an output at one, "Y[2.5]".
std::optional<double> timeOfVariable(const std::string& variable, const std::vector<std::string>& outputNames);

// Of each output that is analysed so, in the order of the outputs. Maxima and expressions are of no time.
std::vector<TimedVariables> timedVariables(const std::vector<std::string>& variables,
                                           const std::vector<std::string>& outputNames);

}  // namespace tarvex
