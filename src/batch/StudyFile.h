#pragma once

#include <string>

namespace tarvex {

class ProjectConfiguration;
struct Console;

enum class FileKind { Unknown, Factors, Sample, Model, PostProcessor, Project };

// By the name's ending, or else by how the file begins.
FileKind fileKindOf(const std::string& path);

// Loads whatever a file holds of a study: the factors of a factor file (without a Prep part), a sample, results, a
// project. False, with the system's message and the path, when it can't be read or is none of these.
[[nodiscard]] bool loadStudyFile(const std::string& path, ProjectConfiguration& project, const Console& console);

}  // namespace tarvex
