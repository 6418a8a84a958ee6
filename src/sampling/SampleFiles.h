#pragma once

#include <cstdint>
#include <string>

#include "base/Progress.h"

namespace tarvex {

class PrepConfiguration;

// What is said, before the reason, of a sample file that can't be written.
inline constexpr const char* kSampleNotWritten =
    "Error trying to write to the Sample file.\nIs it locked by another application?";

// What is said, before the reason, of a file that the user chose and that can't be written: the system's text with the
// path.
std::string outputNotWritten(const std::string& path);

// Sample files as a whole. On failure or a stop `prep`, or the old file, stays as it was; the message is the system's
// and, on the next line, where and what was found or what the system said.

[[nodiscard]] bool loadSampleFile(const std::string& path, PrepConfiguration& prep, std::string& message,
                                  const Progress& progress = {});
// An external sample: counts, factor names, numbers. Its factors have no distribution, their names are such as a sample
// file takes. `sampleFile` is then `path`. A message on success is a warning: text behind the last number.
[[nodiscard]] bool loadExternalSample(const std::string& path, PrepConfiguration& prep, std::string& message,
                                      const Progress& progress = {});
// An external sample doesn't go over a text that is no sample file: it could be the one that it was imported from.
[[nodiscard]] bool saveSampleFile(const std::string& path, const PrepConfiguration& prep, std::string& message,
                                  const Progress& progress = {});
// The same for a caller with a message of its own: `problem` is the next line alone.
[[nodiscard]] bool writeSampleFile(const std::string& path, const PrepConfiguration& prep, std::string& problem,
                                   const Progress& progress = {});
// About how many bytes the record of `prep` takes in a file, for the progress of writing it.
std::uint64_t recordBytes(const PrepConfiguration& prep);

}  // namespace tarvex
