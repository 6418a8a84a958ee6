#pragma once

#include <cstdint>
#include <string>

#include "base/Progress.h"

namespace tarvex {

class FactorList;

// What an import does with the factors: attach the sample to the list as it stands, make the list anew from the sample,
// or attach it to a list that has as many factors as the sample has columns.
enum SteinImport : std::int32_t { kSteinAttachAny = 0, kSteinReplace = 1, kSteinAttach = 2 };

// Brings a sample in from a text file. Attaching turns the list to its Stein correlation. Replacing makes a `Uniform`
// of each column, by its empirical distribution; a list with factors is replaced only by one of as many, so a caller
// that means to drop the old list empties it first. On failure the message is the system's, with where and what on its
// second line, and the list is left in the state reached, as after a stop: import into a copy.
[[nodiscard]] bool importStein(const std::string& path, SteinImport mode, FactorList& list, std::string& message,
                               const Progress& progress = {});

}  // namespace tarvex
