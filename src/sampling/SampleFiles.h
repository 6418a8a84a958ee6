#pragma once

#include <cstdint>
#include <string>

#include "base/Progress.h"

namespace tarvex {

class PrepConfiguration;

// Sample files as a whole. On failure or a stop `prep`, or the old file, stays as it was and the message is the
// system's.

[[nodiscard]] bool loadSampleFile(const std::string& path, PrepConfiguration& prep, std::string& message,
                                  const Progress& progress = {});
// An external sample: counts, factor names, numbers. Its factors have no distribution.
[[nodiscard]] bool loadExternalSample(const std::string& path, PrepConfiguration& prep, std::string& message,
                                      const Progress& progress = {});
[[nodiscard]] bool saveSampleFile(const std::string& path, const PrepConfiguration& prep, std::string& message,
                                  const Progress& progress = {});
// About how many bytes the record of `prep` takes in a file, for the progress of writing it.
std::uint64_t recordBytes(const PrepConfiguration& prep);

}  // namespace tarvex
