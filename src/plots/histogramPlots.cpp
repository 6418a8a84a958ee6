#include "plots/histogramPlots.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>

#include "base/WorkPace.h"
#include "plots/ColourSet.h"
#include "plots/RunTable.h"
#include "plots/Ticks.h"
#include "plots/suitedBins.h"
#include "postproc/UaCurves.h"

namespace tarvex {

namespace {

constexpr double kCopyingShare = 0.3;          // of the time, roughly
constexpr std::int64_t kOperationsACopy = 10;  // for the pace of progress
constexpr double kThinCoat = 0.75;             // of the way to white, for columns behind each other

// What is drawn of one variable, over edges in the units of the scale.
struct Series {
  std::string name;
  std::int32_t variable = 0;    // its number in the statistics
  std::vector<double> edges;    // of the bins, and where the last one ends
  std::vector<double> heights;  // what the columns or the curve show, one a bin
  double runs = 0.0;            // counted in the bins
  Colour colour;
  LineStyle style = LineStyle::Solid;
  bool constant = false;  // one value: the first edge
  bool folded = false;    // the last edge is the largest value
};

bool isCurve(HistogramForm form) {
  return form == HistogramForm::Cumulative || form == HistogramForm::Complement;
}

std::vector<double> heightsOf(const UaStats& stats, std::int32_t variable, HistogramForm form, HistogramScale scale) {
  const UaCurves curves = makeUaCurves(stats, variable, scale);
  const UaCurves::Curve& curve = form == HistogramForm::Cumulative   ? curves.cumulative
                                 : form == HistogramForm::Complement ? curves.complement
                                                                     : curves.density;
  std::vector<double> heights(curve.begin(), curve.end());
  if (form == HistogramForm::Frequency)
    for (double& height : heights) height /= stats.sampleSize();
  return heights;
}

// Nothing for a variable without a histogram: no number, or none above 0 on the logarithmic scale, or beyond all
// bounds.
std::optional<Series> seriesOf(const UaStats& stats, std::int32_t variable, HistogramForm form, HistogramScale scale) {
  const Histogram* bins = scale == kLogScale ? stats.logHistogram(variable) : stats.linearHistogram(variable);
  if (bins == nullptr || (scale == kLogScale && !(stats.minimum(variable) > 0.0))) return std::nullopt;
  Series series;
  series.name = *stats.name(variable);
  series.variable = variable;
  for (const HistogramEntry& bin : *bins) {
    series.edges.push_back(bin.left);
    series.runs += bin.count;
  }
  const double low = series.edges.front();
  const double high = series.edges.back();
  // A file may hold anything.
  if (!std::isfinite(high - low) || !std::is_sorted(series.edges.begin(), series.edges.end()) || !(series.runs > 0.0))
    return std::nullopt;
  series.constant = low == high;
  series.edges.push_back(high + (high - low) / (kHistogramEntries - 1));
  series.heights = heightsOf(stats, variable, form, scale);
  return series;
}

// A column of some width in the middle of the axis where a variable has one value.
void widenConstant(Series& series, const Axis& axis) {
  constexpr double kHalfWidth = 0.02;  // of the axis
  const double half = (axis.upper - axis.lower) * kHalfWidth;
  const double at = series.edges.front();
  series.edges = {at - half, at + half};
  series.heights = {series.heights.front()};
}

Line outlineOf(const Series& series) {
  Line line{{series.edges.front()}, {0.0}, series.colour, series.style, true};
  for (std::size_t i = 0; i < series.heights.size(); ++i) {
    line.x.push_back(series.edges[i]);
    line.y.push_back(series.heights[i]);
  }
  line.x.push_back(series.edges.back());
  line.y.push_back(0.0);
  return line;
}

// A constant variable's curve leaps at its value.
Line curveOf(const Series& series, const Axis& axis, bool rising) {
  if (series.constant) {
    const double at = series.edges.front();
    const double before = rising ? 0.0 : 1.0;
    return {{axis.lower, at, at, axis.upper},
            {before, before, 1.0 - before, 1.0 - before},
            series.colour,
            series.style,
            false};
  }
  std::vector<double> x(series.edges.begin(), series.edges.end() - 1);
  return {std::move(x), series.heights, series.colour, series.style, false};
}

const char* titleOf(HistogramForm form) {
  switch (form) {
    case HistogramForm::Area:
    case HistogramForm::Outline:
    case HistogramForm::Bars:
      return "Histogram";
    case HistogramForm::Frequency:
      return "Frequencies";
    case HistogramForm::Cumulative:
      return "Cumulative curve";
    case HistogramForm::Complement:
      return "Complementary cumulative curve";
  }
  return "";
}

const char* heightTitleOf(HistogramForm form) {
  switch (form) {
    case HistogramForm::Area:
    case HistogramForm::Outline:
    case HistogramForm::Bars:
      return "Runs";
    case HistogramForm::Frequency:
      return "Share of the runs";
    case HistogramForm::Cumulative:
      return "Share of the runs up to the value";
    case HistogramForm::Complement:
      return "Share of the runs above the value";
  }
  return "";
}

void addLayers(XyChart& chart, std::vector<Series>& all, HistogramForm form) {
  if (isCurve(form)) {
    for (const Series& series : all)
      chart.layers.emplace_back(curveOf(series, chart.x, form == HistogramForm::Cumulative));
    return;
  }
  const bool several = all.size() > 1;
  for (Series& series : all) {
    if (series.constant) widenConstant(series, chart.x);
    if (form == HistogramForm::Outline) continue;
    chart.layers.emplace_back(Area{series.edges, series.heights,
                                   several ? paler(series.colour, kThinCoat) : series.colour,
                                   form == HistogramForm::Frequency || form == HistogramForm::Bars});
  }
  // Outlines in front of all columns: none hides another.
  if (several || form == HistogramForm::Outline)
    for (const Series& series : all) chart.layers.emplace_back(outlineOf(series));
}

XyChart chartOf(std::vector<Series>& all, HistogramForm form, HistogramScale scale) {
  XyChart chart;
  std::vector<double> ends;
  double largest = 0.0;
  for (const Series& series : all) {
    // The last bin has its width in a histogram; curves end at its edge, the largest value.
    const bool isWide = series.folded || (!isCurve(form) && !series.constant);
    ends.push_back(series.edges.front());
    ends.push_back(isWide ? series.edges.back() : series.edges[series.edges.size() - 2]);
    for (const double height : series.heights)
      if (std::isfinite(height)) largest = std::max(largest, height);
  }
  chart.x = axisOver(all.size() == 1 ? all.front().name : "Value", ends, NumberForm::TwoDecimals);
  if (scale == kLogScale) {
    chart.x.scale = AxisScale::Logarithms;
    chart.x.title += ", logarithmic scale";
  }
  chart.y.title = heightTitleOf(form);
  chart.y.upper = kHeadroom * (isCurve(form) || !(largest > 0.0) ? 1.0 : largest);
  addLayers(chart, all, form);
  return chart;
}

std::string listed(const std::vector<std::string>& names) {
  constexpr std::size_t kMost = 4;
  std::string text;
  for (std::size_t i = 0; i < names.size() && i < kMost; ++i) text += (i == 0 ? "" : ", ") + names[i];
  return names.size() > kMost ? text + " and " + std::to_string(names.size() - kMost) + " others" : text;
}

// Runs, and who isn't shown. `infinite`: values that the bins leave out, in all variables together.
std::string subtitleOf(const UaStats& stats, const std::vector<Series>& all, const std::vector<std::string>& without,
                       HistogramScale scale, std::int64_t infinite) {
  std::string text = runsText(stats.sampleSize());
  const std::int64_t missing =
      all.size() == 1 ? std::llround(stats.sampleSize() - all.front().runs) - infinite : std::int64_t{0};
  if (missing > 0) text += ", " + std::to_string(missing) + " without a number";
  if (infinite > 0) text += ", " + std::to_string(infinite) + (infinite == 1 ? " infinite value" : " infinite values");
  if (without.empty()) return text;
  return text + (scale == kLogScale ? "; not above 0 in all of them: " : "; without a histogram: ") + listed(without);
}

// Numbers for factorColour(): factors have their own, variables what these leave.
std::vector<std::size_t> coloursOf(const std::vector<const RunColumn*>& columns) {
  std::vector<std::size_t> colours;
  std::size_t next = 0;
  const auto isTaken = [&](std::size_t number) {
    return std::ranges::any_of(columns, [number](const RunColumn* column) {
      return column->factor >= 0 && static_cast<std::size_t>(column->factor) == number;
    });
  };
  for (const RunColumn* const column : columns) {
    while (column->factor < 0 && isTaken(next)) ++next;
    colours.push_back(column->factor >= 0 ? static_cast<std::size_t>(column->factor) : next++);
  }
  return colours;
}

Figure figureOf(const UaStats& stats, const std::vector<std::int32_t>& variables, HistogramForm form,
                HistogramScale scale, HistogramBins bins, std::int64_t infinite,
                const std::vector<const RunColumn*>& columns) {
  std::vector<Series> all;
  std::vector<std::string> without;
  for (const std::int32_t variable : variables) {
    std::optional<Series> series = seriesOf(stats, variable, form, scale);
    if (series) {
      if (bins == HistogramBins::Suited && !isCurve(form))
        series->folded = !series->constant && takeBinsTogether(series->edges, series->heights, series->runs);
      all.push_back(std::move(*series));
    } else if (const std::string* name = stats.name(variable)) {
      without.push_back(*name);
    }
  }
  Figure figure;
  figure.title = titleOf(form);
  if (variables.size() == 1 && stats.name(variables.front()) != nullptr)
    figure.title += " of " + *stats.name(variables.front());
  figure.subtitle = subtitleOf(stats, all, without, scale, infinite);
  figure.emptyText = "No values to show. " + figure.subtitle;
  if (all.empty()) return figure;

  if (all.size() == 1) all.front().colour = namedColour("Medium Slate Blue");
  const std::vector<std::size_t> colours = coloursOf(columns);
  for (std::size_t i = 0; i < all.size() && all.size() > 1; ++i) {
    all[i].colour = factorColour(colours.empty() ? i : colours[static_cast<std::size_t>(all[i].variable)]);
    // From the eighth on the styles go with other colours.
    all[i].style = static_cast<LineStyle>((i + i / kLineStyles) % kLineStyles);
    figure.legend.push_back({all[i].name, all[i].colour, LegendMark::Line, all[i].style});
  }
  figure.charts.emplace_back(chartOf(all, form, scale));
  if (all.size() == 1 && columns.size() == 1 && scale != kLogScale)
    std::get<XyChart>(figure.charts.front()).x.title = columns.front()->axisTitle();
  return figure;
}

}  // namespace

Figure histogramPlot(const UaStats& stats, const std::vector<std::int32_t>& variables, HistogramForm form,
                     HistogramScale scale, HistogramBins bins) {
  return figureOf(stats, variables, form, scale, bins, 0, {});
}

bool isWithoutBins(const UaStats& stats, std::int32_t variable) {
  return std::isinf(stats.minimum(variable)) || std::isinf(stats.maximum(variable));
}

Figure histogramPlot(const std::vector<const RunColumn*>& columns, HistogramForm form, HistogramScale scale,
                     HistogramBins bins, const Progress& progress) {
  const auto isFactor = [](const RunColumn* column) { return column->isFactor; };
  const bool mixed = std::ranges::any_of(columns, isFactor) && !std::ranges::all_of(columns, isFactor);
  std::vector<std::string> names;
  std::vector<std::int32_t> variables;
  OutputTable table;
  std::vector<double> row(columns.size());
  std::size_t runs = 0;
  for (const RunColumn* column : columns) {
    variables.push_back(static_cast<std::int32_t>(names.size()));
    names.push_back(mixed ? column->label() : column->name);
    runs = std::max(runs, column->values.size());
  }
  std::int64_t infinite = 0;
  bool stored = table.allocate(static_cast<std::int32_t>(columns.size()));
  const Progress copying = progress.part(0.0, kCopyingShare);
  WorkPace pace(copying, static_cast<std::int64_t>(runs), kOperationsACopy * static_cast<std::int64_t>(columns.size()));
  for (std::size_t run = 0; run < runs && stored && pace.step(); ++run) {
    for (std::size_t i = 0; i < columns.size(); ++i) {
      row[i] = run < columns[i]->values.size() ? columns[i]->values[run] : std::nan("");
      if (!std::isinf(row[i])) continue;
      // No bins reach so far: the others would be without theirs.
      row[i] = std::nan("");
      ++infinite;
    }
    stored = table.addRow(row.data()) > 0;
  }
  UaStats stats;
  if (stored && !progress.stopped() && stats.compute(names, table, progress.part(kCopyingShare, 1.0)))
    return figureOf(stats, variables, form, scale, bins, infinite, columns);
  Figure figure;
  figure.title = titleOf(form);
  figure.emptyText = progress.stopped() ? "The drawing was stopped." : "No values: " + table.errorText();
  return figure;
}

}  // namespace tarvex
