#pragma once

#include <string>
#include <vector>

#include "base/Progress.h"

namespace tarvex {

class FactorList;

// The run in the middle of a list: constants at their values, sampled factors at their medians, and relations, in list
// order, at what they give where those are at their means. False, with the factor's number in the message, when a
// factor has no median, and after a stop.
[[nodiscard]] bool centralRun(const FactorList& factors, std::vector<double>& run, std::string& message,
                              const Progress& progress = {});

}  // namespace tarvex
