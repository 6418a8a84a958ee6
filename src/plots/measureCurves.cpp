#include <algorithm>
#include <cmath>

#include "plots/MeasureColumn.h"
#include "plots/Ticks.h"
#include "plots/measurePlots.h"
#include "postproc/SensitivityStats.h"
#include "postproc/TimedVariables.h"

namespace tarvex {

namespace {

constexpr std::size_t kMostCurves = 10;  // that an eye can follow

struct Curve {
  std::size_t record = 0;
  std::size_t place = 0;  // of its colour: among the uncertain ones
  double size = 0.0;      // the largest over the times
  std::vector<double> values;
};

// Of each record that has the measure at some time.
std::vector<Curve> curvesOf(const SensitivityStats& stats, const TimedVariables& times, std::int32_t slot,
                            const MeasureDisplay& display) {
  std::vector<std::vector<std::optional<double>>> columns;
  for (const auto& [time, variable] : times.at) columns.push_back(measureColumn(stats, variable, slot));
  std::vector<Curve> curves;
  std::size_t place = 0;
  for (std::size_t i = 0; i < stats.records.size(); ++i) {
    if (stats.records[i].kind != FactorKind::Uncertain) continue;
    Curve curve{i, place++, 0.0, {}};
    if (display.records && !std::ranges::binary_search(*display.records, static_cast<std::int32_t>(i))) continue;
    bool any = false;
    for (const auto& column : columns) {
      any = any || column[i].has_value();
      curve.values.push_back(column[i].value_or(std::nan("")));
      if (std::isfinite(curve.values.back())) curve.size = std::max(curve.size, std::abs(curve.values.back()));
    }
    if (any) curves.push_back(std::move(curve));
  }
  return curves;
}

}  // namespace

Figure measureCurves(const SensitivityStats& stats, const TimedVariables& times, std::int32_t slot,
                     const MeasureDisplay& display) {
  Figure figure;
  figure.title = measureTitle(stats, slot) + " over time";
  figure.subtitle = times.output;
  std::vector<Curve> curves = curvesOf(stats, times, slot, display);
  std::ranges::stable_sort(curves, [](const Curve& a, const Curve& b) { return a.size > b.size; });
  const std::size_t most = std::min(display.most > 0 ? display.most : kMostCurves, kMostCurves);
  if (curves.size() > most) {
    figure.subtitle += "; the " + std::to_string(most) + " largest of " + std::to_string(curves.size());
    curves.resize(most);
  }
  if (curves.empty()) {
    figure.subtitle += ": no measures";
    return figure;
  }
  if (display.order == MeasureDisplay::Order::List) std::ranges::sort(curves, {}, &Curve::record);
  std::vector<double> x, all{0.0};
  for (const auto& [time, variable] : times.at) x.push_back(time);
  XyChart chart;
  for (std::size_t i = 0; i < curves.size(); ++i) {
    const Colour colour = recordColour(stats, curves[i].record, curves[i].place, display.colours);
    const auto style = static_cast<LineStyle>(curves[i].place % kLineStyles);
    all.insert(all.end(), curves[i].values.begin(), curves[i].values.end());
    chart.layers.emplace_back(Line{x, std::move(curves[i].values), colour, style, false});
    figure.legend.push_back({stats.records[curves[i].record].name, colour, LegendMark::Line, style});
  }
  chart.x = axisOver("time", x, NumberForm::TwoDecimals);
  chart.y = axisOver(measureTitle(stats, slot), all, NumberForm::FourDecimals);
  figure.charts.emplace_back(std::move(chart));
  return figure;
}

}  // namespace tarvex
