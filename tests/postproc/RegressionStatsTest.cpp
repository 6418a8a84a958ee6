#include "postproc/RegressionStats.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>

#include "base/TextReader.h"
#include "base/TextWriter.h"
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
  std::vector<double> y(50);
  for (std::size_t i = 0; i < x.size(); ++i) {
    y[i] = 2 * x[i] + 0.3 * z[i] + 0.5 * numbers.next();
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
}

// Which measures are told to be not computed, a line a variable: 1 for computed, - for not.
std::string computedOf(const Stats& stats) {
  std::string text;
  for (std::int32_t v = 0; v < stats.variableCount; ++v) {
    for (std::int32_t m = 0; m < Stats::kMeasures; ++m) text += stats.notComputedReason(v, m).empty() ? '1' : '-';
    text += '\n';
  }
  return text;
}

// PEAR, SPEA, PCC, PRCC, SRC, SRRC, Smirnov; the same of the statistics and of what a file keeps of them.
TEST(RegressionStats, SingularMatricesAreToldFromWhatIsStored) {
  TestNumbers numbers(3);
  const std::vector<double> x = numbers.column(1000), z = numbers.column(1000), other = numbers.column(1000);
  std::vector<double> mirrored, monotone, nearly, gap = other;
  for (const double value : x) {
    mirrored.push_back(-value);
    monotone.push_back(std::exp(value));
  }
  nearly = monotone;  // but for two runs: rounds to 1 at six digits
  std::vector<double> sorted = x;
  std::sort(sorted.begin(), sorted.end());
  std::swap(nearly[std::find(x.begin(), x.end(), sorted[500]) - x.begin()],
            nearly[std::find(x.begin(), x.end(), sorted[501]) - x.begin()]);
  gap[7] = std::numeric_limits<double>::quiet_NaN();
  const struct {
    const char* name;
    Columns factors, outputs;
    const char* computed;
  } rows[] = {
      {"regular", {x, z}, {other, numbers.column(1000)}, "1111111\n1111111\n"},
      {"mirrored factor", {x, mirrored, z}, {other, z}, "-------\n-------\n"},
      {"raw, in the middle", {x, z}, {other, x, gap}, "1-1-1--\n-------\n-------\n"},
      {"ranks, in the middle", {x, z}, {other, monotone, gap}, "111111-\n1-1-1--\n1-1-1--\n"},
      {"ranks of a single factor", {x}, {monotone}, "1-1-1--\n"},
      {"nearly monotone", {x}, {nearly}, "1111111\n"},
      {"a gap", {x, z}, {gap, other}, "1111111\n1111111\n"},
      {"one run", {{0.5}}, {{2.0}}, "111111-\n"},
  };
  for (const auto& row : rows) {
    Stats stats;
    ASSERT_TRUE(stats.compute(sampleOf(row.factors), tableOf(row.outputs))) << row.name;
    TextWriter out;
    stats.write(out);
    TextReader in = TextReader::fromText(out.text());
    Stats back;
    back.read(in);
    EXPECT_EQ(computedOf(stats), row.computed) << row.name;
    if (std::string(row.name) == "mirrored factor") {
      EXPECT_TRUE(valueOf(stats, 2, Stats::kSmirnov) == 1.0 && valueOf(stats, 2, Stats::kPear, 1) == 0.0);
    }
    EXPECT_EQ(computedOf(back), row.computed) << row.name;
  }
}

TEST(RegressionStats, Refusals) {
  const OutputTable outputs = tableOf({{1, 2, 3}});
  OutputTable none;
  ASSERT_TRUE(none.allocate(1));
  PrepConfiguration noRuns = sampleOf({{1}});
  noRuns.samples.clear();
  ASSERT_TRUE(noRuns.samples.allocate(1));
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
      {std::move(wide), outputs, "The sample has 1 columns, the list has 2 factors."},
      {std::move(noRuns), none, "There are no runs to analyse."},
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
