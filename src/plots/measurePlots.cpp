#include "plots/measurePlots.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <utility>

#include "base/NumberText.h"
#include "plots/MeasureColumn.h"
#include "plots/Ticks.h"
#include "postproc/CellFormat.h"
#include "postproc/MorrisStats.h"
#include "postproc/SobolStats.h"

namespace tarvex {

namespace {

constexpr std::size_t kTop = 10;

// "%5.3e"
std::string scientific(double value) {
  if (!std::isfinite(value)) return numberText(value);
  char text[32];
  const auto end = std::to_chars(text, text + sizeof text, value, std::chars_format::scientific, 3).ptr;
  return {text, end};
}

struct NumberedValue {
  std::size_t record;
  std::size_t place;  // in the list of colours
  double value;
};

// Of Sobol the ten that its display has always had, otherwise every uncertain factor at its place among them, so that a
// factor has one colour in all pies.
std::vector<NumberedValue> pieValues(const SensitivityStats& stats, std::int32_t variable, std::int32_t slot) {
  std::vector<NumberedValue> values;
  if (stats.typeId() == SensitivityStats::kSobol) {
    for (const auto& [record, value] : sobolTopTen(stats, variable, slot))
      values.push_back({static_cast<std::size_t>(record), values.size(), value});
    return values;
  }
  const std::vector<std::optional<double>> column = measureColumn(stats, variable, slot);
  for (std::size_t i = 0; i < column.size(); ++i)
    if (column[i]) values.push_back({i, values.size(), *column[i]});
  return values;
}

PieChart pieOf(const SensitivityStats& stats, std::int32_t variable, std::int32_t slot, ColourSet colours) {
  PieChart pie;
  pie.title = measureTitle(stats, slot);
  pie.emptyText = "No values above 0";
  const SliceList list = stats.typeId() == SensitivityStats::kFast ? SliceList::Fast : SliceList::Other;
  for (const NumberedValue& item : pieValues(stats, variable, slot))
    if (std::isfinite(item.value) && item.value > 0.0)
      pie.slices.push_back({stats.records[item.record].name, measureText(item.value), item.value,
                            sliceColour(colours, list, item.place), static_cast<std::int32_t>(item.record)});
  return pie;
}

// The factors that the plane can't show, with the reasons.
std::string leftOutText(const SensitivityStats& stats) {
  constexpr std::size_t kMostNames = 6;
  std::string text;
  std::size_t count = 0;
  for (const IndexRecord& record : stats.records) {
    if (record.kind == FactorKind::Uncertain) continue;
    if (++count <= kMostNames)
      text += (text.empty() ? "; without: " : ", ") + record.name + " (" + std::string(kindCell(record.kind)) + ")";
  }
  return count > kMostNames ? text + " and " + std::to_string(count - kMostNames) + " others" : text;
}

bool isByTerm(const SensitivityStats& stats) {
  return stats.typeId() == SensitivityStats::kSobol &&
         static_cast<const SobolStats&>(stats).slotMode != SobolStats::kFirstAndTotal;
}

}  // namespace

std::vector<std::int32_t> usualSlots(const SensitivityStats& stats) {
  const std::vector<MeasureChoice> offered = measureChoices(stats);
  std::vector<std::int32_t> slots;
  for (const MeasureChoice& choice : offered)
    if (choice.word == "first" || choice.word == "total") slots.push_back(choice.slot);
  return slots.empty() ? std::vector<std::int32_t>{offered.front().slot} : slots;
}

bool dividesAWhole(const SensitivityStats& stats) {
  return stats.typeId() != SensitivityStats::kRegression && stats.typeId() != SensitivityStats::kMorris;
}

Figure measurePies(const SensitivityStats& stats, std::int32_t variable, const std::string& variableName,
                   const std::vector<std::int32_t>& slots, ColourSet colours) {
  constexpr double kWidth = 560.0;
  constexpr double kCharacter = 14.0;  // of a name on either side of the pie
  constexpr std::size_t kUsualName = 10;
  constexpr std::size_t kLongestName = 40;
  constexpr double kHeight = 520.0;
  constexpr int kMostColumns = 2;
  Figure figure;
  figure.title = "Sensitivity Analysis";
  figure.subtitle = variableName;
  for (const std::int32_t slot : slots) figure.charts.emplace_back(pieOf(stats, variable, slot, colours));
  const auto singles = std::count_if(stats.records.begin(), stats.records.end(),
                                     [](const IndexRecord& record) { return record.groupNames.size() == 1; });
  if (stats.typeId() == SensitivityStats::kSobol && singles > static_cast<std::ptrdiff_t>(kTop))
    figure.subtitle += "; the " + std::to_string(kTop) + " smallest of " + std::to_string(singles);
  const auto count = static_cast<int>(slots.size());
  figure.columns = std::clamp(count, 1, kMostColumns);
  std::size_t longest = kUsualName;
  for (const IndexRecord& record : stats.records) longest = std::max(longest, record.name.size());
  longest = std::min(longest, kLongestName);
  figure.width = (kWidth + kCharacter * static_cast<double>(longest - kUsualName)) * figure.columns;
  figure.height = kHeight * std::max(1, (count + figure.columns - 1) / figure.columns);
  return figure;
}

Figure morrisPlane(const SensitivityStats& stats, std::int32_t variable, const std::string& variableName) {
  constexpr std::size_t kMostWithValues = 10;  // points whose labels have room for their values
  const std::vector<std::optional<double>> means = measureColumn(stats, variable, MorrisStats::kMean);
  const std::vector<std::optional<double>> spreads = measureColumn(stats, variable, MorrisStats::kSigma);
  const auto count = static_cast<std::size_t>(
      std::count_if(means.begin(), means.end(), [](const std::optional<double>& mean) { return mean.has_value(); }));
  LabelledPoints points;
  points.colour = namedColour("Medium Slate Blue");
  for (std::size_t i = 0; i < means.size(); ++i) {
    if (!means[i] || !spreads[i]) continue;
    points.x.push_back(*means[i]);
    points.y.push_back(*spreads[i]);
    points.labels.push_back(stats.records[i].name);
    points.records.push_back(static_cast<std::int32_t>(i));
    if (count <= kMostWithValues)
      points.labels.back() += " (" + scientific(*means[i]) + ", " + scientific(*spreads[i]) + ")";
  }
  Figure figure;
  figure.title = "Morris Index";
  figure.subtitle = variableName + leftOutText(stats);
  if (points.x.empty()) {
    figure.subtitle += ": no measures";
    return figure;
  }
  const auto axis = [](const char* title, std::vector<double> values) {
    constexpr double kMarkRoom = 1.05;  // for the marks of the largest
    values.push_back(0.0);              // effects are compared with none
    Axis over = axisOver(title, values, NumberForm::Short);
    if (over.upper * kMarkRoom > over.upper && std::isfinite(over.upper * kMarkRoom)) over.upper *= kMarkRoom;
    return over;
  };
  XyChart chart;
  chart.x = axis("Morris Index", points.x);
  chart.y = axis("Sigma", points.y);
  chart.layers.emplace_back(std::move(points));
  figure.charts.emplace_back(std::move(chart));
  return figure;
}

// Kept: the smallest values come first, and only ten are taken; saved pictures have always shown these.
std::vector<std::pair<std::int32_t, double>> sobolTopTen(const SensitivityStats& stats, std::int32_t variable,
                                                         std::int32_t slot) {
  std::vector<std::pair<std::int32_t, double>> values;
  std::vector<double> column;
  if (!stats.slotValues(variable, slot, column)) return values;
  for (std::size_t i = 0; i < column.size(); ++i)
    if (stats.records[i].groupNames.size() == 1) values.emplace_back(static_cast<std::int32_t>(i), column[i]);
  std::stable_sort(values.begin(), values.end(), [](const auto& a, const auto& b) {
    return a.second < b.second || (std::isnan(b.second) && !std::isnan(a.second));
  });
  if (values.size() > kTop) values.resize(kTop);
  return values;
}

std::vector<std::pair<std::string, Figure>> measureFigures(const SensitivityStats& stats, std::int32_t variable,
                                                           const std::string& variableName, ColourSet colours) {
  std::vector<std::pair<std::string, Figure>> figures;
  const std::vector<MeasureChoice> choices = measureChoices(stats);
  std::vector<std::int32_t> slots;
  for (const MeasureChoice& choice : choices) slots.push_back(choice.slot);
  if (stats.typeId() == SensitivityStats::kMorris)
    figures.emplace_back("plane", morrisPlane(stats, variable, variableName));

  if (dividesAWhole(stats) && choices.size() == 2)
    figures.emplace_back("indices", measureBars(stats, variable, variableName, slots, colours));
  else
    for (const MeasureChoice& choice : choices)
      figures.emplace_back(choice.word, measureBars(stats, variable, variableName, {choice.slot}, colours));

  if (isByTerm(stats)) slots = {SobolStats::kIndex, SobolStats::kTotal};
  if (dividesAWhole(stats)) figures.emplace_back("pies", measurePies(stats, variable, variableName, slots, colours));
  return figures;
}

}  // namespace tarvex
