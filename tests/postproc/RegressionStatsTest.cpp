#include "postproc/RegressionStats.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>

#include "base/sortPositions.h"
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
