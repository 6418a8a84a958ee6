#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace tarvex {

class FactorList;

// What stands against a generation from a list, told before it begins. An error: nothing can be sampled from the
// factor, or its record can't be written. A warning: it counts as 0.0 or as something else than it looks like.
struct FactorProblem {
  std::int32_t factor;  // its place in the list
  bool isError;
  std::string text;  // "load: Standard deviation must be >= 0", for the user as it is
};

// In list order. Looks at
// - names and notes that a record can't hold, and parameters that their setters refuse (errors);
// - constants that are no finite number, names that two factors have (warnings);
// - parameters that a file, which holds six digits, can't keep apart (warnings);
// - relations: no expression, a name that is no factor, one that belongs to a relation below, a circle (warnings).
// Linear in the list and its expressions, but for the circles: those times the relations in them.
std::vector<FactorProblem> factorProblems(const FactorList& list);

// The texts of the errors or of the warnings, a line each.
std::string problemLines(const std::vector<FactorProblem>& problems, bool errors);

// The factors that can be sampled now and no longer once they were saved and loaded, a line each; mostly empty. A file
// holds six digits: intervals from 2000000 to 2000001 end up without a width.
std::string lossesInFile(const FactorList& list);

}  // namespace tarvex
