#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "plots/ColourSet.h"
#include "plots/Figure.h"
#include "plots/RunTable.h"

namespace tarvex {

class FactorList;
class FrontEnd;
class ProjectConfiguration;
struct PlotOptions;

// The runs that a plot command is about: the columns that it shows, and which runs it keeps.
struct RunSelection {
  RunTable table;                 // the columns to show, and behind them those that only a bound names
  std::size_t shown = 0;          // how many of them are there to be shown
  std::vector<RunRange> filters;  // with their upper bounds
  std::vector<RunRange> region;   // none or two, without their upper bounds

  std::vector<std::int32_t> runs() const;  // those that lie in all of them, upwards
};
// A message on success is a warning: in how many runs an expression failed.
[[nodiscard]] bool readRunSelection(const PlotOptions& options, const ProjectConfiguration& project,
                                    RunSelection& selection, std::string& message);

// The colours that the options ask for.
ColourSet coloursOf(const PlotOptions& options);

// The picture of the kind that the options ask for. False with a sentence for the user, or, where the front end has
// shown one, an empty message.

// Scattergram, cobweb, histogram.
[[nodiscard]] bool makeRunFigure(const PlotOptions& options, const RunSelection& selection, Figure& figure,
                                 std::string& message);
// Mean and quantiles over the times of outputs.
[[nodiscard]] bool makeTimeFigure(const PlotOptions& options, const ProjectConfiguration& project, FrontEnd& frontEnd,
                                  Figure& figure, std::string& message);
// Bars, pies, plane of Morris, forecast; measures that the project lacks are computed into it.
[[nodiscard]] bool makeMeasureFigure(const PlotOptions& options, ProjectConfiguration& project, FrontEnd& frontEnd,
                                     Figure& figure, std::string& message);
// A factor's distribution, or the correlation of two.
[[nodiscard]] bool makeFactorFigure(const PlotOptions& options, FactorList& factors, Figure& figure,
                                    std::string& message);

}  // namespace tarvex
