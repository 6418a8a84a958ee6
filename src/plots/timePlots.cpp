#include "plots/timePlots.h"

#include <algorithm>
#include <cmath>
#include <string>

#include "base/NumberText.h"
#include "plots/ColourSet.h"
#include "plots/RunTable.h"
#include "plots/Ticks.h"
#include "postproc/Quantiles.h"

namespace tarvex {

namespace {

// Places in kBandShares.
enum { kOuterLower, kInnerLower, kMedian, kInnerUpper, kOuterUpper };
constexpr double kOuterPale = 0.75;  // of the way to white
constexpr double kInnerPale = 0.5;
constexpr double kNothing = 1e-4;  // of the largest value: no eye tells it from 0
constexpr LineStyle kMeanStyle = LineStyle::Dash;

Colour runsColour() {
  return factorColour(0);
}

Colour meanColour() {
  return roleColours(ColourSet::Distinct).mark;
}

double timePlace(double time, AxisScale scale) {
  return scale == AxisScale::Logarithms ? std::log(time) : time;
}

Band timeBandOf(const TimeBands& output, const std::vector<double>& places, std::size_t lower, std::size_t upper,
                double pale) {
  return {places,
          output.quantiles[lower],
          output.quantiles[upper],
          paler(runsColour(), pale),
          percentText(kBandShares[lower]),
          percentText(kBandShares[upper])};
}

LegendEntry bandEntry(std::size_t lower, std::size_t upper, double pale) {
  return {percentText(kBandShares[lower]) + " to " + percentText(kBandShares[upper]) + " of the runs",
          paler(runsColour(), pale), LegendMark::Box, LineStyle::Solid};
}

XyChart timeChartOf(const TimeBands& output, bool titled, const std::optional<double>& marked, AxisScale scale) {
  XyChart chart;
  if (titled) chart.title = output.output;
  std::vector<double> places;
  for (const double time : output.times) places.push_back(timePlace(time, scale));
  chart.x = axisOver("time", places, NumberForm::TwoDecimals);
  chart.x.scale = scale;
  std::vector<double> all = output.means;
  for (const std::vector<double>& quantile : output.quantiles) all.insert(all.end(), quantile.begin(), quantile.end());
  chart.y = axisOver(output.output, all, NumberForm::FourDecimals);
  if (chart.y.lower > 0.0 && chart.y.lower < kNothing * chart.y.upper) chart.y.lower = 0.0;
  chart.layers.emplace_back(timeBandOf(output, places, kOuterLower, kOuterUpper, kOuterPale));
  chart.layers.emplace_back(timeBandOf(output, places, kInnerLower, kInnerUpper, kInnerPale));
  chart.layers.emplace_back(Line{places, output.quantiles[kMedian], runsColour(), LineStyle::Solid, false});
  chart.layers.emplace_back(Line{places, output.means, meanColour(), kMeanStyle, false});
  const double mark = marked ? timePlace(*marked, scale) : NAN;
  if (mark >= chart.x.lower && mark <= chart.x.upper)
    chart.layers.emplace_back(Line{{mark, mark},
                                   {chart.y.lower, chart.y.upper},
                                   roleColours(ColourSet::Distinct).without,
                                   LineStyle::Solid,
                                   false});
  return chart;
}

// Whether there is anything to draw.
bool hasNumbers(const TimeBands& output) {
  return std::ranges::any_of(output.quantiles[kMedian], [](double value) { return std::isfinite(value); });
}

std::string timeSubtitleOf(const std::vector<TimeBands>& outputs, const std::vector<std::string>& without) {
  if (outputs.empty()) return "";
  std::string text = runsText(outputs.front().runs);
  const TimeBands& first = outputs.front();
  if (first.times.size() < first.storedTimes)
    text += ", " + std::to_string(first.times.size()) + " of " + std::to_string(first.storedTimes) + " times";
  const auto missing = std::ranges::max(outputs, {}, &TimeBands::missing).missing;
  if (missing > 0) text += ", at some times up to " + std::to_string(missing) + " of them without a number";
  for (std::size_t i = 0; i < without.size(); ++i) text += (i == 0 ? "; without a finite value: " : ", ") + without[i];
  return text;
}

}  // namespace

Figure timeBandsPlot(const std::vector<TimeBands>& outputs, std::optional<double> marked, AxisScale timeScale) {
  constexpr int kMostAcross = 2;
  constexpr double kChartWidth = 560.0, kChartHeight = 380.0;  // of several
  Figure figure;
  figure.title = outputs.size() == 1 ? outputs.front().output + " over time" : "Outputs over time";
  std::vector<std::string> without;
  for (const TimeBands& output : outputs)
    if (hasNumbers(output))
      figure.charts.emplace_back(timeChartOf(output, outputs.size() > 1, marked, timeScale));
    else
      without.push_back(output.output);
  figure.subtitle = timeSubtitleOf(outputs, without);
  figure.emptyText = outputs.empty() ? "No output is shown." : "There is no finite value at any time.";
  if (figure.charts.empty()) return figure;
  figure.legend = {{"mean", meanColour(), LegendMark::Line, kMeanStyle},
                   {"median", runsColour(), LegendMark::Line, LineStyle::Solid},
                   bandEntry(kInnerLower, kInnerUpper, kInnerPale),
                   bandEntry(kOuterLower, kOuterUpper, kOuterPale)};
  if (figure.charts.size() == 1) return figure;
  figure.columns = kMostAcross;
  const auto rows = (figure.charts.size() + kMostAcross - 1) / kMostAcross;
  figure.width = kChartWidth * kMostAcross;
  figure.height = kChartHeight * static_cast<double>(rows);
  return figure;
}

std::string whyNotLogarithmic(const TimeBands& output) {
  if (output.times.empty()) return "There are no times.";
  if (output.times.front() > 0.0) return {};
  return "A logarithmic axis needs times above 0; the first one is " + numberText(output.times.front()) + ".";
}

}  // namespace tarvex
