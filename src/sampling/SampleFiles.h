#pragma once

#include <string>

namespace tarvex {

class PrepConfiguration;

// Sample files as a whole. On failure `prep`, or the old file, stays as it was and the message is the system's.

[[nodiscard]] bool loadSampleFile(const std::string& path, PrepConfiguration& prep, std::string& message);
// An external sample: counts, factor names, numbers. Its factors have no distribution.
[[nodiscard]] bool loadExternalSample(const std::string& path, PrepConfiguration& prep, std::string& message);
[[nodiscard]] bool saveSampleFile(const std::string& path, const PrepConfiguration& prep, std::string& message);

}  // namespace tarvex
