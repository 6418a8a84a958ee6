#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "base/Progress.h"

namespace tarvex {

class PrepConfiguration;

// Makes `selection` the sample of some runs of `prep`, in the order given, none allowed: the same factors, the kept
// rows, fresh statistics. Methods whose runs stand each for itself keep their section with the new count; a design that
// the selection destroys becomes a Random sample. `sampleFile` is empty. False, with the reason, when there is no such
// run, the store fails, or after a stop; `selection` is then as it was.
[[nodiscard]] bool selectRuns(const PrepConfiguration& prep, const std::vector<std::int32_t>& runs,
                              PrepConfiguration& selection, std::string& message, const Progress& progress = {});

// The same into a sample file, which names itself. Its message is the system's "  Error writing output file\n PATH",
// with the reason on the next line.
[[nodiscard]] bool saveSelection(const std::string& path, const PrepConfiguration& prep,
                                 const std::vector<std::int32_t>& runs, std::string& message,
                                 const Progress& progress = {});
// What is said of a selection that was saved.
std::string savedRunsText(std::int32_t total, std::int32_t saved);

}  // namespace tarvex
