#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <span>
#include <string_view>

#include "plots/MeasureColumn.h"
#include "plots/Ticks.h"
#include "plots/measurePlots.h"
#include "postproc/CellFormat.h"
#include "postproc/FastStats.h"
#include "postproc/RegressionStats.h"
#include "postproc/SobolStats.h"

namespace tarvex {

namespace {

constexpr std::size_t kMostRows = 1000;  // beyond them a picture is no longer one

// The records that a figure shows; of very many those of the largest sizes.
std::vector<std::size_t> shownRecords(const SensitivityStats& stats, std::int32_t variable,
                                      const std::vector<std::int32_t>& slots, const MeasureDisplay& display) {
  std::vector<std::size_t> shown = displayedRecords(stats, variable, slots, display);
  if (shown.size() <= kMostRows) return shown;
  MeasureDisplay largest = display;
  largest.most = kMostRows;
  return displayedRecords(stats, variable, slots, largest);
}

// "%.3f"; without three hundred digits of a number beyond all measure.
std::string threeDecimals(double value) {
  constexpr double kHuge = 1e12;
  if (!(std::abs(value) < kHuge)) return measureText(value);
  char text[32];
  const auto end = std::to_chars(text, text + sizeof text, value, std::chars_format::fixed, 3).ptr;
  return {text, end};
}

Bar reasonBar(const IndexRecord& record, const Colour& colour) {
  const std::string_view kind = kindCell(record.kind);
  return {0.0, std::string(kind.empty() ? kNotComputed : kind), colour, true};
}

BarChart chartOf(const SensitivityStats& stats, const std::vector<MeasureColumn>& columns,
                 const std::vector<std::size_t>& shown, std::span<const Colour> series, const RoleColours& colours) {
  BarChart chart;
  std::vector<double> values{0.0};
  for (const std::size_t i : shown) {
    chart.categories.push_back(stats.records[i].name);
    chart.records.push_back(static_cast<std::int32_t>(i));
  }
  for (std::size_t s = 0; s < columns.size(); ++s) {
    std::vector<Bar>& bars = chart.series.emplace_back();
    for (const std::size_t i : shown) {
      const std::optional<double>& value = columns[s][i];
      if (value) {
        values.push_back(*value);
        bars.push_back({*value, measureText(*value), series[s % series.size()], false});
      } else {
        bars.push_back(reasonBar(stats.records[i], colours.without));
        if (s > 0) bars.back().text.clear();  // once is enough
      }
    }
  }
  chart.values = axisOver("", values, NumberForm::FourDecimals);
  return chart;
}

// One colour for what is significant and another for what isn't, where there is a test.
void colourBySignificance(BarChart& chart, const RegressionStats& stats, std::int32_t variable, std::int32_t measure,
                          const std::vector<std::size_t>& shown, const RoleColours& colours) {
  const MeasureColumn flags = measureColumn(stats, variable, RegressionStats::kFlagSlots + measure);
  for (std::size_t k = 0; k < shown.size(); ++k)
    if (const std::optional<double>& flag = flags[shown[k]])
      chart.series.front()[k].colour = *flag == 1.0 ? colours.significant : colours.insignificant;
}

// Of how many a figure shows the largest; empty when it shows all.
std::string largestText(const SensitivityStats& stats, std::size_t shown, const MeasureDisplay& display) {
  const std::size_t limit = display.most > 0 ? std::min(display.most, kMostRows) : kMostRows;
  if (shown < limit || stats.records.size() <= limit) return "";
  return "; the " + std::to_string(limit) + " largest of " + std::to_string(stats.records.size());
}

// As high and as wide as the rows and their names need.
void sizeToRows(Figure& figure, std::size_t seriesCount) {
  constexpr double kFrame = 150.0;
  constexpr double kLeastHeight = 260.0;
  constexpr double kRow = 8.0;
  constexpr double kSeries = 14.0;
  constexpr double kWidth = 800.0;
  constexpr double kSmallWidth = 480.0;  // of one among several
  constexpr double kCharacter = 7.0;
  constexpr std::size_t kUsualName = 20;
  constexpr std::size_t kLongestName = 140;
  const auto* chart = std::get_if<BarChart>(&figure.charts.front());
  std::size_t longest = kUsualName;
  for (const std::string& name : chart->categories) longest = std::max(longest, name.size());
  const double names = kCharacter * static_cast<double>(std::min(longest, kLongestName) - kUsualName);
  const double rows = static_cast<double>(chart->categories.size());
  const double height = std::max(kLeastHeight, kFrame + rows * (kRow + kSeries * static_cast<double>(seriesCount)));
  const auto count = static_cast<int>(figure.charts.size());
  figure.width = count == 1 ? kWidth + names : figure.columns * (kSmallWidth + names);
  figure.height = height * ((count + figure.columns - 1) / figure.columns);
}

std::string determinationText(const RegressionStats& stats, std::int32_t variable) {
  const auto text = [&](double value, RegressionStats::Measure of) {
    return stats.notComputedReason(variable, of).empty() ? measureText(value) : std::string(kNotComputed);
  };
  double raw = 0.0, ranks = 0.0, rawAdjusted = 0.0, ranksAdjusted = 0.0;
  if (!stats.determination(variable, raw, ranks) || !stats.determinationAdjusted(variable, rawAdjusted, ranksAdjusted))
    return "";
  return "R squared on raw data " + text(raw, RegressionStats::kPear) + ", adjusted " +
         text(rawAdjusted, RegressionStats::kPear) + "; on ranks " + text(ranks, RegressionStats::kSpea) +
         ", adjusted " + text(ranksAdjusted, RegressionStats::kSpea);
}

std::string confidenceText(const RegressionStats& stats) {
  char text[32];
  const auto end = std::to_chars(text, text + sizeof text, stats.alpha).ptr;  // the shortest that tells it
  return {text, end};
}

// A chart a measure, as each bar's colour is taken by its test.
void addRegression(Figure& figure, const RegressionStats& stats, std::int32_t variable,
                   const std::vector<std::int32_t>& slots, const std::vector<MeasureColumn>& columns,
                   const std::vector<std::size_t>& shown, const RoleColours& colours) {
  constexpr int kMostColumns = 4;
  figure.columns = std::clamp(static_cast<int>(slots.size()), 1, kMostColumns);
  for (std::size_t s = 0; s < slots.size(); ++s) {
    BarChart chart = chartOf(stats, {columns[s]}, shown, colours.measures, colours);
    colourBySignificance(chart, stats, variable, slots[s], shown, colours);
    const std::string name = measureTitle(stats, slots[s]);
    if (slots.size() > 1) chart.title = name;
    chart.values.title = name;
    figure.charts.emplace_back(std::move(chart));
  }
  figure.title = slots.size() == 1 ? "Value of the " + measureTitle(stats, slots.front()) + "s vs. selected factors"
                                   : "Sensitivity Analysis";
  const std::string determination = determinationText(stats, variable);
  if (!determination.empty()) figure.subtitle += "; " + determination;
  if (std::ranges::any_of(slots, [&](std::int32_t slot) { return stats.hasTest(slot); }))
    figure.legend = {{"significantly above 0 at " + confidenceText(stats), colours.significant},
                     {"not significantly above 0", colours.insignificant}};
  std::string reason;  // one is that of all
  for (const std::int32_t slot : slots)
    if (reason.empty()) reason = stats.notComputedReason(variable, slot);
  if (!reason.empty()) figure.subtitle += "; " + std::string(kNotComputed) + ": " + reason;
}

// The second bar goes on where the first ends, up to the total, and says what both are.
void stackBars(Bar& first, Bar& total) {
  const double share = total.value - first.value;
  if (!std::isfinite(first.value) || !std::isfinite(share)) {
    total.text = first.text + ", in all " + total.text;
    total.value = first.value;
  } else {
    total.text = first.text + (share < 0.0 ? " - " : " + ") + measureText(std::abs(share));
    total.from = std::max(first.value, 0.0);
    total.value = std::max(total.value, total.from);
  }
  first.text.clear();
}

// Of single factors; nothing where one isn't finite.
std::optional<double> sumOf(const SensitivityStats& stats, const MeasureColumn& column) {
  double sum = 0.0;
  for (std::size_t i = 0; i < column.size(); ++i)
    if (column[i] && stats.records[i].groupNames.size() < 2) sum += *column[i];
  return std::isfinite(sum) ? std::optional(sum) : std::nullopt;
}

// One chart with a series a measure.
void addSeries(Figure& figure, const SensitivityStats& stats, const std::vector<std::int32_t>& slots,
               const std::vector<MeasureColumn>& columns, const std::vector<std::size_t>& shown,
               const RoleColours& colours) {
  BarChart chart = chartOf(stats, columns, shown, colours.measures, colours);
  for (std::size_t s = 0; s < slots.size(); ++s) {
    const std::string title = measureTitle(stats, slots[s]);
    figure.title += (s == 0 ? "" : ", ") + title;
    if (slots.size() > 1) figure.legend.push_back({title, colours.measures[s % colours.measures.size()]});
  }
  figure.charts.emplace_back(std::move(chart));
}

}  // namespace

Figure measureBars(const SensitivityStats& stats, std::int32_t variable, const std::string& variableName,
                   const std::vector<std::int32_t>& slots, const MeasureDisplay& display) {
  const RoleColours& colours = roleColours(display.colours);
  Figure figure;
  figure.subtitle = variableName;
  const std::vector<std::size_t> shown = shownRecords(stats, variable, slots, display);
  std::vector<MeasureColumn> columns;
  for (const std::int32_t slot : slots)
    columns.push_back(displayedColumn(stats, variable, slot, shown, display.scaled));
  if (shown.empty() || slots.empty()) {
    figure.subtitle += ": no measures";
    return figure;
  }
  if (const auto* regression = dynamic_cast<const RegressionStats*>(&stats))
    addRegression(figure, *regression, variable, slots, columns, shown, colours);
  else
    addSeries(figure, stats, slots, columns, shown, colours);
  if (display.scaled) figure.subtitle += "; scaled to a sum of 1";
  figure.subtitle += largestText(stats, shown.size(), display);
  sizeToRows(figure, std::get<BarChart>(figure.charts.front()).series.size());
  return figure;
}

std::optional<std::pair<std::int32_t, std::int32_t>> interactionSlots(const SensitivityStats& stats) {
  if (stats.typeId() == SensitivityStats::kSobol) return std::pair(SobolStats::kIndex, SobolStats::kTotal);
  const auto* fast = dynamic_cast<const FastStats*>(&stats);
  if (fast == nullptr || !fast->hasTotals()) return std::nullopt;
  return std::pair(FastStats::kFirstOrder, FastStats::kTotalOrder);
}

Figure interactionBars(const SensitivityStats& stats, std::int32_t variable, const std::string& variableName,
                       const MeasureDisplay& display) {
  const auto [firstSlot, totalSlot] = interactionSlots(stats).value_or(std::pair{0, 0});
  const RoleColours& colours = roleColours(display.colours);
  Figure figure;
  figure.title = "First Order and interactions";
  figure.subtitle = variableName;
  std::vector<std::size_t> shown = shownRecords(stats, variable, {totalSlot}, display);
  const MeasureColumn first = measureColumn(stats, variable, firstSlot);
  const MeasureColumn total = measureColumn(stats, variable, totalSlot);
  if (shown.empty()) {
    figure.subtitle += ": no measures";
    return figure;
  }
  BarChart chart = chartOf(stats, {first, total}, shown, colours.measures, colours);
  chart.stacked = true;
  for (std::size_t k = 0; k < shown.size(); ++k)
    if (first[shown[k]] && total[shown[k]]) stackBars(chart.series[0][k], chart.series[1][k]);
  figure.charts.emplace_back(std::move(chart));
  figure.legend = {{"First Order", colours.measures[0]}, {"Total Order - First Order", colours.measures[1]}};
  if (const std::optional<double> sum = sumOf(stats, first))
    figure.subtitle += "; first orders add up to " + measureText(*sum);
  figure.subtitle += largestText(stats, shown.size(), display);
  sizeToRows(figure, 1);
  return figure;
}

Figure forecastBars(const SensitivityStats& stats, std::int32_t variable, const std::string& variableName,
                    std::int32_t slot, ColourSet set) {
  const RoleColours& colours = roleColours(set);
  Figure figure;
  figure.title = "Forecast";
  figure.subtitle = variableName + ", " + measureTitle(stats, slot);
  const MeasureColumn column = measureColumn(stats, variable, slot);
  std::vector<std::size_t> shown = shownRecords(stats, variable, {slot}, {});
  std::erase_if(shown, [&](std::size_t i) { return stats.records[i].kind != FactorKind::Uncertain; });
  if (shown.empty()) {
    figure.subtitle += ": no measures";
    return figure;
  }
  BarChart chart = chartOf(stats, {column}, shown, std::span(&colours.forecast, 1), colours);
  chart.values.form = NumberForm::ThreeDecimals;
  for (Bar& bar : chart.series.front()) bar.text = threeDecimals(bar.value);
  figure.charts.emplace_back(std::move(chart));
  sizeToRows(figure, 1);
  return figure;
}

}  // namespace tarvex
