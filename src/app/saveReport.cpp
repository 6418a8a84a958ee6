#include "app/saveReport.h"

#include "app/RunController.h"
#include "postproc/Quantiles.h"
#include "report/Document.h"
#include "report/StudyReport.h"

namespace tarvex {

namespace {

// Asks for what the report lacks, the values of the variables included.
Outcome provideAnalysis(RunController& controller) {
  const std::shared_ptr<const AnalysisSnapshot> present = controller.analysis();
  AnalysisRequest request;
  request.variables = present->variables;
  request.uncertainty = present->uncertainty.variableCount() == 0;
  request.sensitivity = present->sensitivity == nullptr;
  if (!request.uncertainty && !request.sensitivity && present->table) return Outcome::Done;
  return controller.analyse(request);
}

}  // namespace

bool saveReport(const ProjectConfiguration& project, const OutputTable& values, const std::string& path,
                const ReportWords& words, std::string& message, const Progress& progress) {
  // Parts of the time: quantiles, the text, its pages.
  constexpr double kQuantiles = 0.2, kText = 0.4;
  QuantileTable quantiles;
  if (!computeQuantiles(values, {}, quantiles, message, progress.part(0.0, kQuantiles))) return false;
  const Document document =
      studyReport(project.prep, project.model, project.vels, words, quantiles, progress.part(kQuantiles, kText));
  return saveDocument(path, document, message, progress.part(kText, 1.0));
}

Outcome saveReport(RunController& controller, const std::string& path, const ReportWords& words) {
  const std::int32_t runs = controller.project().model.results.runCount();
  std::string problem = controller.whyNot(Step::Analyse);
  if (!controller.busy() && (!problem.empty() || !isReportFile(path, problem)))
    return controller.perform("Writing the report", runs, [&](const Progress&, std::string& message) {
      message = problem;
      return false;
    });
  if (const Outcome outcome = provideAnalysis(controller); outcome != Outcome::Done) return outcome;
  const std::shared_ptr<const AnalysisSnapshot> snapshot = controller.analysis();
  return controller.perform("Writing the report", runs, [&](const Progress& progress, std::string& message) {
    return saveReport(controller.project(), *snapshot->table, path, words, message, progress);
  });
}

}  // namespace tarvex
