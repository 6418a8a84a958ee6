#include "plots/distributionPlot.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

#include "base/NumberText.h"
#include "factors/Constant.h"
#include "factors/Discrete.h"
#include "factors/Relation.h"
#include "factors/TruncatedDistribution.h"
#include "plots/Ticks.h"

namespace tarvex {

namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kInterruption = std::numeric_limits<double>::quiet_NaN();  // interrupts a line
constexpr int kGridPoints = 400;                                            // about one a unit of the picture's width

// What both charts show: the density over x, the cumulative over x, and where the sampled part ends.
struct Curves {
  double lower = 0.0;  // of the x axes
  double upper = 1.0;
  double top = 1.0;  // of the density's axis
  std::vector<double> x, density, cumulative;
  std::vector<double> cuts;  // truncations inside the axis
  bool discrete = false;
};

void addMargins(Curves& curves, double lower, double upper) {
  constexpr double kMargin = 0.03;  // of the range, on both sides
  const Axis axis = axisOver("", {lower, upper}, NumberForm::TwoDecimals);
  const double margin = (axis.upper - axis.lower) * kMargin;
  curves.lower = axis.lower - margin;
  curves.upper = axis.upper + margin;
}

double largestOf(const std::vector<double>& values) {
  double largest = 0.0;
  for (const double value : values)
    if (std::isfinite(value)) largest = std::max(largest, value);
  return largest;
}

// Points one by one in ascending order; the cumulative is a step at each.
Curves pointCurves(const Discrete& factor) {
  Curves curves;
  curves.discrete = true;
  for (std::size_t i = 0; i < factor.count(); ++i) curves.x.push_back(factor.intervalAt(i)->left);
  std::sort(curves.x.begin(), curves.x.end());
  curves.density.reserve(curves.x.size());
  curves.cumulative.reserve(curves.x.size());
  double sum = 0.0;
  for (const double x : curves.x) {
    curves.density.push_back(factor.density(x));
    curves.cumulative.push_back(sum += curves.density.back());
  }
  if (!curves.x.empty()) addMargins(curves, curves.x.front(), curves.x.back());
  return curves;
}

// Interval after interval: the density leaps at their ends, and is 0 between them.
Curves intervalCurves(const IntervalDistribution& factor) {
  Curves curves;
  const auto count = static_cast<int>(factor.count());
  if (count == 0) return curves;
  addMargins(curves, factor.intervalAt(0)->left, factor.intervalAt(factor.count() - 1)->right);
  const auto add = [&](double x, double density) {
    curves.x.push_back(x);
    curves.density.push_back(density);
    curves.cumulative.push_back(factor.cumulative(x));
  };
  const int steps = std::max(1, kGridPoints / count);
  add(curves.lower, 0.0);
  for (int i = 0; i < count; ++i) {
    const Interval& interval = *factor.intervalAt(static_cast<std::size_t>(i));
    const double width = interval.right - interval.left;
    add(interval.left, 0.0);
    for (int k = 0; k <= steps; ++k) {
      // Just inside: the ends may belong to the neighbours.
      const double x = std::clamp(interval.left + width * k / steps, std::nextafter(interval.left, kInfinity),
                                  std::nextafter(interval.right, -kInfinity));
      add(x, factor.density(x));
    }
    add(interval.right, 0.0);
  }
  add(curves.upper, 0.0);
  return curves;
}

// The range that shows a prepared distribution: nearly all of it, but no tail much longer than the bulk is wide; to its
// bounds where they are close.
std::pair<double, double> centralRange(const Distribution& prepared) {
  constexpr double kTail = 0.001;
  constexpr double kBulk = 0.05;
  constexpr double kLongestTail = 2.0;  // in widths of the bulk
  constexpr double kNearBound = 0.05;
  const auto quantile = [&](double u) { return prepared.Distribution::inverse(u); };  // of the whole, truncated or not
  const double from = quantile(kBulk);
  const double to = quantile(1.0 - kBulk);
  const double bulk = to - from;
  double lower = std::max(quantile(kTail), from - kLongestTail * bulk);
  double upper = std::min(quantile(1.0 - kTail), to + kLongestTail * bulk);
  const double first = prepared.table.front().x;
  const double last = prepared.table.back().x;
  if (lower - first < kNearBound * bulk) lower = first;
  if (last - upper < kNearBound * bulk) upper = last;
  return {lower, upper};
}

// Where the density goes to infinity at a bound, its axis ends at what it is a little way from there.
double densityTop(const Distribution& prepared, const Curves& curves) {
  constexpr double kWay = 0.01;  // of the axis
  constexpr double kLeap = 2.0;  // from there to the bound: no finite density that is shown here grows so fast
  const double way = kWay * (curves.upper - curves.lower);
  const double first = prepared.table.front().x;
  const double last = prepared.table.back().x;
  double usual = 0.0;
  for (std::size_t i = 0; i < curves.x.size(); ++i)
    if (curves.x[i] > first + way && curves.x[i] < last - way && std::isfinite(curves.density[i]))
      usual = std::max(usual, curves.density[i]);
  const double atBounds = std::max(prepared.density(first), prepared.density(last));
  return usual > 0.0 && !(atBounds <= kLeap * usual) ? usual : largestOf(curves.density);
}

Curves continuousCurves(const Distribution& prepared) {
  Curves curves;
  const auto [lower, upper] = centralRange(prepared);
  addMargins(curves, lower, upper);
  const double first = prepared.table.front().x;
  const double last = prepared.table.back().x;
  for (int k = 0; k <= kGridPoints; ++k)
    curves.x.push_back(curves.lower + (curves.upper - curves.lower) * k / kGridPoints);
  // Steep parts lie between two points of the grid, and bounds are leaps.
  for (const TablePoint& point : prepared.table) curves.x.push_back(point.x);
  curves.x.push_back(std::nextafter(first, -kInfinity));
  curves.x.push_back(std::nextafter(last, kInfinity));
  std::sort(curves.x.begin(), curves.x.end());
  std::erase_if(curves.x, [&](double x) { return !(x >= curves.lower && x <= curves.upper); });
  for (const double x : curves.x) {
    // A family need not know its bounds: outside of them its formula may give anything.
    const bool inside = x >= first && x <= last;
    curves.density.push_back(inside ? prepared.density(x) : 0.0);
    const double p = inside ? prepared.cumulative(x) : x < first ? 0.0 : 1.0;
    curves.cumulative.push_back(p < 0.0 ? kInterruption : p);
  }
  curves.top = densityTop(prepared, curves);
  if (dynamic_cast<const TruncatedDistribution*>(&prepared) == nullptr) return curves;
  const double margin = (upper - lower) * 0.01;
  for (const double cut : {prepared.inverse(0.0), prepared.inverse(1.0)})
    if (cut > lower + margin && cut < upper - margin) curves.cuts.push_back(cut);
  return curves;
}

XyChart densityChart(const Curves& curves, const std::string& name) {
  const Colour colour = namedColour("Medium Slate Blue");
  XyChart chart;
  chart.x = {name, curves.lower, curves.upper, AxisScale::Linear, NumberForm::TwoDecimals};
  chart.y.title = curves.discrete ? "Probability" : "Density";
  chart.y.upper = std::isfinite(curves.top) && curves.top > 0.0 ? curves.top * kHeadroom : 1.0;
  if (!curves.discrete) {
    chart.layers.emplace_back(Line{curves.x, curves.density, colour, LineStyle::Solid, false});
    return chart;
  }
  double gap = curves.upper - curves.lower;
  for (std::size_t i = 1; i < curves.x.size(); ++i)
    if (curves.x[i] > curves.x[i - 1]) gap = std::min(gap, curves.x[i] - curves.x[i - 1]);
  const double half = std::min(gap * 0.3, (curves.upper - curves.lower) * 0.02);
  Area bars{{}, {}, colour, false};
  Line stems{{}, {}, colour, LineStyle::Solid, false};  // of bars that are too narrow to be seen
  const std::size_t count = curves.x.size();
  bars.edges.reserve(2 * count);
  bars.heights.reserve(2 * count);
  stems.x.reserve(3 * count);
  stems.y.reserve(3 * count);
  for (std::size_t i = 0; i < count; ++i) {
    const double x = curves.x[i];
    bars.edges.insert(bars.edges.end(), {x - half, x + half});
    bars.heights.insert(bars.heights.end(), {curves.density[i], 0.0});
    stems.x.insert(stems.x.end(), {x, x, kInterruption});
    stems.y.insert(stems.y.end(), {0.0, curves.density[i], kInterruption});
  }
  if (!bars.heights.empty()) bars.heights.pop_back();
  chart.layers.emplace_back(std::move(bars));
  chart.layers.emplace_back(std::move(stems));
  return chart;
}

XyChart cumulativeChart(const Curves& curves, const std::string& name) {
  XyChart chart;
  chart.x = {name, curves.lower, curves.upper, AxisScale::Linear, NumberForm::TwoDecimals};
  chart.y.title = "Cumulative";
  chart.y.upper = kHeadroom;
  Line line{curves.x, curves.cumulative, namedColour("Medium Slate Blue"), LineStyle::Solid, curves.discrete};
  if (curves.discrete && !line.x.empty()) {
    line.x.insert(line.x.begin(), curves.lower);
    line.y.insert(line.y.begin(), 0.0);
    line.x.push_back(curves.upper);
    line.y.push_back(line.y.back());
  }
  chart.layers.emplace_back(std::move(line));
  return chart;
}

// The parameters of a family, or why there is no curve.
std::string parameterText(const Factor& factor) {
  if (const auto* constant = dynamic_cast<const Constant*>(&factor)) return "Constant " + numberText(constant->value());
  if (const auto* relation = dynamic_cast<const Relation*>(&factor)) return "Relation: " + relation->expression();
  std::string text = factor.typeName;
  const auto* intervals = dynamic_cast<const IntervalDistribution*>(&factor);
  if (intervals != nullptr && intervals->count() == 1 && !intervals->holdsPoints())
    return text + ": from " + numberText(intervals->intervalAt(0)->left) + " to " +
           numberText(intervals->intervalAt(0)->right);
  if (intervals != nullptr)
    return text + ": " + std::to_string(intervals->count()) + (intervals->holdsPoints() ? " values" : " intervals");
  const std::vector<Parameter> parameters = factor.parameters();
  for (std::size_t i = 0; i < parameters.size(); ++i)
    text += (i == 0 ? ": " : ", ") + std::string(parameters[i].name) + " " + numberText(parameters[i].value);
  return text;
}

Curves curvesOf(const Factor& factor) {
  if (const auto* points = dynamic_cast<const Discrete*>(&factor)) return pointCurves(*points);
  if (const auto* intervals = dynamic_cast<const IntervalDistribution*>(&factor)) return intervalCurves(*intervals);
  if (!factor.parameterProblem().empty()) return {};
  // The factor itself stays as it is: an inverse table belongs to a generation.
  const std::unique_ptr<Factor> copy = factor.clone();
  auto* distribution = dynamic_cast<Distribution*>(copy.get());
  if (distribution == nullptr || !distribution->prepareInverse() || distribution->table.empty()) return {};
  return continuousCurves(*distribution);
}

}  // namespace

Figure distributionPlot(const Factor& factor) {
  constexpr double kHeight = 420.0;
  constexpr double kWidth = 960.0;
  Figure figure;
  figure.title = factor.name;
  figure.subtitle = parameterText(factor);
  figure.columns = 2;
  figure.width = kWidth;
  figure.height = kHeight;
  Curves curves = curvesOf(factor);
  if (curves.x.empty()) {
    if (dynamic_cast<const Distribution*>(&factor) != nullptr) figure.subtitle += "; there is no curve to show";
    return figure;
  }
  if (const auto* intervals = dynamic_cast<const IntervalDistribution*>(&factor); intervals != nullptr)
    curves.top = largestOf(curves.density);

  XyChart density = densityChart(curves, factor.name);
  XyChart cumulative = cumulativeChart(curves, factor.name);
  for (const double cut : curves.cuts)
    for (XyChart* chart : {&density, &cumulative})
      chart->layers.emplace_back(
          Line{{cut, cut}, {0.0, chart->y.upper}, namedColour("Indian Red"), LineStyle::Dash, false});
  if (!curves.cuts.empty())
    figure.legend.push_back(
        {"limit of the sampled part", namedColour("Indian Red"), LegendMark::Line, LineStyle::Dash});
  figure.charts.emplace_back(std::move(density));
  figure.charts.emplace_back(std::move(cumulative));
  return figure;
}

}  // namespace tarvex
