#include "postproc/RegressionStats.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>

#include "base/sortPositions.h"
#include "model/ModelConfiguration.h"
#include "postproc/OutputVariables.h"
#include "postproc/PostProcessorFile.h"
#include "postproc/ValueTables.h"
#include "postproc/VelsConfiguration.h"
#include "postproc/smirnovDistance.h"
#include "support/Golden.h"
#include "support/TempDirectory.h"
#include "support/TextFiles.h"

namespace tarvex {
namespace {

using Stats = RegressionStats;

double valueOf(const Stats& stats, std::size_t factor, std::int32_t slot, std::int32_t variable = 0) {
  std::vector<double> values;
  EXPECT_TRUE(stats.slotValues(variable, slot, values));
  return values.at(factor);
}

TEST(RegressionStats, GoldenFiles) {
  struct Row {
    const char* run;
    const char* expected;
    std::vector<std::string> variables;  // none: every output
    float alpha;
    bool uncertainty;
  };
  const Row rows[] = {
      {"ishigami-run.spc", "ishigami.spc", {}, 0.95f, true},
      {"ishigami-run.spc", "ishigami-alpha.spc", {}, 0.9f, false},
      {"plant-run.spc", "plant.spc", {"power", "state", "fixed", "cost / (1 + exp(-margin))"}, 0.95f, true},
  };
  const test::ScopedCurrentDirectory directory;
  for (const Row& row : rows) {
    SCOPED_TRACE(row.expected);
    PrepConfiguration prep;
    ModelConfiguration model;
    VelsConfiguration vels;
    std::string message;
    ASSERT_TRUE(loadPostProcessorFile(test::goldenPath(row.run), prep, model, vels, message)) << message;
    OutputVariables variables;
    OutputTable table;
    ASSERT_TRUE(variables.set(row.variables.empty() ? OutputVariables::defaultVariables(model) : row.variables, model));
    ASSERT_TRUE(variables.build(model, table)) << variables.errorText();
    for (const std::string& text : variables.texts()) vels.addVariable(text);
    if (row.uncertainty) {
      ASSERT_TRUE(vels.uncertainty.compute(variables.texts(), table));
    }
    auto* stats = dynamic_cast<Stats*>(vels.sensitivity.get());
    ASSERT_NE(stats, nullptr);
    ASSERT_TRUE(stats->compute(prep, table)) << stats->errorText;
    EXPECT_EQ(stats->applyAlpha(row.alpha, prep, table), row.alpha != 0.95f);

    const test::TempDirectory temporary;
    const std::string path = temporary.file("out.spc");
    ASSERT_TRUE(savePostProcessorFile(path, prep, model, vels, message)) << message;
    EXPECT_TRUE(test::compareGolden(row.expected, test::readFile(path)));
  }
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
  EXPECT_EQ(valueOf(mirrored, 0, Stats::kFlagSlots + Stats::kPear), 1.0);
  EXPECT_EQ(valueOf(mirrored, 0, Stats::kFlagSlots + Stats::kSpea), 0.0);
  double raw = 0.0;
  double ranks = 0.0;
  ASSERT_TRUE(mirrored.determinationAdjusted(0, raw, ranks));
  EXPECT_EQ(raw, 1.0);
  EXPECT_EQ(ranks, 1.0);
  ASSERT_TRUE(mirrored.determination(1, raw, ranks));
  EXPECT_EQ(raw, 0.0);
  EXPECT_FALSE(mirrored.determination(2, raw, ranks));
}

// Different on raw data, of one order: only the ranks are singular.
TEST(RegressionStats, SingularRanks) {
  TestNumbers numbers(5);
  const std::vector<double> x = numbers.column(40);
  const std::vector<double> y = numbers.column(40);
  std::vector<double> bent(40);
  for (std::size_t i = 0; i < x.size(); ++i) bent[i] = -std::pow(x[i], 9);
  Stats stats;
  ASSERT_TRUE(stats.compute(sampleOf({x, bent}), tableOf({y, y})));
  const double pear = valueOf(stats, 0, Stats::kPear, 1);
  EXPECT_NE(pear, 0.0);
  EXPECT_NE(pear, 1.0);
  for (const std::int32_t measure : {Stats::kSpea, Stats::kPrcc, Stats::kSrrc, Stats::kSmirnov}) {
    EXPECT_EQ(valueOf(stats, 1, measure), 1.0) << measure;
    EXPECT_EQ(valueOf(stats, 1, measure, 1), 0.0) << measure;
  }
  double raw = 0.0;
  double ranks = 0.0;
  ASSERT_TRUE(stats.determination(0, raw, ranks));
  EXPECT_LT(raw, 1.0);
  EXPECT_EQ(ranks, 1.0);
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
    const char* name;
    PrepConfiguration prep;
    const OutputTable& outputs;
    const char* text;
  };
  const Row rows[] = {
      {"constants only", sampleOf({{1, 1, 1}, {2, 2, 2}}, {"Constant", "Relation"}), outputs,
       "All input factors are constant"},
      {"other length", sampleOf({{1, 2}}), outputs, "The sample has 2 runs, the results have 3."},
      {"other width", wide, outputs, "The sample has 1 columns, the list has 2 factors."},
      {"no runs", noRuns, none, "There are no runs to analyse."},
  };
  for (const Row& row : rows) {
    Stats stats;
    ASSERT_TRUE(stats.compute(sampleOf({{1, 2, 3}}), outputs));
    EXPECT_FALSE(stats.compute(row.prep, row.outputs)) << row.name;
    EXPECT_EQ(stats.errorText, row.text);
    EXPECT_FALSE(stats.computed);
    EXPECT_TRUE(stats.records.empty());
    std::vector<double> values;
    EXPECT_FALSE(stats.slotValues(0, 0, values));
  }
}

TEST(RegressionStats, OneRun) {
  Stats stats;
  ASSERT_TRUE(stats.compute(sampleOf({{1.5}, {2.5}}), tableOf({{4.0}})));
  EXPECT_EQ(stats.factorMoments[0].mean, 1.5);
  EXPECT_EQ(stats.factorMoments[0].std, 0.0);
  EXPECT_EQ(valueOf(stats, 0, Stats::kPear), 0.0);
  EXPECT_EQ(valueOf(stats, 0, Stats::kSmirnov), -1.0) << "no other runs";
  EXPECT_EQ(valueOf(stats, 0, Stats::kFlagSlots + Stats::kPcc), 0.0) << "no significance of one run";
}

TEST(RegressionStats, MonotoneModelSaturatesTheRankMeasures) {
  TestNumbers numbers(3);
  const std::vector<double> x = numbers.column(200);
  const std::vector<double> noise = numbers.column(200);
  std::vector<double> up(200), down(200);
  for (std::size_t i = 0; i < x.size(); ++i) {
    up[i] = std::exp(5 * x[i]);
    down[i] = -up[i];
  }
  std::swap(up[10], up[11]);  // a perfect order would be a singular matrix
  std::swap(down[10], down[11]);
  Stats stats;
  ASSERT_TRUE(stats.compute(sampleOf({x, noise}), tableOf({down, down})));
  EXPECT_NEAR(valueOf(stats, 0, Stats::kSpea), -1.0, 0.05);
  EXPECT_LT(valueOf(stats, 0, Stats::kPrcc), -0.9);
  EXPECT_GT(valueOf(stats, 0, Stats::kSmirnov), 0.9) << "the lowest tenth of x is the highest of the output";
  EXPECT_EQ(valueOf(stats, 0, Stats::kSmirnov), valueOf(stats, 0, Stats::kSmirnov, 1));
  EXPECT_EQ(valueOf(stats, 0, Stats::kRankSlots + Stats::kSpea), 1.0);
  EXPECT_LT(valueOf(stats, 0, Stats::kPear), -0.8);
  EXPECT_EQ(valueOf(stats, 0, Stats::kFlagSlots + Stats::kPear), 0.0) << "the test is signed";
  ASSERT_TRUE(stats.compute(sampleOf({x, noise}), tableOf({up})));
  EXPECT_EQ(valueOf(stats, 0, Stats::kFlagSlots + Stats::kPear), 1.0);
  EXPECT_GT(valueOf(stats, 0, Stats::kSmirnov), 0.9);
}

TEST(RegressionStats, EqualValuesTakeRanksInRunOrder) {
  // Ranks 1, 3, 2, 4 of the output, 1, 2, 3, 4 of the factor: 1 - 6 * 2 / (4 * 15).
  Stats stats;
  ASSERT_TRUE(stats.compute(sampleOf({{7, 7, 8, 8}}, {"Discrete"}), tableOf({{0, 5, 0, 5}})));
  EXPECT_NEAR(valueOf(stats, 0, Stats::kSpea), 0.8, 1e-15);
  EXPECT_NEAR(valueOf(stats, 0, Stats::kPear), 0.0, 1e-15);
  EXPECT_DOUBLE_EQ(stats.rankMoments[0].mean, 2.5);
  EXPECT_DOUBLE_EQ(stats.rankMoments[1].std, std::sqrt(5.0 / 3.0));
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
  double raw = 0.0;
  double ranks = 0.0;
  ASSERT_TRUE(stats.determination(0, raw, ranks));
  EXPECT_TRUE(std::isnan(raw) && std::isnan(ranks));
}

TEST(RegressionStats, ApplyAlphaIsAComputationAtThatLevel) {
  TestNumbers numbers(21);
  Columns x;
  for (int i = 0; i < 6; ++i) x.push_back(numbers.column(60));
  std::vector<double> y(60);
  for (std::size_t r = 0; r < 60; ++r) y[r] = 3 * x[0][r] + x[1][r] - x[3][r] + 5 * numbers.next();
  const PrepConfiguration prep = sampleOf(x);
  const OutputTable outputs = tableOf({y});
  Stats moved;
  EXPECT_FALSE(moved.applyAlpha(0.9f, prep, outputs)) << "nothing computed";
  ASSERT_TRUE(moved.compute(prep, outputs));
  EXPECT_FALSE(moved.applyAlpha(0.95f, prep, outputs)) << "the level in force";
  EXPECT_FALSE(moved.applyAlpha(0.75f, prep, tableOf({{1, 2}}))) << "other results";
  EXPECT_EQ(moved.alpha, 0.95f);
  Stats strict = moved;
  EXPECT_TRUE(moved.applyAlpha(0.75f, prep, outputs));
  Stats direct;
  direct.alpha = 0.75f;
  ASSERT_TRUE(direct.compute(prep, outputs));
  bool decided = false;
  for (std::size_t i = 0; i < 6; ++i) {
    EXPECT_EQ(moved.records[i].values, direct.records[i].values) << i;
    decided = decided || moved.records[i].values != strict.records[i].values;
  }
  EXPECT_TRUE(decided) << "nothing here depends on the level";
}

TEST(RegressionStats, MeasureNames) {
  std::string names;
  for (std::int32_t i = -1; i <= Stats::kMeasures; ++i) names += std::string(Stats::measureName(i)) + ' ';
  EXPECT_EQ(names, "ERROR PEAR SPEA PCC PRCC SRC SRRC Smirnov ERROR ");
}

// The distance as its definition says it: the merge of two sorted subsets.
double distanceByMerge(std::vector<std::int32_t> high, std::vector<std::int32_t> low) {
  std::sort(high.begin(), high.end());
  std::sort(low.begin(), low.end());
  double distance = 0.0;
  for (const auto* set : {&high, &low})
    for (const std::int32_t at : *set) {
      const auto share = [at](const std::vector<std::int32_t>& ranks) {
        return static_cast<double>(std::upper_bound(ranks.begin(), ranks.end(), at) - ranks.begin()) /
               static_cast<double>(ranks.size());
      };
      distance = std::max(distance, std::abs(share(high) - share(low)));
    }
  return distance;
}

TEST(SmirnovDistance, AgreesWithTheDistributionFunctions) {
  TestNumbers numbers(77);
  for (const std::size_t runs : {2u, 3u, 9u, 10u, 11u, 100u, 997u}) {
    const std::vector<std::int32_t> rowsByRank = sortPositions(numbers.column(runs));
    std::vector<char> isHigh(runs);
    std::vector<std::int32_t> high, low;
    for (char& flag : isHigh) flag = numbers.next() < 0.3;
    isHigh[0] = 1;
    isHigh[1] = 0;
    for (std::size_t p = 0; p < runs; ++p)
      (isHigh[static_cast<std::size_t>(rowsByRank[p])] ? high : low).push_back(static_cast<std::int32_t>(p));
    EXPECT_NEAR(smirnovDistance(rowsByRank, isHigh), distanceByMerge(high, low), 1e-15) << runs;
  }
  EXPECT_EQ(smirnovDistance({0, 1}, {1, 1}), -1.0);
  EXPECT_EQ(smirnovDistance({0, 1}, {0, 0}), -1.0);
}

}  // namespace
}  // namespace tarvex
