#include "app/FrontEnd.h"
#include "app/LongOperation.h"
#include "app/ProjectConfiguration.h"
#include "batch/CommandLine.h"
#include "batch/PlotFigures.h"
#include "batch/PlotWords.h"
#include "plots/timePlots.h"

namespace tarvex {

bool makeTimeFigure(const PlotOptions& options, const ProjectConfiguration& project, FrontEnd& frontEnd, Figure& figure,
                    std::string& message) {
  constexpr std::size_t kMost = 8;  // for which a page has room
  if (!project.hasPrep || !project.hasModel) {
    message = "The file holds no results to show over time.";
    return false;
  }
  const std::vector<std::string> known = project.vels.outputNames(project.model);
  std::vector<std::string> names = splitLists(options.variables);
  if (names.empty()) names = known;
  if (names.size() > kMost) {
    message = "A picture over time has room for eight outputs: --variables a,b,c.";
    return false;
  }
  std::vector<TimeBands> outputs(names.size());
  const LongOperation operation(frontEnd, "Times", project.model.results.runCount());
  for (std::size_t i = 0; i < names.size(); ++i) {
    const auto share = [&](std::size_t place) {
      return static_cast<double>(place) / static_cast<double>(names.size());
    };
    if (!computeTimeBands(project.model, known, names[i], outputs[i], message,
                          operation.progress().part(share(i), share(i + 1)))) {
      if (operation.stopped()) message.clear();
      return false;
    }
  }
  if (options.logX)
    for (const TimeBands& output : outputs)
      if (message = whyNotLogarithmic(output); !message.empty()) return false;
  figure = timeBandsPlot(outputs, std::nullopt, options.logX ? AxisScale::Logarithms : AxisScale::Linear);
  return true;
}

}  // namespace tarvex
