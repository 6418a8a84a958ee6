#pragma once

#include <string>

namespace tarvex {

class IntervalDistribution;

// A file that holds the points of a `Discrete` (value and weight a line) or the intervals of a `Uniform` or
// `LogUniform` (left, right and weight a line). Rows must fit what the class accepts. On failure `distribution` stays
// as it was; the message is the system's and, on its second line, says where and what.
[[nodiscard]] bool loadTabulatedValues(const std::string& path, IntervalDistribution& distribution,
                                       std::string& message);
[[nodiscard]] bool saveTabulatedValues(const std::string& path, const IntervalDistribution& distribution,
                                       std::string& message);

}  // namespace tarvex
