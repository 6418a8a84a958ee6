#include <gmock/gmock.h>

#include <set>
#include <tuple>

#include "factors/Beta.h"
#include "factors/Discrete.h"
#include "factors/Normal.h"
#include "factors/Weibull.h"
#include "factors/makeFactor.h"
#include "plots/RunTable.h"
#include "plots/distributionPlot.h"
#include "plots/histogramPlots.h"
#include "plots/timePlots.h"
#include "support/Test.h"

// Histograms of variables and curves of factors.
namespace tarvex {
namespace {

using testing::HasSubstr;
using testing::IsEmpty;

const XyChart& chartOf(const Figure& figure, std::size_t i = 0) {
  return std::get<XyChart>(figure.charts.at(i));
}

double sumOf(const std::vector<double>& values) {
  double sum = 0.0;
  for (const double value : values) sum += value;
  return sum;
}

Figure histogramOf(const std::vector<double>& values, HistogramForm form, HistogramScale scale = kLinearScale) {
  const RunColumn column{"Y", false, values};
  return histogramPlot({&column}, form, scale);
}

TEST(HistogramPlot, countsTheRunsOfOneVariable) {
  std::vector<double> values{kNan};
  for (int i = 0; i <= 1000; ++i) values.push_back(i);
  const Figure figure = histogramOf(values, HistogramForm::Area);
  const auto& area = std::get<Area>(chartOf(figure).layers.at(0));
  EXPECT_EQ(area.edges.size(), area.heights.size() + 1);
  EXPECT_EQ(sumOf(area.heights), 1001.0);
  EXPECT_EQ(area.edges.back(), 1000.0);
  EXPECT_EQ(area.heights.size(), 10u) << "Scott's width for 1001 even values is an eighth or a ninth of them";
  const RunColumn column{"Y", false, values};
  const Figure all = histogramPlot({&column}, HistogramForm::Bars, kLinearScale, HistogramBins::All);
  EXPECT_EQ(std::get<Area>(chartOf(all).layers.at(0)).edges[100], 1000.0);
  EXPECT_GE(chartOf(figure).y.upper, 10.0);
  EXPECT_THAT(figure.subtitle, HasSubstr("1 without a number"));
  EXPECT_THAT(figure.legend, IsEmpty());

  const Figure parts = histogramPlot({&column}, HistogramForm::Frequency, kLinearScale);
  EXPECT_EQ(std::get<Area>(chartOf(parts).layers.at(0)).edges, area.edges) << "shares stand in the same columns";

  const Figure shares = histogramOf({0.0, 1.0, 1.0, 4.0}, HistogramForm::Frequency);
  EXPECT_DOUBLE_EQ(sumOf(std::get<Area>(chartOf(shares).layers.at(0)).heights), 1.0);
  const Figure rising = histogramOf({0.0, 1.0, 1.0, 4.0}, HistogramForm::Cumulative);
  const auto& line = std::get<Line>(chartOf(rising).layers.at(0));
  EXPECT_EQ(line.y.front(), 0.25);
  EXPECT_EQ(line.y.back(), 1.0);
  EXPECT_EQ(line.x.back(), 4.0);
  const Figure logs = histogramOf({1.0, 10.0, 100.0}, HistogramForm::Complement, kLogScale);
  EXPECT_EQ(chartOf(logs).x.scale, AxisScale::Logarithms);
  EXPECT_DOUBLE_EQ(chartOf(logs).x.upper, std::log(100.0));
}

TEST(HistogramPlot, survivesVariablesWithoutAHistogram) {
  const std::vector<HistogramForm> forms{HistogramForm::Area, HistogramForm::Outline, HistogramForm::Frequency,
                                         HistogramForm::Cumulative, HistogramForm::Complement};
  for (const HistogramForm form : forms) {
    for (const std::vector<double>& constant : {std::vector<double>{3.0}, {0.0, 0.0}, {-5.0, kNan, -5.0}}) {
      const Figure figure = histogramOf(constant, form);
      const Axis& x = chartOf(figure).x;
      EXPECT_TRUE(x.lower < constant.front() && constant.front() < x.upper);
      EXPECT_EQ(chartOf(figure).layers.size(), 1u);
    }
    for (const std::vector<double>& none : {std::vector<double>{}, {kNan, kNan}, {kInf, -kInf}, {-1e308, 1e308}})
      EXPECT_THAT(histogramOf(none, form).charts, IsEmpty());
    EXPECT_THAT(histogramOf({0.0, 1.0}, form, kLogScale).charts, IsEmpty());
  }
  const Figure infinite = histogramOf({0.0, 1.0, kInf, kNan, 1.0}, HistogramForm::Area);
  EXPECT_EQ(sumOf(std::get<Area>(chartOf(infinite).layers.at(0)).heights), 3.0);
  EXPECT_EQ(infinite.subtitle, "5 runs, 1 without a number, 1 infinite value");
  EXPECT_EQ(histogramOf({0.0, 1.0}, HistogramForm::Area, kLogScale).subtitle, "2 runs; not above 0 in all of them: Y");
  EXPECT_THAT(histogramPlot(std::vector<const RunColumn*>{}, HistogramForm::Area, kLinearScale).charts, IsEmpty());
}

TEST(HistogramPlot, tellsManyVariablesApart) {
  std::vector<RunColumn> columns;
  for (int i = 0; i < 20; ++i) columns.push_back({"v" + std::to_string(i), i % 2 == 0, {i * 1.0, i + 1.0, i + 3.0}});
  std::vector<const RunColumn*> pointers;
  for (const RunColumn& column : columns) pointers.push_back(&column);
  const Figure figure = histogramPlot(pointers, HistogramForm::Area, kLinearScale);
  std::set<std::tuple<int, int, int>> looks;
  for (const LegendEntry& entry : figure.legend)
    looks.emplace(entry.colour.red, entry.colour.green, static_cast<int>(entry.style));
  EXPECT_EQ(looks.size(), 20u);
  EXPECT_EQ(chartOf(figure).layers.size(), 40u) << "outlines in front of the columns";
}

// The curve of a density over the shown range, by trapezoids.
double integral(const Line& line) {
  double sum = 0.0;
  for (std::size_t i = 1; i < line.x.size(); ++i)
    if (std::isfinite(line.y[i - 1] + line.y[i]))
      sum += (line.x[i] - line.x[i - 1]) * (line.y[i] + line.y[i - 1]) / 2.0;
  return sum;
}

TEST(DistributionPlot, drawsDensityAndCumulativeOfEveryFamily) {
  for (const char* type :
       {"Beta", "Exponential", "Gamma", "LogNormal", "LogUniform", "Normal", "Triangular", "Uniform", "Weibull"}) {
    SCOPED_TRACE(type);
    const Figure figure = distributionPlot(*makeFactor(type));
    ASSERT_EQ(figure.charts.size(), 2u);
    const auto& density = std::get<Line>(chartOf(figure).layers.at(0));
    const auto& cumulative = std::get<Line>(chartOf(figure, 1).layers.at(0));
    EXPECT_NEAR(integral(density), 1.0, 0.01) << "nearly all of the distribution is in sight";
    EXPECT_TRUE(std::is_sorted(cumulative.y.begin(), cumulative.y.end()));
    EXPECT_LT(cumulative.y.front(), 0.01);
    EXPECT_NEAR(cumulative.y.back(), 1.0, 0.01);
    EXPECT_LT(chartOf(figure).y.upper, 1.8);
  }
}

TEST(DistributionPlot, edgesOfFamilies) {
  Beta beta;
  ASSERT_TRUE(beta.setParameters(0.5, 0.5, 0.0, 1.0));
  Weibull weibull;
  ASSERT_TRUE(weibull.setBeta(0.2));
  for (const Factor* infinite : {static_cast<const Factor*>(&beta), static_cast<const Factor*>(&weibull)}) {
    const Figure figure = distributionPlot(*infinite);
    EXPECT_LT(chartOf(figure).y.upper, 5.0) << "the axis doesn't follow the density to infinity";
    EXPECT_GT(chartOf(figure).y.upper, 0.001);
  }

  Normal cut;
  EXPECT_EQ(chartOf(distributionPlot(cut)).layers.size(), 1u);
  ASSERT_TRUE(cut.setRightTruncation(0.5));
  const Figure truncated = distributionPlot(cut);
  ASSERT_EQ(chartOf(truncated).layers.size(), 2u);
  EXPECT_NEAR(std::get<Line>(chartOf(truncated).layers[1]).x[0], 0.0, 1e-5);
  EXPECT_TRUE(cut.table.empty());

  Discrete discrete;
  discrete.clear();
  EXPECT_THAT(distributionPlot(discrete).charts, IsEmpty());
  for (const double at : {4.0, 1.0})
    ASSERT_TRUE(discrete.addPoint(std::make_unique<Interval>(at, at + 1.0, at == 4.0 ? 0.75 : 0.25)));
  const Figure points = distributionPlot(discrete);
  EXPECT_EQ(std::get<Area>(chartOf(points).layers.at(0)).heights, (std::vector<double>{0.25, 0.0, 0.75}));
  const auto& steps = std::get<Line>(chartOf(points, 1).layers.at(0));
  EXPECT_TRUE(steps.steps);
  EXPECT_EQ(steps.y, (std::vector<double>{0.0, 0.25, 1.0, 1.0}));

  Normal spike;
  ASSERT_TRUE(spike.setStdDeviation(0.0));
  EXPECT_THAT(distributionPlot(spike).subtitle, HasSubstr("there is no curve to show"));
  for (const char* type : {"Factor", "Dummy", "Constant", "Relation"})
    EXPECT_THAT(distributionPlot(*makeFactor(type)).charts, IsEmpty());
}

TEST(TimeBandsPlot, showsWhatHasANumberAndNamesTheRest) {
  TimeBands good{"Y", {0.0, 1.0, 2.0}, 9, {1.0, kNan, 3.0}, {}, 20, 1};
  TimeBands empty{"Z", {0.0, 1.0, 2.0}, 3, {kNan, kNan, kNan}, {}, 20, 20};
  for (std::size_t share = 0; share < kBandShares.size(); ++share) {
    const auto place = static_cast<double>(share);
    good.quantiles[share] = {place, kNan, 3.0 * place};
    empty.quantiles[share] = {kNan, kNan, kNan};
  }
  const Figure both = timeBandsPlot({good, empty}, 1.5);
  ASSERT_EQ(both.charts.size(), 1u);
  EXPECT_EQ(chartOf(both).layers.size(), 5u) << "two bands, median, mean, the marked time";
  EXPECT_EQ(chartOf(both).y.upper, 12.0);
  EXPECT_EQ(both.subtitle,
            "20 runs, 3 of 9 times, at some times up to 20 of them without a number; without a finite value: Z");
  EXPECT_EQ(both.legend.at(2).text, "25 % to 75 % of the runs");
  EXPECT_EQ(chartOf(timeBandsPlot({good}, 2.5)).layers.size(), 4u) << "a time outside is not marked";
  EXPECT_THAT(whyNotLogarithmic(good), HasSubstr("the first one is 0."));
  good.times = {1.0, 2.0, 4.0};
  EXPECT_EQ(whyNotLogarithmic(good), "");
  const Figure logarithmic = timeBandsPlot({good}, 2.0, AxisScale::Logarithms);
  EXPECT_EQ(chartOf(logarithmic).x.scale, AxisScale::Logarithms);
  EXPECT_EQ(chartOf(logarithmic).x.upper, std::log(4.0));
  EXPECT_EQ(std::get<Line>(chartOf(logarithmic).layers.at(4)).x[0], std::log(2.0)) << "the marked time";
  EXPECT_THAT(timeBandsPlot({empty}).charts, IsEmpty());
  EXPECT_THAT(timeBandsPlot({empty}).emptyText, HasSubstr("no finite value"));
}

}  // namespace
}  // namespace tarvex
