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

bool isKeptTopTen(const SensitivityStats& stats, const MeasureDisplay& display) {
  return stats.typeId() == SensitivityStats::kSobol && display.order == MeasureDisplay::Order::List && !display.records;
}

struct NumberedValue {
  std::size_t record;
  std::size_t place;  // in the list of colours
  double value;
};

// Of Sobol, in the order of the list, the ten that its display has always had; otherwise what is displayed.
std::vector<NumberedValue> pieValues(const SensitivityStats& stats, std::int32_t variable, std::int32_t slot,
                                     const MeasureDisplay& display) {
  std::vector<NumberedValue> values;
  if (isKeptTopTen(stats, display)) {
    for (const auto& [record, value] : sobolTopTen(stats, variable, slot))
      values.push_back({static_cast<std::size_t>(record), values.size(), value});
    return values;
  }
  MeasureDisplay all = display;
  all.most = 0;
  const std::vector<std::size_t> shown = displayedRecords(stats, variable, {slot}, all);
  const std::vector<std::optional<double>> column = displayedColumn(stats, variable, slot, shown, display.scaled);
  for (const std::size_t i : shown)
    if (column[i] && std::isfinite(*column[i]) && *column[i] > 0.0)
      values.push_back({i, uncertainPlace(stats, i), *column[i]});
  return values;
}

PieChart pieOf(const SensitivityStats& stats, std::int32_t variable, std::int32_t slot, const MeasureDisplay& display) {
  PieChart pie;
  pie.title = measureTitle(stats, slot);
  pie.emptyText = "No values above 0";
  const std::size_t most = display.most > 0 && !isKeptTopTen(stats, display) ? display.most : stats.records.size();
  double rest = 0.0;
  std::size_t left = 0;
  for (const NumberedValue& item : pieValues(stats, variable, slot, display)) {
    if (!std::isfinite(item.value) || item.value <= 0.0) continue;
    if (pie.slices.size() == most) {
      rest += item.value;
      ++left;
    } else {
      pie.slices.push_back({stats.records[item.record].name, measureText(item.value), item.value,
                            recordColour(stats, item.record, item.place, display.colours),
                            static_cast<std::int32_t>(item.record)});
    }
  }
  if (left > 0)
    pie.slices.push_back({std::to_string(left) + (left > 1 ? " others" : " other"), measureText(rest), rest,
                          roleColours(display.colours).without, static_cast<std::int32_t>(stats.records.size())});
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

// Where the spread of the effects has a size that tells something beside their mean.
void addGuides(Figure& figure, XyChart& chart, const Colour& colour) {
  constexpr struct {
    double ratio;
    const char* text;
    LineStyle style;
  } kGuides[] = {{1.0, "Sigma as large as the index", LineStyle::Solid},
                 {0.5, "half of it", LineStyle::Dash},
                 {0.1, "a tenth", LineStyle::DoubleDot}};
  for (const auto& guide : kGuides) {
    const double end = std::min(chart.x.upper, chart.y.upper / guide.ratio);
    if (!(end > 0.0)) continue;
    chart.layers.emplace_back(Line{{0.0, end}, {0.0, guide.ratio * end}, colour, guide.style, false});
    figure.legend.push_back({guide.text, colour, LegendMark::Line, guide.style});
  }
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
                   const std::vector<std::int32_t>& slots, const MeasureDisplay& display) {
  constexpr double kWidth = 560.0;
  constexpr double kCharacter = 14.0;  // of a name on either side of the pie
  constexpr std::size_t kUsualName = 10;
  constexpr std::size_t kLongestName = 40;
  constexpr double kHeight = 520.0;
  constexpr int kMostColumns = 2;
  Figure figure;
  figure.title = "Sensitivity Analysis";
  figure.subtitle = variableName;
  for (const std::int32_t slot : slots) figure.charts.emplace_back(pieOf(stats, variable, slot, display));
  const auto singles = std::count_if(stats.records.begin(), stats.records.end(),
                                     [](const IndexRecord& record) { return record.groupNames.size() == 1; });
  if (display.scaled) figure.subtitle += "; scaled to a sum of 1";
  if (isKeptTopTen(stats, display) && singles > static_cast<std::ptrdiff_t>(kTop))
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

Figure morrisPlane(const SensitivityStats& stats, std::int32_t variable, const std::string& variableName,
                   const MeasureDisplay& display) {
  constexpr std::size_t kMostWithValues = 10;  // points whose labels have room for their values
  const std::vector<std::optional<double>> means = measureColumn(stats, variable, MorrisStats::kMean);
  const std::vector<std::optional<double>> spreads = measureColumn(stats, variable, MorrisStats::kSigma);
  const auto count = static_cast<std::size_t>(
      std::count_if(means.begin(), means.end(), [](const std::optional<double>& mean) { return mean.has_value(); }));
  LabelledPoints points;
  points.colour = namedColour("Medium Slate Blue");
  for (const std::size_t i : displayedRecords(stats, variable, {MorrisStats::kMean}, display)) {
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
  addGuides(figure, chart, roleColours(display.colours).without);
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
    figures.emplace_back("indices", measureBars(stats, variable, variableName, slots, {.colours = colours}));
  else
    for (const MeasureChoice& choice : choices)
      figures.emplace_back(choice.word,
                           measureBars(stats, variable, variableName, {choice.slot}, {.colours = colours}));

  if (interactionSlots(stats))
    figures.emplace_back("interactions", interactionBars(stats, variable, variableName, {.colours = colours}));
  if (isByTerm(stats)) slots = {SobolStats::kIndex, SobolStats::kTotal};
  if (dividesAWhole(stats))
    figures.emplace_back("pies", measurePies(stats, variable, variableName, slots, {.colours = colours}));
  return figures;
}

}  // namespace tarvex
