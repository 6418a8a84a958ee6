#pragma once

#include <string>
#include <vector>

#include "base/Progress.h"

namespace tarvex {

class FactorList;

// The rows of a fixed sample from a CSV file: a header of factor names in any order, each factor once, then a run per
// line. Each row of `rows` is in the order of the factor list. On failure the message names file, line and fault.
[[nodiscard]] bool readRowsFile(const std::string& path, const FactorList& factors,
                                std::vector<std::vector<double>>& rows, std::string& message,
                                const Progress& progress = {});
// Writes such a file, in the order of the list. On failure the message names the file and the reason, and an old file
// stands.
[[nodiscard]] bool saveRowsFile(const std::string& path, const FactorList& factors,
                                const std::vector<std::vector<double>>& rows, std::string& message);

}  // namespace tarvex
