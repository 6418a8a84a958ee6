#pragma once

#include <string>

#include "base/Progress.h"

namespace tarvex {

class ProjectConfiguration;
struct Console;

enum class FileKind { Unknown, Factors, Sample, Model, PostProcessor, Project };

// By the name's ending, or else by how the file begins.
FileKind fileKindOf(const std::string& path);

// Loads whatever a file holds of a study: the factors of a factor file (without a Prep part), a sample, results, a
// project. False, with the system's message, when it can't be read as that. A message on success is a warning.
[[nodiscard]] bool readStudyFile(const std::string& path, FileKind kind, const Progress& progress,
                                 ProjectConfiguration& project, std::string& message);
// The same of a file that tells its kind; the message, with the path, goes to the console.
[[nodiscard]] bool loadStudyFile(const std::string& path, ProjectConfiguration& project, const Console& console);

}  // namespace tarvex
