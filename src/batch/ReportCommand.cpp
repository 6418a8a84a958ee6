#include <filesystem>

#include "app/Analysis.h"
#include "app/FrontEnd.h"
#include "app/ProjectConfiguration.h"
#include "app/saveReport.h"
#include "batch/CommandFiles.h"
#include "batch/Commands.h"
#include "batch/StudyFile.h"
#include "plots/savePicture.h"
#include "report/StudyReport.h"

namespace tarvex {

int runReport(const ReportOptions& options, const Console& console) {
  CommandFiles files;
  files.reads("file to read", options.input);
  files.writes("report", options.output, kCannotCreate);
  ProjectConfiguration project;
  std::string message;
  if (!files.check(message) || !isReportFile(options.output, message)) return console.fail(message);
  if (!loadStudyFile(options.input, project, console)) return kFailed;
  if (!project.hasPrep || !project.hasModel)
    return console.fail("The file holds no results to report: " + options.input);
  PostProcessor postProcessor(project);
  if (!completeAnalysis(postProcessor, console.frontEnd)) return kFailed;
  const ReportWords words{options.title.empty() ? std::filesystem::path(options.input).stem().string() : options.title,
                          options.author, options.date.value_or(today())};
  if (!postProcessor.provideTable(console.watched(), message) ||
      !saveReport(project, *postProcessor.snapshot()->table, options.output, words, message, console.watched()))
    return console.fail(message);
  console.out << "Report of " << project.model.results.runCount() << " runs: " << options.output << '\n';
  return kSucceeded;
}

}  // namespace tarvex
