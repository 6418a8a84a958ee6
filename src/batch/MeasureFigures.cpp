#include <algorithm>

#include "app/Analysis.h"
#include "app/ProjectConfiguration.h"
#include "batch/CommandLine.h"
#include "batch/PlotFigures.h"
#include "batch/PlotWords.h"
#include "plots/measurePlots.h"

namespace tarvex {

namespace {

// Sees to it that the variable's measures are there. `variable` becomes its place among the analysed ones.
bool provideMeasures(const PlotOptions& options, ProjectConfiguration& project, FrontEnd& frontEnd,
                     std::int32_t& variable, std::string& message) {
  const std::vector<std::string> names = splitLists(options.variables);
  if (names.size() > 1) {
    message = "The measures are those of one variable: --variables Y.";
    return false;
  }
  if (!project.hasPrep || !project.hasModel) {
    message = "The file holds no results to take measures of.";
    return false;
  }
  const std::vector<std::string>& selected = project.vels.selectedVariables();
  if (project.vels.sensitivity && project.vels.sensitivity->computed && !selected.empty()) {
    const auto place = names.empty() ? selected.begin() : std::find(selected.begin(), selected.end(), names.front());
    variable = static_cast<std::int32_t>(place - selected.begin());
    if (place != selected.end()) return true;
  }
  AnalysisRequest request;
  request.variables = names;
  request.uncertainty = false;
  variable = 0;
  return analyse(project, request, frontEnd);
}

// The slots of the measures that the options name; without a name the indices of first and total order, or else what
// the statistics offer first.
bool chooseSlots(const PlotOptions& options, const std::vector<MeasureChoice>& offered,
                 std::vector<std::int32_t>& slots, std::string& message) {
  const auto find = [&offered](const std::string& word) {
    return std::find_if(offered.begin(), offered.end(), [&word](const MeasureChoice& c) { return c.word == word; });
  };
  if (options.measure.empty()) {
    for (const char* word : {"first", "total"})
      if (const auto choice = find(word); choice != offered.end()) slots.push_back(choice->slot);
    if (slots.empty()) slots.push_back(offered.front().slot);
    return true;
  }
  for (const std::string& word : splitList(options.measure)) {
    const auto choice = find(word);
    if (choice == offered.end()) {
      message = "There is no measure '" + word + "' in this analysis. Its measures are:";
      for (const MeasureChoice& other : offered) message += " " + other.word;
      return false;
    }
    slots.push_back(choice->slot);
  }
  return true;
}

}  // namespace

bool makeMeasureFigure(const PlotOptions& options, ProjectConfiguration& project, FrontEnd& frontEnd, Figure& figure,
                       std::string& message) {
  std::int32_t variable = 0;
  if (!provideMeasures(options, project, frontEnd, variable, message)) return false;
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
  std::vector<std::int32_t> slots;
  if (!chooseSlots(options, measureChoices(stats), slots, message)) return false;
  if (options.kind == "forecast")
    figure = forecastBars(stats, variable, name, slots.front());
  else if (options.kind == "bars")
    figure = measureBars(stats, variable, name, slots);
  else if (stats.typeId() == SensitivityStats::kRegression || stats.typeId() == SensitivityStats::kMorris) {
    message = "Pies show measures that divide a whole: the indices of FAST and Sobol designs, and importance.";
    return false;
  } else
    figure = measurePies(stats, variable, name, slots);
  return true;
}

}  // namespace tarvex
