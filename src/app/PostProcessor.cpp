#include "app/PostProcessor.h"

#include <algorithm>
#include <array>
#include <utility>

#include "app/ProjectConfiguration.h"
#include "base/NumberText.h"
#include "postproc/CriticalValues.h"
#include "postproc/OutputVariables.h"
#include "postproc/RegressionStats.h"

namespace tarvex {

namespace {

constexpr double kTableShare = 0.3;        // of the time of an analysis, roughly
constexpr double kUncertaintyShare = 0.5;  // up to the end of the statistics

template <std::size_t N>
bool isLevel(const std::optional<double>& level, const std::array<double, N>& levels, std::string& message) {
  if (!level || std::find(levels.begin(), levels.end(), *level) != levels.end()) return true;
  message = "The confidence level " + numberText(*level, 10) + " is none of";
  for (const double offered : levels) message += " " + numberText(offered);
  return false;
}

bool areLevels(const AnalysisRequest& request, std::string& message) {
  return isLevel(request.tchebyConfidence, kStudentLevels, message) &&
         isLevel(request.kolmogorovConfidence, kKolmogorovLevels, message) &&
         isLevel(request.alpha, kStudentLevels, message);
}

// The measures' object for the sampling method, not computed.
void prepareMeasures(const ProjectConfiguration& project, std::size_t variableCount, VelsConfiguration& vels) {
  vels.prepareSensitivity(project.prep.methodId());
  vels.sensitivity->factorCount = project.prep.factors.factorCount();
  vels.sensitivity->variableCount = static_cast<std::int32_t>(variableCount);
}

bool fitsUncertainty(const VelsConfiguration& vels) {
  const std::vector<std::string>& names = vels.selectedVariables();
  if (names.empty() || static_cast<std::size_t>(vels.uncertainty.variableCount()) != names.size()) return false;
  for (std::size_t i = 0; i < names.size(); ++i)
    if (*vels.uncertainty.name(static_cast<std::int32_t>(i)) != names[i]) return false;
  return true;
}

bool fitsMeasures(const VelsConfiguration& vels) {
  return vels.sensitivity && vels.sensitivity->computed && !vels.selectedVariables().empty() &&
         static_cast<std::size_t>(vels.sensitivity->variableCount) == vels.selectedVariables().size();
}

void selectVariables(const ProjectConfiguration& project, const std::vector<std::string>& texts,
                     VelsConfiguration& vels) {
  if (texts == vels.selectedVariables()) return;
  vels.clearVariables();
  // A text that names a variable is short enough for the record.
  for (const std::string& text : texts) static_cast<void>(vels.addVariable(text));
  vels.uncertainty.clear();
  if (vels.sensitivity && vels.sensitivity->computed) prepareMeasures(project, texts.size(), vels);
}

}  // namespace

void PostProcessor::reset() {
  table_.reset();
  tableTexts_.clear();
  snapshot_.reset();
}

void PostProcessor::keep(VelsConfiguration vels) {
  project_.setVels(std::move(vels));
  snapshot_.reset();
}

std::string PostProcessor::whyNot() const {
  if (project_.model.results.runCount() == 0 || project_.model.results.outputCount() == 0)
    return "There are no results yet: run the model, or open saved ones.";
  if (const std::int32_t rows = project_.prep.samples.rows(); rows != project_.model.results.runCount())
    return "The generated sample cardinality is different from model outputs size\n" + std::to_string(rows) +
           " runs of the sample, " + std::to_string(project_.model.results.runCount()) + " of the results";
  if (!project_.resultsBelong())
    return "The results don't belong to the sample and the model in hand: run the model again.";
  return "";
}

const std::vector<std::string>& PostProcessor::variables() const {
  return project_.vels.selectedVariables();
}

bool PostProcessor::hasUncertainty() const {
  return fitsUncertainty(project_.vels);
}

bool PostProcessor::hasMeasures() const {
  return fitsMeasures(project_.vels);
}

bool PostProcessor::takeTexts(const std::vector<std::string>& texts, OutputVariables& variables,
                              std::string& message) const {
  message = whyNot();
  if (!message.empty()) return false;
  if (variables.set(texts, project_.vels.outputNames(project_.model))) return true;
  message = variables.errorText();
  return false;
}

bool PostProcessor::select(const std::vector<std::string>& texts, std::string& message) {
  OutputVariables variables;
  if (!takeTexts(texts, variables, message)) return false;
  VelsConfiguration vels(project_.vels);
  selectVariables(project_, texts, vels);
  keep(std::move(vels));
  return true;
}

bool PostProcessor::buildTable(OutputVariables& variables, const Progress& progress, std::string& message) {
  if (table_ && tableTexts_ == variables.texts()) return true;
  auto table = std::make_shared<OutputTable>();
  if (!variables.build(project_.model, *table, progress)) {
    message = variables.errorText();
    return false;
  }
  table_ = std::move(table);
  tableTexts_ = variables.texts();
  snapshot_.reset();
  return true;
}

bool PostProcessor::computeBlocks(const AnalysisRequest& request, const OutputTable& table, const Progress& progress,
                                  VelsConfiguration& vels, std::string& message) const {
  if (request.tchebyConfidence) vels.uncertainty.tchebyConfidence = *request.tchebyConfidence;
  if (request.kolmogorovConfidence) vels.uncertainty.kolmogorovConfidence = *request.kolmogorovConfidence;
  if (request.uncertainty &&
      !vels.uncertainty.compute(vels.selectedVariables(), table, progress.part(kTableShare, kUncertaintyShare))) {
    message = vels.uncertainty.errorText;
    return false;
  }
  if (!request.sensitivity) return progress.report(1.0);
  prepareMeasures(project_, vels.selectedVariables().size(), vels);
  if (auto* regression = dynamic_cast<RegressionStats*>(vels.sensitivity.get()); regression && request.alpha)
    regression->alpha = static_cast<float>(*request.alpha);
  if (vels.sensitivity->compute(project_.prep, table, progress.part(kUncertaintyShare, 1.0)))
    return progress.report(1.0);
  message = vels.sensitivity->errorText;
  return false;
}

bool PostProcessor::compute(const AnalysisRequest& request, const Progress& progress, std::string& message) {
  OutputVariables variables;
  const std::vector<std::string> texts =
      request.variables.empty() ? OutputVariables::defaultVariables(project_.vels.outputNames(project_.model),
                                                                    project_.model.results.hasTimeAxis())
                                : request.variables;
  if (!areLevels(request, message) || !takeTexts(texts, variables, message) ||
      !buildTable(variables, progress.part(0.0, kTableShare), message))
    return false;
  const std::shared_ptr<const OutputTable> table = table_;
  VelsConfiguration vels(project_.vels);
  selectVariables(project_, texts, vels);
  if (!computeBlocks(request, *table, progress, vels, message)) return false;
  keep(std::move(vels));
  message = variables.failures();
  return true;
}

bool PostProcessor::complete(const Progress& progress, std::string& message) {
  AnalysisRequest request;
  request.variables = variables();
  request.uncertainty = !hasUncertainty();
  request.sensitivity = !hasMeasures();
  return (!request.uncertainty && !request.sensitivity) || compute(request, progress, message);
}

bool PostProcessor::provideMeasures(const std::string& name, const Progress& progress, std::int32_t& variable,
                                    std::string& message) {
  if (hasMeasures()) {
    const auto place = name.empty() ? variables().begin() : std::find(variables().begin(), variables().end(), name);
    variable = static_cast<std::int32_t>(place - variables().begin());
    if (place != variables().end()) return true;
  }
  AnalysisRequest request;
  if (!name.empty()) request.variables = {name};
  request.uncertainty = false;
  variable = 0;
  return compute(request, progress, message);
}

bool PostProcessor::provideTable(const Progress& progress, std::string& message) {
  OutputVariables taken;
  return takeTexts(variables(), taken, message) && buildTable(taken, progress, message);
}

bool PostProcessor::applyAlpha(double alpha, const Progress& progress, std::string& message) {
  if (!isLevel(std::optional(alpha), kStudentLevels, message)) return false;
  const auto* present = dynamic_cast<const RegressionStats*>(project_.vels.sensitivity.get());
  if (!hasMeasures() || present == nullptr) {
    message = "There are no measures with a test of their significance.";
    return false;
  }
  if (present->alpha == static_cast<float>(alpha)) return true;
  OutputVariables variables;
  if (!takeTexts(this->variables(), variables, message) ||
      !buildTable(variables, progress.part(0.0, kTableShare), message))
    return false;
  VelsConfiguration vels(project_.vels);
  auto& measures = static_cast<RegressionStats&>(*vels.sensitivity);
  if (!measures.applyAlpha(static_cast<float>(alpha), project_.prep, *table_, progress.part(kTableShare, 1.0))) {
    message = "The significance can't be decided anew: the measures are of another sample.";
    return false;
  }
  keep(std::move(vels));
  return true;
}

std::shared_ptr<const AnalysisSnapshot> PostProcessor::snapshot() {
  if (snapshot_) return snapshot_;
  auto made = std::make_shared<AnalysisSnapshot>();
  const VelsConfiguration& vels = project_.vels;
  made->outputs = vels.outputs();
  made->variables = vels.selectedVariables();
  if (hasUncertainty()) made->uncertainty = vels.uncertainty;
  if (hasMeasures()) made->sensitivity = vels.sensitivity->clone();
  if (tableTexts_ == made->variables) made->table = table_;
  snapshot_ = std::move(made);
  return snapshot_;
}

}  // namespace tarvex
