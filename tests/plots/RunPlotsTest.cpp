#include "plots/runPlots.h"

#include <gmock/gmock.h>

#include "factors/makeFactor.h"
#include "model/InternalModel.h"
#include "model/InternalRun.h"
#include "model/ModelConfiguration.h"
#include "plots/columnCorrelations.h"
#include "sampling/PrepConfiguration.h"
#include "support/Test.h"

namespace tarvex {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

RunTable tableOf(std::vector<std::vector<double>> columns) {
  RunTable table;
  table.runs = static_cast<std::int32_t>(columns.front().size());
  for (std::vector<double>& values : columns)
    table.columns.push_back({"c" + std::to_string(table.columns.size()), true, std::move(values)});
  return table;
}

// Factors F and x over the runs 0 to 9, outputs Y = 1 / (x - 3) and F (not the factor) = 2 x.
struct Study {
  Study() {
    for (const char* name : {"F", "x"}) {
      std::unique_ptr<Factor> factor = makeFactor("Uniform");
      factor->name = name;
      prep.factors.addFactor(std::move(factor));
    }
    EXPECT_TRUE(prep.samples.allocate(2));
    for (int run = 0; run < 10; ++run)
      EXPECT_GT(prep.samples.addRow(std::vector<double>{100.0 + run, run * 1.0}.data()), 0);
    auto equations = std::make_unique<InternalModel>();
    for (const char* name : {"F", "x"}) EXPECT_TRUE(equations->addVariable(name));
    EXPECT_TRUE(equations->addExpression(0, "Y", "1 / (x - 3)", 1));
    EXPECT_TRUE(equations->addExpression(1, "Z", "2 * x", 1));
    model.choice.setInternalModel(std::move(equations));
    InternalRun run(*model.choice.internalModel(), prep.samples, model.results);
    EXPECT_TRUE(run.prepare());
    EXPECT_EQ(run.advance(100.0f), 100);
  }
  PrepConfiguration prep;
  ModelConfiguration model;
};

TEST(RunTable, readsFactorsVariablesAndExpressionsByName) {
  Study study;
  RunTable table;
  std::string message;
  ASSERT_TRUE(readRunTable(study.prep, study.model, study.model.results.outputNames(),
                           {"x", "V - Z", "F - x", "Z / 2 + Y * 0"}, table, message));
  EXPECT_EQ(table.runs, 10);
  EXPECT_EQ(table.columns[0].label() + table.columns[1].label() + table.columns[2].name, "F - xV - Zx");
  EXPECT_EQ(table.columns[1].values[7], 14.0);
  EXPECT_EQ(table.columns[3].values[7], 7.0);
  EXPECT_THAT(message, HasSubstr("in 1 of 10 runs")) << "run 4 divides by zero";
  ASSERT_TRUE(readRunTable(study.prep, study.model, study.model.results.outputNames(), {}, table, message));
  EXPECT_EQ(table.columns.size(), 4u);
  EXPECT_EQ(message, "");

  EXPECT_FALSE(
      readRunTable(study.prep, study.model, study.model.results.outputNames(), {"x", "nosuch"}, table, message));
  EXPECT_EQ(message, "There is no factor \"nosuch\", nor is it a variable:\nThe model has no output \"nosuch\".");
  EXPECT_GT(study.prep.samples.addRow(std::vector<double>{0.0, 0.0}.data()), 0);
  EXPECT_FALSE(readRunTable(study.prep, study.model, study.model.results.outputNames(), {"x", "Z"}, table, message));
  EXPECT_EQ(message, "The sample has 11 runs, the results have 10.");
  EXPECT_EQ(table.columns.size(), 4u) << "as it was";
}

TEST(RunTable, countsRunsByTheirBounds) {
  const RunTable table = tableOf({{0.0, 1.0, 2.0, 3.0, kNan, kInf}, {5.0, 5.0, 5.0, 1.0, 5.0, 5.0}});
  EXPECT_THAT(runsWithin(table, {{0, 1.0, 3.0, true}}), ElementsAre(1, 2, 3));
  EXPECT_THAT(runsWithin(table, {{0, 1.0, 3.0, false}}), ElementsAre(1, 2)) << "a run on the upper edge is not kept";
  EXPECT_THAT(runsWithin(table, {{0, 1.0, 9.0, true}, {1, 5.0, 6.0, false}}), ElementsAre(1, 2));
  EXPECT_THAT(runsWithin(table, {{0, 10.0, 20.0, true}}), IsEmpty());
  EXPECT_EQ(runsWithin(table, {}).size(), 6u);
  EXPECT_EQ(rangeProblem(1.0, 2.0), "");
  for (const double upper : {1.0, 0.5, kNan})
    EXPECT_EQ(rangeProblem(1.0, upper), "  Upper bound must be greater than lower bound.");
}

TEST(CobwebPlot, coloursRunsByTheFirstColumnAndPutsDroppedOnesBehind) {
  // Limits in single precision: 0.2 is not below 0.2.
  const RunTable table =
      tableOf({{0.0, 0.19, 0.2, 0.4, 0.6, 0.8, 1.0, kNan}, {7, 7, 7, 7, 7, 7, 7, 7}, {8, 7, 6, 5, 4, 3, 2, 1}});
  const Figure all = cobwebPlot(table, {}, false, ColourSet::System);
  const auto& chart = std::get<CobwebChart>(all.charts.front());
  EXPECT_THAT(chart.colours, ElementsAre(0, 0, 1, 2, 3, 4, 4, 4));
  EXPECT_EQ(chart.palette.size(), 5u);
  EXPECT_EQ(chart.axes[1].positions[1], 0.5f) << "a constant column is passed in the middle";
  EXPECT_EQ(chart.axes[2].positions[0], 1.0f);
  EXPECT_TRUE(std::isnan(chart.axes[0].positions[7]));
  EXPECT_EQ(all.legend.size(), 5u);

  const std::vector<Colour> distinct = std::get<CobwebChart>(cobwebPlot(table, {}).charts.front()).palette;
  EXPECT_TRUE(std::is_sorted(distinct.begin(), distinct.end(),
                             [](const Colour& a, const Colour& b) { return a.green < b.green; }));

  const std::vector<RunRange> filters{{2, 3.0, 6.0, true}, {2, 4.0, 99.0, true}};
  const Figure kept = cobwebPlot(table, filters, false, ColourSet::System);
  const RunMarks& marks = std::get<CobwebChart>(kept.charts.front()).runs;
  EXPECT_THAT(marks.dropped, ElementsAre(1, 1, 0, 0, 0, 1, 1, 1));
  EXPECT_FALSE(marks.showDropped);
  EXPECT_EQ(kept.subtitle, "3 of 8 runs within the filters");
  EXPECT_EQ(std::get<CobwebChart>(kept.charts.front()).axes[2].filter, std::make_pair(4.0, 6.0));
  const Figure shown = cobwebPlot(table, filters, true);
  EXPECT_TRUE(std::get<CobwebChart>(shown.charts.front()).runs.showDropped);
  EXPECT_EQ(shown.legend.size(), 6u);

  EXPECT_EQ(cobwebPlot(tableOf({{2.0}, {kNan}}), {}).legend.size(), 1u) << "one run: the first column is constant";
  const Figure none = cobwebPlot(tableOf({{kNan, kNan}, {0.0, 0.0}}), {});
  EXPECT_THAT(none.subtitle, HasSubstr("; without a number: ")) << "it is nowhere, not at 0";
  EXPECT_THAT(none.legend.at(0).text, HasSubstr(" has no number in any run"));
  EXPECT_TRUE(std::isnan(std::get<CobwebChart>(none.charts.front()).axes[0].lower)) << "no limits of its own";
  const Figure widest = cobwebPlot(tableOf({{-1e308, 1e308, 0.0}}), {});
  EXPECT_THAT(std::get<CobwebChart>(widest.charts.front()).axes[0].positions, ElementsAre(0.0f, 1.0f, 0.5f));
  EXPECT_THAT(cobwebPlot({}, {}).charts, IsEmpty());
}

TEST(ScatterPlot, looksAreOfThePictureAndNotOfTheValues) {
  std::vector<double> discrete, continuous;
  for (int i = 0; i < 60; ++i) {
    discrete.push_back(1.0 + i % 3);
    continuous.push_back(std::exp(0.1 * i) - 1.0);  // the first is 0
  }
  RunTable table = tableOf({discrete, continuous});
  table.columns[0].unit = unitOf("yearly maxima [m3/s], [other]");
  EXPECT_TRUE(isDiscrete(table.columns[0]));
  EXPECT_FALSE(isDiscrete(table.columns[1]));
  EXPECT_TRUE(canBeLogarithmic(table.columns[0]));
  EXPECT_FALSE(canBeLogarithmic(table.columns[1]));
  ScatterLook look;
  look.jitter = look.logarithmicY = true;
  const Figure figure = scatterPlot(table.columns[0], table.columns[1], look);
  EXPECT_THAT(figure.subtitle, HasSubstr("1 without a number or not above 0"));
  const auto& chart = std::get<XyChart>(figure.charts.front());
  EXPECT_EQ(chart.x.title, "c0 [m3/s]");
  const auto& points = std::get<Points>(chart.layers.front());
  EXPECT_EQ(points.x, discrete) << "what is told and saved of a point";
  EXPECT_NE(points.shownX(0), points.shownX(3)) << "two runs of one value stand apart";
  for (std::size_t i = 0; i < discrete.size(); ++i) {
    EXPECT_LT(std::abs(points.shownX(i) - discrete[i]), 0.5) << "nearer to its own value than to any other";
    EXPECT_TRUE(chart.x.lower <= points.shownX(i) && points.shownX(i) <= chart.x.upper);
  }
  EXPECT_DOUBLE_EQ(points.y[10], std::log(continuous[10]));
  const Figure empty = scatterPlot(tableOf({{kNan}}).columns[0], tableOf({{1.0}}).columns[0]);
  EXPECT_THAT(empty.charts, IsEmpty());
  EXPECT_THAT(empty.emptyText, HasSubstr("No run has a number"));
}

TEST(CorrelationMap, hasTheCorrelationsOfTheRunsThatAreKept) {
  // The last run turns a falling column into none; ranks don't see how far it lies out.
  const RunTable table = tableOf({{1, 2, 3, 4, 5}, {9, 7, 4, 1, 800}, {2, 2, 2, 2, 2}, {1, kNan, 3, 4, 5}});
  CorrelationMatrix matrix;
  std::string message;
  ASSERT_TRUE(correlateColumns(table, {}, CorrelationKind::Ranks, matrix, message));
  EXPECT_NEAR(matrix.at(0, 1), 0.0, 1e-12) << "ranks 4 3 2 1 5";
  EXPECT_TRUE(std::isnan(matrix.at(0, 3)));
  ASSERT_TRUE(correlateColumns(table, {0, 1, 2, 3}, CorrelationKind::Ranks, matrix, message));
  EXPECT_NEAR(matrix.at(1, 0), -1.0, 1e-12);
  EXPECT_EQ(matrix.runs, 4);
  ASSERT_TRUE(correlateColumns(table, {}, CorrelationKind::Values, matrix, message));
  EXPECT_GT(matrix.at(0, 1), 0.5);
  EXPECT_EQ(matrix.at(0, 2), 0.0) << "a column without deviation";
  const Figure map = correlationMap(matrix);
  EXPECT_EQ(std::get<Cells>(std::get<XyChart>(map.charts.front()).layers.front()).texts[3], "-");
}

}  // namespace
}  // namespace tarvex
