#include "plots/runPlots.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "correlation/CorrelationPreview.h"
#include "plots/Ticks.h"

namespace tarvex {

namespace {

constexpr double kSquareSize = 640.0;  // of a plane of points

Figure pointsFigure(const std::string& xName, const std::vector<double>& x, const std::string& yName,
                    const std::vector<double>& y) {
  XyChart chart;
  chart.x = axisOver(xName, x, NumberForm::ThreeDecimals);
  chart.y = axisOver(yName, y, NumberForm::ThreeDecimals);
  RunMarks marks;
  marks.droppedColour = roleColours(ColourSet::Distinct).dropped;
  chart.layers.emplace_back(Points{x, y, namedColour("Medium Slate Blue"), std::move(marks)});
  Figure figure;
  figure.width = figure.height = kSquareSize;
  figure.charts.emplace_back(std::move(chart));
  return figure;
}

std::size_t shownPoints(const std::vector<double>& x, const std::vector<double>& y) {
  std::size_t count = 0;
  for (std::size_t i = 0; i < x.size() && i < y.size(); ++i)
    if (std::isfinite(x[i]) && std::isfinite(y[i])) ++count;
  return count;
}

}  // namespace

Figure scatterPlot(const RunColumn& x, const RunColumn& y, const std::optional<Region>& region) {
  Figure figure = pointsFigure(x.name, x.values, y.name, y.values);
  figure.title = "Scattergram";
  const std::size_t shown = shownPoints(x.values, y.values);
  figure.subtitle = y.name + " against " + x.name + ", " + runsText(static_cast<std::int64_t>(x.values.size()));
  if (shown < x.values.size()) figure.subtitle += ", " + std::to_string(x.values.size() - shown) + " without a number";
  if (region) std::get<XyChart>(figure.charts.front()).layers.emplace_back(*region);
  return figure;
}

Figure correlationPreviewPlot(const CorrelationPreview& preview, const std::string& firstName,
                              const std::string& secondName) {
  Figure figure = pointsFigure(firstName, preview.x, secondName, preview.y);
  figure.title = "Correlation of " + firstName + " and " + secondName;
  return figure;
}

}  // namespace tarvex
