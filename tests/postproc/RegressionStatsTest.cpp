#include "postproc/RegressionStats.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "postproc/ValueTables.h"
#include "postproc/smirnovDistance.h"

namespace tarvex {
namespace {

using Stats = RegressionStats;

double valueOf(const Stats& stats, std::size_t factor, std::int32_t slot, std::int32_t variable = 0) {
  std::vector<double> values;
  EXPECT_TRUE(stats.slotValues(variable, slot, values));
  return values.at(factor);
}

// Kinds of factors, and what becomes of them.
TEST(RegressionStats, CollinearFactors) {
  TestNumbers numbers(11);
  const std::vector<double> x = numbers.column(50);
  const std::vector<double> z = numbers.column(50);
  const std::vector<double> five(50, 5.0);
  std::vector<double> y(50), negative(50);
  for (std::size_t i = 0; i < x.size(); ++i) {
    y[i] = 2 * x[i] + 0.3 * z[i] + 0.5 * numbers.next();
    negative[i] = -x[i];
  }
  const OutputTable outputs = tableOf({y});
  Stats twin;
  ASSERT_TRUE(twin.compute(sampleOf({x, x, z, five}, {"Uniform", "Uniform", "Uniform", "Constant"}), outputs));
  Stats alone;
  ASSERT_TRUE(alone.compute(sampleOf({x, z}), outputs));
  EXPECT_EQ(twin.activeCount, 2);
  EXPECT_EQ(twin.records[1].kind, FactorKind::Correlated);
  EXPECT_EQ(twin.records[3].kind, FactorKind::Constant);
  for (std::int32_t measure = 0; measure < Stats::kMeasures; ++measure) {
    EXPECT_EQ(valueOf(twin, 0, measure), valueOf(alone, 0, measure)) << measure;
    EXPECT_EQ(valueOf(twin, 1, measure), 0.0) << measure;
    EXPECT_EQ(valueOf(twin, 0, Stats::kRankSlots + measure), 1.0) << measure;
    EXPECT_EQ(valueOf(twin, 1, Stats::kRankSlots + measure), 4.0) << "of the zeros the first is the last";
    EXPECT_EQ(valueOf(twin, 3, Stats::kRankSlots + measure), 3.0) << measure;
  }
  // A relation that repeats a factor neither leaves nor pushes out.
  Stats relation;
  ASSERT_TRUE(relation.compute(sampleOf({x, x, z}, {"Relation", "Uniform", "Uniform"}), outputs));
  EXPECT_EQ(relation.records[0].kind, FactorKind::Relation);
  EXPECT_EQ(relation.activeCount, 2);
  // The negative stays, and its matrix is singular: all ones, for the second variable nothing.
  Stats mirrored;
  ASSERT_TRUE(mirrored.compute(sampleOf({x, negative, z}), tableOf({y, z})));
  EXPECT_TRUE(mirrored.computed);
  EXPECT_EQ(mirrored.activeCount, 3);
  for (std::size_t factor = 0; factor < 3; ++factor)
    for (std::int32_t measure = 0; measure < Stats::kMeasures; ++measure) {
      EXPECT_EQ(valueOf(mirrored, factor, measure), 1.0);
      EXPECT_EQ(valueOf(mirrored, factor, measure, 1), 0.0);
    }
  double raw = 0.0;
  double ranks = 0.0;
  ASSERT_TRUE(mirrored.determinationAdjusted(0, raw, ranks));
  EXPECT_TRUE(raw == 1.0 && ranks == 1.0);
}

TEST(RegressionStats, Refusals) {
  const OutputTable outputs = tableOf({{1, 2, 3}});
  OutputTable none;
  ASSERT_TRUE(none.allocate(1));
  sampValues empty;
  ASSERT_TRUE(empty.allocate(1));
  PrepConfiguration noRuns = sampleOf({{1}});
  noRuns.samples = empty;
  PrepConfiguration wide = sampleOf({{1, 2, 3}});
  wide.factors.addFactor(makeFactor("Uniform"));
  struct Row {
    PrepConfiguration prep;
    const OutputTable& outputs;
    const char* text;
  };
  const Row rows[] = {
      {sampleOf({{1, 1, 1}, {2, 2, 2}}, {"Constant", "Relation"}), outputs, "All input factors are constant"},
      {sampleOf({{1, 2}}), outputs, "The sample has 2 runs, the results have 3."},
      {wide, outputs, "The sample has 1 columns, the list has 2 factors."},
      {noRuns, none, "There are no runs to analyse."},
  };
  for (const Row& row : rows) {
    Stats stats;
    ASSERT_TRUE(stats.compute(sampleOf({{1, 2, 3}}), outputs));
    EXPECT_FALSE(stats.compute(row.prep, row.outputs));
    EXPECT_EQ(stats.errorText, row.text);
    EXPECT_TRUE(!stats.computed && stats.records.empty());
  }
}

TEST(RegressionStats, GapsStayInTheirVariable) {
  constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
  TestNumbers numbers(8);
  const std::vector<double> x = numbers.column(30);
  const std::vector<double> z = numbers.column(30);
  std::vector<double> gap = z;
  gap[7] = kNaN;
  Stats stats;
  ASSERT_TRUE(stats.compute(sampleOf({x, z}), tableOf({gap, numbers.column(30)})));
  for (std::int32_t measure = 0; measure < Stats::kMeasures; ++measure) {
    EXPECT_TRUE(std::isnan(valueOf(stats, 0, measure, 0))) << measure;
    EXPECT_FALSE(std::isnan(valueOf(stats, 0, measure, 1))) << measure;
  }
}

TEST(SmirnovDistance, NeedsTwoSets) {
  EXPECT_EQ(smirnovDistance({0, 1}, {1, 1}), -1.0);
  EXPECT_EQ(smirnovDistance({0, 1}, {0, 0}), -1.0);
}

}  // namespace
}  // namespace tarvex
