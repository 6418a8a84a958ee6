#include "plots/runPlots.h"

#include <algorithm>
#include <cmath>
#include <set>
#include <utility>

#include "correlation/CorrelationPreview.h"
#include "plots/Ticks.h"
#include "plots/histogramPlots.h"

namespace tarvex {

namespace {

constexpr double kSquareSize = 640.0;  // of a plane of points
constexpr std::size_t kMostDistinct = 12;
constexpr double kJitter = 0.3;  // of the smallest distance of two values, to either side

// At most `most` + 1 of the finite values, each once.
std::set<double> distinctValues(const std::vector<double>& values, std::size_t most) {
  std::set<double> distinct;
  for (const double value : values) {
    if (std::isfinite(value)) distinct.insert(value);
    if (distinct.size() > most) break;
  }
  return distinct;
}

// Coordinates that are logarithms; nan for what has none.
void takeLogarithms(std::vector<double>& values) {
  for (double& value : values) value = value > 0.0 ? std::log(value) : std::nan("");
}

// How far points of a discrete column are moved at most, and room for it on the axis; 0 for any other.
double jitterOf(const std::vector<double>& values, Axis& axis) {
  const std::set<double> distinct = distinctValues(values, kMostDistinct);
  if (distinct.size() < 2 || distinct.size() > kMostDistinct) return 0.0;
  double least = *distinct.rbegin() - *distinct.begin();
  for (auto at = std::next(distinct.begin()); at != distinct.end(); ++at) least = std::min(least, *at - *std::prev(at));
  const double jitter = kJitter * least;
  if (!(jitter > 0.0) || !std::isfinite(jitter)) return 0.0;
  axis.lower -= jitter;
  axis.upper += jitter;
  return jitter;
}

XyChart pointsChart(const std::string& xTitle, std::vector<double> x, const std::string& yTitle, std::vector<double> y,
                    const ScatterLook& look) {
  XyChart chart;
  if (look.logarithmicX) takeLogarithms(x);
  if (look.logarithmicY) takeLogarithms(y);
  chart.x = axisOver(xTitle, x, NumberForm::ThreeDecimals);
  chart.y = axisOver(yTitle, y, NumberForm::ThreeDecimals);
  if (look.logarithmicX) chart.x.scale = AxisScale::Logarithms;
  if (look.logarithmicY) chart.y.scale = AxisScale::Logarithms;
  RunMarks marks;
  marks.droppedColour = roleColours(ColourSet::Distinct).dropped;
  Points points{std::move(x), std::move(y), namedColour("Medium Slate Blue"), std::move(marks)};
  if (look.jitter) {
    points.jitterX = jitterOf(points.x, chart.x);
    points.jitterY = jitterOf(points.y, chart.y);
  }
  points.shaded = look.shaded.value_or(isCrowded(points.x.size()));
  chart.layers.emplace_back(std::move(points));
  if (look.region) chart.layers.emplace_back(*look.region);
  return chart;
}

std::size_t shownPoints(const RunColumn& x, const RunColumn& y, const ScatterLook& look) {
  const auto isShown = [](double value, bool logarithm) { return std::isfinite(value) && (!logarithm || value > 0.0); };
  std::size_t count = 0;
  for (std::size_t i = 0; i < x.values.size() && i < y.values.size(); ++i)
    if (isShown(x.values[i], look.logarithmicX) && isShown(y.values[i], look.logarithmicY)) ++count;
  return count;
}

// "x1 is 3 in all runs": why a plane shows nothing but a line or a dot.
std::string constantText(const RunColumn& column) {
  const auto [lower, upper] = finiteRange(column);
  return lower == upper ? ", " + column.name + " is the same in all runs" : std::string();
}

}  // namespace

bool isCrowded(std::size_t points) {
  constexpr std::size_t kMostApart = 20000;
  return points > kMostApart;
}

bool isDiscrete(const RunColumn& column) {
  constexpr std::size_t kRunsAValue = 3;
  const std::size_t distinct = distinctValues(column.values, kMostDistinct).size();
  return distinct > 1 && distinct <= kMostDistinct && column.values.size() >= kRunsAValue * distinct;
}

bool canBeLogarithmic(const RunColumn& column) {
  const auto [lower, upper] = finiteRange(column);
  return lower <= upper && lower > 0.0;
}

Figure scatterPlot(const RunColumn& x, const RunColumn& y, const ScatterLook& look) {
  Figure figure;
  figure.width = figure.height = kSquareSize;
  figure.title = "Scattergram";
  const std::size_t shown = shownPoints(x, y, look);
  figure.subtitle = y.name + " against " + x.name + ", " + runsText(static_cast<std::int64_t>(x.values.size()));
  if (shown < x.values.size())
    figure.subtitle +=
        ", " + std::to_string(x.values.size() - shown) +
        (look.logarithmicX || look.logarithmicY ? " without a number or not above 0" : " without a number");
  figure.subtitle += constantText(x) + constantText(y);
  figure.emptyText =
      x.values.empty() ? "There are no runs." : "No run has a number in both " + x.name + " and " + y.name + '.';
  if (shown == 0) return figure;
  figure.charts.emplace_back(pointsChart(x.axisTitle(), x.values, y.axisTitle(), y.values, look));
  if (std::get<Points>(std::get<XyChart>(figure.charts.front()).layers.front()).shaded)
    figure.subtitle += ", shaded by density";
  return figure;
}

std::size_t mostMatrixColumns(std::int32_t runs) {
  constexpr double kMostPoints = 4e7;   // 640 MB
  constexpr double kMostColumns = 8.0;  // of which each pair still has room
  const double columns = std::floor(std::sqrt(kMostPoints / std::max(runs, 1)));
  return static_cast<std::size_t>(std::clamp(columns, 2.0, kMostColumns));
}

Figure scatterMatrix(const std::vector<const RunColumn*>& columns, const Progress& progress) {
  constexpr double kCell = 180.0;
  constexpr double kMostSize = 1600.0;
  Figure figure;
  figure.title = "Scattergrams";
  figure.columns = static_cast<int>(columns.size());
  figure.width = figure.height =
      std::min(kMostSize, std::max(kSquareSize, kCell * static_cast<double>(columns.size())));
  figure.emptyText = "There are no runs.";
  if (columns.front()->values.empty()) return figure;
  figure.subtitle = runsText(static_cast<std::int64_t>(columns.front()->values.size()));
  std::vector<bool> discrete;
  for (const RunColumn* const column : columns) {
    discrete.push_back(isDiscrete(*column));
    const auto [lower, upper] = finiteRange(*column);
    if (!(lower <= upper)) figure.subtitle += "; without a number: " + column->name;
    figure.subtitle += constantText(*column);
  }
  const std::size_t planes = columns.size() * columns.size();
  for (const RunColumn* const up : columns) {
    for (const RunColumn* const across : columns) {
      const std::size_t done = figure.charts.size();
      if (!progress.report(done, planes)) {
        figure.charts.clear();
        figure.emptyText = "The drawing was stopped.";
        return figure;
      }
      // Names along the left and the lower edge alone, where all of a row and of a column have the same.
      const std::string xTitle = up == columns.back() ? across->axisTitle() : std::string();
      const std::string yTitle = across == columns.front() ? up->axisTitle() : std::string();
      if (up != across) {
        ScatterLook look;
        look.jitter = discrete[done / columns.size()] || discrete[done % columns.size()];
        look.region = Region{std::nan(""), std::nan(""), std::nan(""), std::nan(""), namedColour("Indian Red")};
        figure.charts.emplace_back(pointsChart(xTitle, across->values, yTitle, up->values, look));
        continue;
      }
      const Progress counting = progress.part(static_cast<double>(done) / static_cast<double>(planes),
                                              static_cast<double>(done + 1) / static_cast<double>(planes));
      Figure own = histogramPlot({up}, HistogramForm::Area, kLinearScale, HistogramBins::Suited, counting);
      XyChart spread = own.charts.empty() ? XyChart{} : std::get<XyChart>(std::move(own.charts.front()));
      spread.x.title = xTitle;
      spread.y.title = up == columns.front() ? up->axisTitle() + ": runs" : std::string();
      figure.charts.emplace_back(std::move(spread));
    }
  }
  return figure;
}

Figure correlationPreviewPlot(const CorrelationPreview& preview, const std::string& firstName,
                              const std::string& secondName) {
  Figure figure;
  figure.width = figure.height = kSquareSize;
  figure.charts.emplace_back(pointsChart(firstName, preview.x, secondName, preview.y, {}));
  figure.title = "Correlation of " + firstName + " and " + secondName;
  return figure;
}

}  // namespace tarvex
