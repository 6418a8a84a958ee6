#include "app/Analysis.h"

#include <algorithm>
#include <array>

#include "app/FrontEnd.h"
#include "app/ProjectConfiguration.h"
#include "base/NumberText.h"
#include "postproc/OutputVariables.h"
#include "postproc/RegressionStats.h"

namespace tarvex {

namespace {

constexpr std::array kStudentLevels = {0.75, 0.9, 0.95, 0.975, 0.99, 0.995, 0.9995};
constexpr std::array kKolmogorovLevels = {0.9, 0.95, 0.98, 0.99};

template <std::size_t N>
bool isLevel(const std::optional<double>& level, const std::array<double, N>& levels, std::string& message) {
  if (!level || std::find(levels.begin(), levels.end(), *level) != levels.end()) return true;
  message = "The confidence level " + numberText(*level, 10) + " is none of";
  for (const double offered : levels) message += " " + numberText(offered);
  return false;
}

bool fits(const ProjectConfiguration& project, std::string& message) {
  if (!project.prep.sampler)
    message = "The file holds no sampling method: nothing can be analysed.";
  else if (project.prep.samples.rows() != project.model.results.runCount())
    message = "The generated sample cardinality is different from model outputs size";
  else if (project.model.results.runCount() == 0 || project.model.results.outputCount() == 0)
    message = "   No variable selected.";
  else
    return true;
  return false;
}

// The measures' object for the sampling method, not computed.
void prepareMeasures(const ProjectConfiguration& project, std::int32_t variableCount, VelsConfiguration& vels) {
  vels.prepareSensitivity(project.prep.methodId());
  vels.sensitivity->factorCount = project.prep.factors.factorCount();
  vels.sensitivity->variableCount = variableCount;
}

bool computeMeasures(const ProjectConfiguration& project, const AnalysisRequest& request, const OutputTable& table,
                     VelsConfiguration& vels, std::string& message) {
  prepareMeasures(project, table.columns(), vels);
  if (auto* regression = dynamic_cast<RegressionStats*>(vels.sensitivity.get()); regression && request.alpha)
    regression->alpha = static_cast<float>(*request.alpha);
  if (vels.sensitivity->compute(project.prep, table)) return true;
  message = vels.sensitivity->errorText;
  return false;
}

bool computeAll(const ProjectConfiguration& project, const AnalysisRequest& request, OutputVariables& variables,
                VelsConfiguration& vels, std::string& message) {
  const std::vector<std::string> names = vels.outputNames(project.model);
  const std::vector<std::string> texts =
      request.variables.empty() ? OutputVariables::defaultVariables(names, project.model.results.hasTimeAxis())
                                : request.variables;
  OutputTable table;
  if (!variables.set(texts, names) || !variables.build(project.model, table)) {
    message = variables.errorText();
    return false;
  }
  if (texts != vels.selectedVariables()) {
    vels.clearVariables();
    // A text that names a variable is short enough for the record.
    for (const std::string& text : texts) static_cast<void>(vels.addVariable(text));
    vels.uncertainty.clear();
    if (vels.sensitivity && vels.sensitivity->computed) prepareMeasures(project, table.columns(), vels);
  }
  if (request.tchebyConfidence) vels.uncertainty.tchebyConfidence = *request.tchebyConfidence;
  if (request.kolmogorovConfidence) vels.uncertainty.kolmogorovConfidence = *request.kolmogorovConfidence;
  if (request.uncertainty && !vels.uncertainty.compute(texts, table)) {
    message = vels.uncertainty.errorText;
    return false;
  }
  return !request.sensitivity || computeMeasures(project, request, table, vels, message);
}

}  // namespace

bool analyse(ProjectConfiguration& project, const AnalysisRequest& request, FrontEnd& frontEnd) {
  std::string message;
  OutputVariables variables;
  VelsConfiguration vels(project.vels);
  if (!isLevel(request.tchebyConfidence, kStudentLevels, message) ||
      !isLevel(request.kolmogorovConfidence, kKolmogorovLevels, message) ||
      !isLevel(request.alpha, kStudentLevels, message) || !fits(project, message) ||
      !computeAll(project, request, variables, vels, message)) {
    frontEnd.message(MessageKind::Error, "Error", message);
    return false;
  }
  if (const std::string failures = variables.failures(); !failures.empty())
    frontEnd.message(MessageKind::Warning, "Warning", failures);
  project.setVels(std::move(vels));
  return true;
}

bool completeAnalysis(ProjectConfiguration& project, FrontEnd& frontEnd) {
  AnalysisRequest request;
  request.variables = project.vels.selectedVariables();
  request.uncertainty = project.vels.uncertainty.variableCount() == 0;
  request.sensitivity = !project.vels.sensitivity || !project.vels.sensitivity->computed;
  return (!request.uncertainty && !request.sensitivity) || analyse(project, request, frontEnd);
}

bool provideMeasures(ProjectConfiguration& project, const std::string& variable, FrontEnd& frontEnd,
                     std::int32_t& place) {
  const std::vector<std::string>& selected = project.vels.selectedVariables();
  if (project.vels.sensitivity && project.vels.sensitivity->computed && !selected.empty()) {
    const auto found = variable.empty() ? selected.begin() : std::ranges::find(selected, variable);
    place = static_cast<std::int32_t>(found - selected.begin());
    if (place < project.vels.sensitivity->variableCount) return true;
  }
  AnalysisRequest request;
  if (!variable.empty()) request.variables = {variable};
  request.uncertainty = false;
  place = 0;
  return analyse(project, request, frontEnd);
}

}  // namespace tarvex
