#include <filesystem>

#include "app/Analysis.h"
#include "app/FrontEnd.h"
#include "app/ProjectConfiguration.h"
#include "batch/CommandFiles.h"
#include "batch/Commands.h"
#include "batch/StudyFile.h"
#include "plots/savePicture.h"
#include "report/Document.h"
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
  QuantileTable quantiles;
  if (!completeAnalysis(postProcessor, console.frontEnd)) return kFailed;
  if (!postProcessor.provideTable(console.watched(), message) ||
      !computeQuantiles(*postProcessor.snapshot()->table, {}, quantiles, message, console.watched()))
    return console.fail(message);
  const std::string title =
      options.title.empty() ? std::filesystem::path(options.input).stem().string() : options.title;
  if (!saveDocument(options.output, studyReport(project.prep, project.model, project.vels, title, quantiles), message))
    return console.fail(message);
  console.out << "Report of " << project.model.results.runCount() << " runs: " << options.output << '\n';
  return kSucceeded;
}

}  // namespace tarvex
