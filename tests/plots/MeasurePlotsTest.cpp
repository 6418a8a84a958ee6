#include "plots/measurePlots.h"

#include <gmock/gmock.h>

#include "plots/FigureLayout.h"
#include "postproc/FastStats.h"
#include "postproc/ImportanceStats.h"
#include "postproc/MeasureRows.h"
#include "postproc/MorrisStats.h"
#include "postproc/RegressionStats.h"
#include "postproc/SobolStats.h"
#include "support/Test.h"

namespace tarvex {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr auto kUncertain = FactorKind::Uncertain;

// Measures 0.1, 0.2, ... with a flag each.
std::vector<double> regressionValues(double flag) {
  std::vector<double> values(RegressionStats::kSlots, flag);
  for (int m = 0; m < RegressionStats::kMeasures; ++m) values[static_cast<std::size_t>(m)] = 0.1 * (m + 1);
  return values;
}

const BarChart& barsOf(const Figure& figure, std::size_t i = 0) {
  return std::get<BarChart>(figure.charts.at(i));
}

std::vector<std::string> textsOf(const std::vector<Bar>& bars) {
  std::vector<std::string> texts;
  for (const Bar& bar : bars) texts.push_back(bar.text);
  return texts;
}

std::vector<std::string> wordsOf(const SensitivityStats& stats) {
  std::vector<std::string> words;
  for (const auto& [word, figure] : measureFigures(stats, 1, "Y")) words.push_back(word);
  return words;
}

TEST(MeasureBars, showSignificanceAndTheReasonsForNoMeasure) {
  auto stats = resultOf<RegressionStats>({{"x1", kUncertain, regressionValues(1.0)},
                                          {"k", FactorKind::Constant, regressionValues(0.0)},
                                          {"r", FactorKind::Relation, regressionValues(0.0)},
                                          {"c", FactorKind::Correlated, regressionValues(1.0)},
                                          {"x2", kUncertain, regressionValues(0.0)},
                                          {"x3", kUncertain, regressionValues(0.0)}});
  stats.records[5].values[RegressionStats::kSlots + RegressionStats::kSrc] = kNan;
  const Figure figure = measureBars(stats, 1, "Y[max]", {RegressionStats::kSrc}, {.colours = ColourSet::System});
  const std::vector<Bar>& bars = barsOf(figure).series.at(0);
  EXPECT_THAT(barsOf(figure).categories, ElementsAre("x1", "k", "r", "c", "x2", "x3"));
  EXPECT_THAT(textsOf(bars), ElementsAre("0.5000", "Constant", "Related factor", "Correlated factor", "0.5000", "nan"));
  EXPECT_EQ(bars[0].colour, namedColour("Pale Green"));
  EXPECT_EQ(bars[4].colour, namedColour("Indian Red"));
  EXPECT_FALSE(bars[5].colour == namedColour("Indian Red")) << "no number, no flag";
  EXPECT_EQ(figure.legend.at(0).text, "significantly above 0 at 0.95");
  EXPECT_THAT(wordsOf(stats), ElementsAre("pear", "spea", "pcc", "prcc", "src", "srrc", "smirnov"));
  EXPECT_EQ(measureBars(stats, 1, "Y", {0, 1}).charts.size(), 2u);

  const Figure forecast = forecastBars(stats, 1, "Y", RegressionStats::kPcc, ColourSet::System);
  EXPECT_THAT(barsOf(forecast).categories, ElementsAre("x1", "x2", "x3"));
  EXPECT_EQ(barsOf(forecast).series[0][0].text, "0.300");
}

TEST(MeasureBars, shareAFigureForFirstAndTotalOrder) {
  auto stats = resultOf<FastStats>(
      {{"x1", kUncertain, {0.25, 0.75}}, {"k", FactorKind::Constant, {0.0, 0.0}}, {"x2", kUncertain, {0.00012, kInf}}});
  Figure figure = measureBars(stats, 1, "Y", {0, 1});
  EXPECT_THAT(textsOf(barsOf(figure).series.at(0)), ElementsAre("0.2500", "Constant", "0.00012"));
  EXPECT_THAT(textsOf(barsOf(figure).series.at(1)), ElementsAre("0.7500", "", "inf"));
  EXPECT_NE(barsOf(figure).series[0][0].colour, barsOf(figure).series[1][0].colour);
  EXPECT_LE(barsOf(figure).values.lower, 0.0);
  EXPECT_THAT(wordsOf(stats), ElementsAre("indices", "interactions", "pies"));

  stats.factorCount = 7;
  EXPECT_EQ(measureBars(stats, 1, "Y", {0, 1}).legend.at(0).text, "First Order (on groups)");
  const auto classic = resultOf<FastStats>({{"x1", FactorKind::Constant, {0.0, 0.0}}});
  EXPECT_THAT(wordsOf(classic), ElementsAre("first", "pies"));
}

// One bar a factor: the total order is where the second part ends.
TEST(MeasureBars, showInteractionsBehindTheFirstOrder) {
  const auto stats = resultOf<FastStats>({{"x1", kUncertain, {0.25, 0.75}},
                                          {"k", FactorKind::Constant, {0.0, 0.0}},
                                          {"x2", kUncertain, {0.5, 0.4}},
                                          {"x3", kUncertain, {-0.1, 0.9}}});
  const Figure figure = interactionBars(stats, 1, "Y", {.order = MeasureDisplay::Order::Value, .most = 3});
  const BarChart& chart = barsOf(figure);
  EXPECT_THAT(chart.categories, ElementsAre("x3", "x1", "x2"));
  EXPECT_TRUE(chart.stacked);
  std::vector<std::pair<double, double>> shares;
  for (const Bar& bar : chart.series.at(1)) shares.emplace_back(bar.from, bar.value);
  EXPECT_THAT(shares, ElementsAre(std::pair(0.0, 0.9), std::pair(0.25, 0.75), std::pair(0.5, 0.5)));
  EXPECT_THAT(textsOf(chart.series.at(1)), ElementsAre("-0.1000 + 1.0000", "0.2500 + 0.5000", "0.5000 - 0.1000"));
  EXPECT_THAT(figure.subtitle, HasSubstr("first orders add up to 0.6500"));
  FigureLayout layout = layOut(figure, {});
  const auto& bars = std::get<BarLayout>(layout.charts.front());
  EXPECT_EQ(bars.barBox(1, 0, chart.series[1][1]).y, bars.barBox(0, 0, chart.series[0][1]).y) << "one row";
}

// Terms of one factor have index, total, closed index; of two, index and closed index.
TEST(MeasureBars, findTheSlotsOfSobolTerms) {
  auto stats = resultOf<SobolStats>({{"a", kUncertain, {0.1, 0.2, 0.3}, {"a"}},
                                     {"b", kUncertain, {0.4, 0.5, 0.6}, {"b"}},
                                     {"a,b", kUncertain, {0.7, 0.8}, {"a", "b"}}});
  stats.slotMode = SobolStats::kByTerm;
  EXPECT_THAT(textsOf(barsOf(measureBars(stats, 1, "Y", {0})).series[0]), ElementsAre("0.1000", "0.4000", "0.7000"));
  EXPECT_THAT(textsOf(barsOf(measureBars(stats, 1, "Y", {1})).series[0]), ElementsAre("0.2000", "0.5000"));
  EXPECT_THAT(textsOf(barsOf(measureBars(stats, 1, "Y", {2})).series[0]), ElementsAre("0.3000", "0.6000", "0.8000"));
  EXPECT_THAT(wordsOf(stats), ElementsAre("index", "total", "closed", "interactions", "pies"));
}

TEST(MeasureBars, stayReadableForManyFactorsAndLongNames) {
  std::vector<MeasureRow> rows;
  for (int i = 0; i < 371; ++i) rows.push_back({std::string(19, 'W'), kUncertain, {0.001 * i}});
  const auto stats = resultOf<ImportanceStats>(rows);
  EXPECT_THAT(wordsOf(stats), ElementsAre("importance", "pies"));
  EXPECT_GT(measureBars(stats, 1, "Y", {0}).height, 371 * 16.0);
  const PieChart pie =
      std::get<PieChart>(measurePies(stats, 1, "Y", {0}, {.colours = ColourSet::System}).charts.front());
  EXPECT_EQ(pie.slices.size(), 370u) << "a share of nothing has no slice";
  EXPECT_EQ(pie.slices[0].colour, sliceColour(1)) << "a factor's colour follows its place";
  for (int i = 0; i < 5000; ++i) rows.push_back({"x", kUncertain, {i == 77 ? -9.0 : 0.5}});
  const Figure most = measureBars(resultOf<ImportanceStats>(rows), 1, "Y", {0});
  EXPECT_EQ(barsOf(most).categories.size(), 1000u);
  EXPECT_LT(most.height, 32767.0) << "what a picture's pixels can count";
  EXPECT_EQ(most.subtitle, "Y; the 1000 largest of 5371");
  EXPECT_EQ(barsOf(most).values.lower, -9.0);
}

TEST(MeasurePies, takeTheColoursOfTheirMethod) {
  const auto fast = resultOf<FastStats>(
      {{"k", FactorKind::Constant, {0.0, 0.0}}, {"x1", kUncertain, {-0.1, 0.5}}, {"x2", kUncertain, {0.25, kNan}}});
  const Figure figure = measurePies(fast, 1, "Y", {0, 1}, {.colours = ColourSet::System});
  const auto& first = std::get<PieChart>(figure.charts.at(0));
  ASSERT_EQ(first.slices.size(), 1u);
  EXPECT_EQ(first.slices[0].label + first.slices[0].text, "x20.2500");
  EXPECT_EQ(first.slices[0].colour, fastSliceColour(1));

  std::vector<MeasureRow> rows{{"pair", kUncertain, {0.0, 0.0}, {"a", "b"}}};
  for (int i = 0; i < 12; ++i) rows.push_back({"x", kUncertain, {i == 3 ? kNan : 1.0 - 0.1 * (i % 6), 0.5 + i}, {"x"}});
  auto sobol = resultOf<SobolStats>(rows);
  sobol.slotMode = SobolStats::kFirstAndTotal;
  std::vector<std::int32_t> numbers;
  for (const auto& [record, value] : sobolTopTen(sobol, 1, 0)) numbers.push_back(record);
  EXPECT_THAT(numbers, ElementsAre(6, 12, 5, 11, 10, 3, 9, 2, 8, 1)) << "the smallest first, what is no number last";
  EXPECT_THAT(sobolTopTen(sobol, 2, 0), IsEmpty());
  const auto pie = std::get<PieChart>(measurePies(sobol, 1, "Y", {1}, {.colours = ColourSet::System}).charts.front());
  EXPECT_EQ(pie.slices.size(), 10u);
}

TEST(MorrisPlane, labelsThePointsWithTheirValues) {
  const auto stats = resultOf<MorrisStats>(
      {{"x1", kUncertain, {12.3456, 0.5}}, {"k", FactorKind::Constant, {0.0, 0.0}}, {"x2", kUncertain, {kNan, 1e-5}}});
  const Figure figure = morrisPlane(stats, 1, "Y");
  const auto& chart = std::get<XyChart>(figure.charts.at(0));
  EXPECT_THAT(std::get<LabelledPoints>(chart.layers.back()).labels,
              ElementsAre("x1 (1.235e+01, 5.000e-01)", "x2 (nan, 1.000e-05)"));
  EXPECT_EQ(chart.x.lower, 0.0);
  EXPECT_THAT(figure.subtitle, HasSubstr("k (Constant)"));
  EXPECT_THAT(wordsOf(stats), ElementsAre("plane", "mean", "sigma"));
  EXPECT_THAT(morrisPlane(MorrisStats(), 0, "Y").charts, IsEmpty());
}

}  // namespace
}  // namespace tarvex
