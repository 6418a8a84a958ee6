#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

#include "plots/Ticks.h"
#include "plots/runPlots.h"

namespace tarvex {

namespace {

constexpr std::array kClassLimits = {0.2, 0.4, 0.6, 0.8};  // of the first axis, below which a run has its colour

struct Limits {
  double lower = 0.0;
  double upper = 0.0;
};

// From the smallest to the largest finite value; 0 and 0 without one.
Limits limitsOf(const RunColumn& column) {
  const auto [lower, upper] = finiteRange(column);
  return lower <= upper ? Limits{lower, upper} : Limits{};
}

// 0 at the lower limit, 1 at the upper one; not finite for a value that isn't, nor where the limits are equal.
float relativePosition(double value, const Limits& limits) {
  const double span = limits.upper - limits.lower;
  if (std::isfinite(span)) return static_cast<float>((value - limits.lower) / span);
  return static_cast<float>((value / 2.0 - limits.lower / 2.0) / (limits.upper / 2.0 - limits.lower / 2.0));
}

// The first limit that t lies below; the last class without one, as for a first column of one value.
std::uint8_t classOf(float t) {
  std::uint8_t number = 0;
  while (number < kClassLimits.size() && !(t < kClassLimits[number])) ++number;
  return number;
}

// Has no finite value.
bool isEmptyColumn(const RunColumn& column, const Limits& limits) {
  return limits.lower == 0.0 && limits.upper == 0.0 &&
         std::ranges::none_of(column.values, [](double value) { return std::isfinite(value); });
}

std::vector<LegendEntry> legendOf(const RunColumn& column, const Limits& limits, bool dropped,
                                  const RoleColours& colours) {
  const std::string& name = column.name;
  std::vector<LegendEntry> legend;
  const auto add = [&](const std::string& text, const Colour& colour) {
    legend.push_back({text, colour, LegendMark::Line, LineStyle::Solid});
  };
  const auto edge = [&](std::size_t i) {
    const double span = limits.upper - limits.lower;
    return limitNumber(limits.lower + kClassLimits[i] * span, span);
  };
  if (limits.lower == limits.upper) {
    add(name + (isEmptyColumn(column, limits) ? " has no number in any run" : " is the same in all runs"),
        colours.classes.back());
  } else {
    add(name + " below " + edge(0), colours.classes[0]);
    for (std::size_t i = 1; i < kClassLimits.size(); ++i) add(edge(i - 1) + " to " + edge(i), colours.classes[i]);
    add("from " + edge(kClassLimits.size() - 1), colours.classes.back());
  }
  if (dropped) add("filtered out", colours.dropped);
  return legend;
}

// "; without a number: Y, Z": the columns whose axes no run meets.
std::string emptyColumns(const RunTable& table, const std::vector<Limits>& limits) {
  std::string text;
  for (std::size_t i = 0; i < limits.size(); ++i)
    if (isEmptyColumn(table.columns[i], limits[i]))
      text += (text.empty() ? "; without a number: " : ", ") + table.columns[i].name;
  return text;
}

CobwebAxis axisOf(const RunColumn& column, std::size_t number, const Limits& limits,
                  const std::vector<RunRange>& filters) {
  CobwebAxis axis{column.name, limits.lower, limits.upper, std::nullopt};
  if (isEmptyColumn(column, limits)) axis.lower = axis.upper = std::numeric_limits<double>::quiet_NaN();
  for (const RunRange& filter : filters) {
    if (filter.column != number) continue;
    if (!axis.filter) axis.filter.emplace(filter.lower, filter.upper);
    axis.filter->first = std::max(axis.filter->first, filter.lower);
    axis.filter->second = std::min(axis.filter->second, filter.upper);
  }
  return axis;
}

// Of the column's runs.
std::vector<float> positionsOf(const RunColumn& column, const Limits& limits) {
  constexpr float kMiddle = 0.5F;  // of an axis of one value
  std::vector<float> positions;
  positions.reserve(column.values.size());
  for (const double value : column.values) {
    const bool constant = limits.lower == limits.upper && value == limits.lower;
    positions.push_back(constant ? kMiddle : relativePosition(value, limits));
  }
  return positions;
}

}  // namespace

Figure cobwebPlot(const RunTable& table, const std::vector<RunRange>& filters, bool showDropped, ColourSet set,
                  const Progress& progress) {
  constexpr double kPerAxis = 110.0;
  constexpr double kLeastWidth = 800.0;
  constexpr double kMostWidth = 16000.0;
  Figure figure;
  figure.title = "Cobwebs plot";
  figure.subtitle = runsText(table.runs);
  figure.emptyText = table.columns.empty() ? "No factor or variable is shown."
                     : table.runs == 0     ? "There are no runs."
                                           : "The drawing was stopped.";
  if (table.columns.empty() || table.runs == 0) return figure;

  constexpr double kLimitsShare = 0.3;  // of the time, roughly
  const Progress measuring = progress.part(0.0, kLimitsShare);
  const Progress placing = progress.part(kLimitsShare, 1.0);
  std::vector<Limits> limits;
  for (const RunColumn& column : table.columns) {
    if (!measuring.report(limits.size(), table.columns.size())) return figure;
    limits.push_back(limitsOf(column));
  }
  CobwebChart chart;
  const RoleColours& colours = roleColours(set);
  chart.markColour = colours.mark;
  chart.palette.assign(colours.classes.begin(), colours.classes.end());
  for (std::size_t i = 0; i < limits.size(); ++i) {
    if (!placing.report(i, limits.size())) return figure;
    chart.axes.push_back(axisOf(table.columns[i], i, limits[i], filters));
    chart.axes.back().positions = positionsOf(table.columns[i], limits[i]);
  }
  if (!placing.report(1.0)) return figure;
  chart.colours.reserve(table.columns.front().values.size());
  for (const double value : table.columns.front().values)
    chart.colours.push_back(classOf(relativePosition(value, limits.front())));
  if (!placing.report(1.0)) return figure;
  chart.runs = {{}, {}, showDropped, colours.dropped};
  const std::int32_t keptRuns = markDropped(table, filters, chart.runs.dropped);

  if (!filters.empty()) figure.subtitle = std::to_string(keptRuns) + " of " + figure.subtitle + " within the filters";
  figure.subtitle += emptyColumns(table, limits);
  figure.legend = legendOf(table.columns.front(), limits.front(), showDropped && keptRuns < table.runs, colours);
  figure.width = std::clamp(kPerAxis * static_cast<double>(limits.size()), kLeastWidth, kMostWidth);
  figure.charts.emplace_back(std::move(chart));
  return figure;
}

}  // namespace tarvex
