#pragma once

#include <string>
#include <vector>

namespace tarvex {

class InternalModel;

// The inputs of a model take the factors of a sample by position. A warning for the user when that pairs a factor with
// an input although an input of the factor's own name stands elsewhere; empty when no name is displaced.
std::string linkWarning(const std::vector<std::string>& factorNames, const InternalModel& model);

}  // namespace tarvex
