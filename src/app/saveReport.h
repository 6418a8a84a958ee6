#pragma once

#include <string>

#include "app/Outcome.h"
#include "base/Progress.h"
#include "postproc/OutputTable.h"

namespace tarvex {

class ProjectConfiguration;
class RunController;
struct ReportWords;

// Writes the report of a project whose analysis is complete, as a page of HTML or as PDF by the suffix of the path;
// `values` are those of its variables. False, with a sentence for the user, when it can't be made or written, and after
// a stop; an old file then stays.
[[nodiscard]] bool saveReport(const ProjectConfiguration& project, const OutputTable& values, const std::string& path,
                              const ReportWords& words, std::string& message, const Progress& progress);

// The same of the project in a controller's hands, under a display of progress; what isn't computed for it yet is, and
// what is wrong is shown.
Outcome saveReport(RunController& controller, const std::string& path, const ReportWords& words);

}  // namespace tarvex
