#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace tarvex {

class InternalModel;

// The names of the equations that use `name` as a word of their own. More than the model's own bookkeeping notes,
// which looks at the first occurrence alone.
std::vector<std::string> equationsUsing(const InternalModel& model, const std::string& name);

// "y1", "y1 and y2", "y1, y2 and 7 more".
std::string listed(const std::vector<std::string>& names);

// What an equation reads that isn't there where it stands: "a is no input and no equation; it reads as 0". Empty:
// nothing.
std::string missingNames(const InternalModel& model, std::size_t position);

}  // namespace tarvex
