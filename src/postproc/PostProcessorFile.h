#pragma once

#include <string>

#include "base/Progress.h"

namespace tarvex {

class ModelConfiguration;
class PrepConfiguration;
class VelsConfiguration;

// What is said, before the reason, of one that can't be written.
inline constexpr const char* kResultsNotWritten =
    "Error trying to write to the Statistical post processor file.\nIs it locked by another application?";

// A post-processor file (.spc): sample, model results and statistics of one study, one record after the other. On
// failure or a stop the three objects, or the old file, stay as they were; the message is the system's, with where and
// what below it. A message of a load that succeeded is a warning: names of outputs that had to be changed.
[[nodiscard]] bool loadPostProcessorFile(const std::string& path, PrepConfiguration& prep, ModelConfiguration& model,
                                         VelsConfiguration& vels, std::string& message, const Progress& progress = {});
[[nodiscard]] bool savePostProcessorFile(const std::string& path, const PrepConfiguration& prep,
                                         const ModelConfiguration& model, const VelsConfiguration& vels,
                                         std::string& message, const Progress& progress = {});

}  // namespace tarvex
