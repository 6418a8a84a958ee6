#pragma once

#include <string>

namespace tarvex {

class ProjectConfiguration;

// All numbers of an analysis with full precision. CSV: a number a line under the columns block, variable, item,
// quantity, value. JSON: the same by variable, with what was sampled and run. Infinities and values that are not
// numbers are the texts "inf", "-inf", "nan". False, with a message, when the file can't be written.
[[nodiscard]] bool exportCsv(const ProjectConfiguration& project, const std::string& path, std::string& message);
[[nodiscard]] bool exportJson(const ProjectConfiguration& project, const std::string& path, std::string& message);

}  // namespace tarvex
