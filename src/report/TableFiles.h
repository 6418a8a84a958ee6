#pragma once

#include <string>

#include "postproc/UaStats.h"

namespace tarvex {

class PrepConfiguration;
class VelsConfiguration;

// Writes the saved tables of all that was computed into `directory`, which is made when it doesn't exist: a file per
// variable and table, named after both. False, with a message, when one can't be written.
[[nodiscard]] bool writeTableFiles(const PrepConfiguration& prep, const VelsConfiguration& vels,
                                   const std::string& directory, HistogramScale scale, std::string& message);

}  // namespace tarvex
