#pragma once

#include <string>

#include "base/Progress.h"

namespace tarvex {

class PrepConfiguration;

// Whether the file holds the sample of `prep`, digit by digit as it is written: a sample file, or an external one for a
// sample that was imported. False after a stop.
[[nodiscard]] bool fileHoldsSample(const std::string& path, const PrepConfiguration& prep, const Progress& progress);

}  // namespace tarvex
