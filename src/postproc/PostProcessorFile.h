#pragma once

#include <string>

namespace tarvex {

class ModelConfiguration;
class PrepConfiguration;
class VelsConfiguration;

// A post-processor file (.spc): sample, model results and statistics of one study, one record after the other. On
// failure the three objects, or the old file, stay as they were and the message is the system's.
[[nodiscard]] bool loadPostProcessorFile(const std::string& path, PrepConfiguration& prep, ModelConfiguration& model,
                                         VelsConfiguration& vels, std::string& message);
[[nodiscard]] bool savePostProcessorFile(const std::string& path, const PrepConfiguration& prep,
                                         const ModelConfiguration& model, const VelsConfiguration& vels,
                                         std::string& message);

}  // namespace tarvex
