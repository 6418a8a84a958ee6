#include <algorithm>

#include "app/Analysis.h"
#include "app/ProjectConfiguration.h"
#include "batch/CommandLine.h"
#include "batch/PlotFigures.h"
#include "batch/PlotWords.h"
#include "plots/measurePlots.h"
#include "postproc/TimedVariables.h"

namespace tarvex {

namespace {

// The place of the variable that the options name, with its measures.
bool findVariable(const PlotOptions& options, ProjectConfiguration& project, FrontEnd& frontEnd, std::int32_t& variable,
                  std::string& message) {
  const std::vector<std::string> names = splitLists(options.variables);
  if (names.size() > 1) {
    message = "The measures are those of one variable: --variables Y.";
    return false;
  }
  if (!project.hasPrep || !project.hasModel) {
    message = "The file holds no results to take measures of.";
    return false;
  }
  return provideMeasures(project, names.empty() ? "" : names.front(), frontEnd, variable);
}

// The slots of the measures that the options name.
bool chooseSlots(const PlotOptions& options, const SensitivityStats& stats, std::vector<std::int32_t>& slots,
                 std::string& message) {
  if (options.measure.empty()) {
    slots = usualSlots(stats);
    return true;
  }
  const std::vector<MeasureChoice> offered = measureChoices(stats);
  for (const std::string& word : splitList(options.measure)) {
    const auto choice = std::ranges::find(offered, word, &MeasureChoice::word);
    if (choice == offered.end()) {
      message = "There is no measure '" + word + "' in this analysis. Its measures are:";
      for (const MeasureChoice& other : offered) message += " " + other.word;
      return false;
    }
    slots.push_back(choice->slot);
  }
  return true;
}

// The measures of one output over the times at which it is analysed, or which the options name.
bool makeCurves(const PlotOptions& options, ProjectConfiguration& project, FrontEnd& frontEnd, Figure& figure,
                std::string& message) {
  message = "The file holds no results to take measures of.";
  if (!project.hasPrep || !project.hasModel) return false;
  message.clear();
  AnalysisRequest request;
  request.variables = splitLists(options.variables);
  request.uncertainty = false;
  if (request.variables.empty()) request.variables = project.vels.selectedVariables();
  const bool isThere = project.vels.sensitivity && project.vels.sensitivity->computed &&
                       request.variables == project.vels.selectedVariables();
  if (!isThere && !analyse(project, request, frontEnd)) return false;
  const std::vector<TimedVariables> timed =
      timedVariables(project.vels.selectedVariables(), project.vels.outputNames(project.model));
  if (timed.size() != 1) {
    message = "Curves over time are of one output at two times or more: --variables 'Y[0],Y[1],Y[2]'.";
    return false;
  }
  std::vector<std::int32_t> slots;
  if (!chooseSlots(options, *project.vels.sensitivity, slots, message)) return false;
  figure = measureCurves(*project.vels.sensitivity, timed.front(), slots.front(), {.colours = coloursOf(options)});
  return true;
}

}  // namespace

bool makeMeasureFigure(const PlotOptions& options, ProjectConfiguration& project, FrontEnd& frontEnd, Figure& figure,
                       std::string& message) {
  if (options.kind == "curves") return makeCurves(options, project, frontEnd, figure, message);
  std::int32_t variable = 0;
  if (!findVariable(options, project, frontEnd, variable, message)) return false;
  const SensitivityStats& stats = *project.vels.sensitivity;
  const std::string& name = project.vels.selectedVariables()[static_cast<std::size_t>(variable)];
  if (options.kind == "morris") {
    if (stats.typeId() != SensitivityStats::kMorris) {
      message = "The plane of Morris needs the measures of a Morris design.";
      return false;
    }
    figure = morrisPlane(stats, variable, name);
    return true;
  }
  if (options.kind == "interactions") {
    if (!interactionSlots(stats)) {
      message = "Interactions are told by first and total order: FAST beyond the classic test, and Sobol designs.";
      return false;
    }
    figure = interactionBars(stats, variable, name, {.colours = coloursOf(options)});
    return true;
  }
  std::vector<std::int32_t> slots;
  if (!chooseSlots(options, stats, slots, message)) return false;
  if (options.kind == "forecast")
    figure = forecastBars(stats, variable, name, slots.front(), coloursOf(options));
  else if (options.kind == "bars")
    figure = measureBars(stats, variable, name, slots, {.colours = coloursOf(options)});
  else if (!dividesAWhole(stats)) {
    message = "Pies show measures that divide a whole: the indices of FAST and Sobol designs, and importance.";
    return false;
  } else
    figure = measurePies(stats, variable, name, slots, {.colours = coloursOf(options)});
  return true;
}

}  // namespace tarvex
