#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace tarvex {

// The analysed variables that are one output at two times or more.
struct TimedVariables {
  std::string output;
  std::vector<std::pair<double, std::int32_t>> at;  // time and place among the variables, upwards by time
};

// Of each output that is analysed so, in the order of the outputs. Maxima and expressions are of no time.
std::vector<TimedVariables> timedVariables(const std::vector<std::string>& variables,
                                           const std::vector<std::string>& outputNames);

}  // namespace tarvex
