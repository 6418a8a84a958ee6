#include "base/TextReader.h"
#include "base/TextWriter.h"
#include "postproc/CriticalValues.h"
#include "postproc/UaStats.h"
#include "postproc/ValueTables.h"
#include "support/Test.h"

namespace tarvex {
namespace {

UaStats statsOf(const Columns& columns) {
  UaStats stats;
  std::vector<std::string> names;
  for (std::size_t i = 0; i < columns.size(); ++i) names.push_back("y" + std::to_string(i + 1));
  EXPECT_TRUE(stats.compute(names, tableOf(columns)));
  return stats;
}

double countAt(const UaStats& stats, int bin, bool logarithmic = false) {
  return (*(logarithmic ? stats.logHistogram(0) : stats.linearHistogram(0)))[static_cast<std::size_t>(bin)].count;
}

double countAll(const Histogram& table) {
  double total = 0.0;
  for (const HistogramEntry& entry : table) total += entry.count;
  return total;
}

TEST(UaStats, OddColumns) {
  const struct {
    const char* name;
    std::vector<double> values;
    double low, high, std, runsInBins, runsInFirstBin;
    bool momentsAreNumbers, logTable;
  } rows[] = {
      {"one run", {2.5}, 2.5, 2.5, 0.0, 1, 1, false, true},
      {"constant", {0.1, 0.1, 0.1, 0.1, 0.1, 0.1}, 0.1, 0.1, 0.0, 6, 6, false, true},
      {"a run missing", {1, kNan, 2}, 1, 2, kNan, 2, 1, false, true},
      {"constant but for a gap", {3, 3, kNan}, 3, 3, kNan, 2, 2, false, true},
      {"all missing", {kNan, kNan}, kNan, kNan, kNan, 0, 0, false, true},
      {"minimum 0", {0, 1, 3}, 0, 3, std::sqrt(14.0 / 9.0), 3, 1, true, false},
      {"negative", {-2, -1, 1}, -2, 1, std::sqrt(14.0 / 9.0), 3, 1, true, false},
      {"an infinity", {1, 2, kInf}, 1, kInf, kNan, 2, 2, false, true},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    const UaStats stats = statsOf({row.values});
    EXPECT_TRUE(stats.minimum(0) == row.low || std::isnan(row.low)) << stats.minimum(0);
    EXPECT_TRUE(stats.maximum(0) == row.high || std::isnan(row.high)) << stats.maximum(0);
    EXPECT_EQ(std::isnan(stats.minimum(0)) && std::isnan(stats.maximum(0)), std::isnan(row.low));
    if (std::isnan(row.std))
      EXPECT_TRUE(std::isnan(stats.std(0)));
    else
      EXPECT_DOUBLE_EQ(stats.std(0), row.std);
    EXPECT_EQ(std::isfinite(stats.skewness(0)) && std::isfinite(stats.kurtosis(0)), row.momentsAreNumbers);
    EXPECT_EQ(countAll(*stats.linearHistogram(0)), row.runsInBins);
    EXPECT_EQ(countAt(stats, 0), row.runsInFirstBin);
    EXPECT_EQ(countAll(*stats.logHistogram(0)), row.logTable ? row.runsInBins : 0.0);
  }
}

TEST(UaStats, LevelsOfTheBounds) {
  UaStats stats = statsOf({{1, 2, 3, 4}});
  EXPECT_FALSE(stats.setTchebyConfidence(1.0));
  EXPECT_FALSE(stats.setKolmogorovConfidence(0.0));
  EXPECT_EQ(stats.tchebyConfidence, 0.75);
  EXPECT_TRUE(stats.setTchebyConfidence(0.95));
  EXPECT_DOUBLE_EQ(stats.tTestBound(0), 2.132 * std::sqrt(1.25) / 2.0) << "four degrees of freedom for four runs";
  EXPECT_DOUBLE_EQ(stats.tchebyBound(0), std::sqrt(1.0 / (1.0 - 0.95)) * std::sqrt(1.25) / 2.0);
  EXPECT_TRUE(stats.setTchebyConfidence(0.5));
  EXPECT_EQ(stats.tTestBound(0), -1.0);
}

TEST(UaStats, IntervalProbability) {
  std::vector<double> values(101);  // one run a bin, edges at the whole numbers
  for (std::size_t i = 0; i < values.size(); ++i) values[i] = static_cast<double>(i);
  const UaStats linear = statsOf({values});
  // Logarithms 0, 0.105, 0.505 and 1: one run in each of the bins 0, 10, 50, 100.
  const UaStats logs = statsOf({{1.0, std::exp(0.105), std::exp(0.505), std::exp(1.0)}});
  const struct {
    const char* name;
    const UaStats& stats;
    int scale;
    double a, b, runs;
  } rows[] = {
      {"all runs", linear, 0, -1, 200, 101},
      {"above the maximum", linear, 0, 100, 200, 0},
      {"below the minimum", linear, 0, -5, 0, 0},
      {"not a number", linear, 0, kNan, 50, 0},
      {"within one bin", linear, 0, 10.25, 10.75, 0.5},
      {"from the minimum into the first bin", linear, 0, 0, 0.5, 1},
      {"from bin to bin, the last one twice", linear, 0, 10.5, 20.25, 10.75},
      {"past the last edge", linear, 0, 98.5, 300, 2.5},
      {"logarithmic, from edge to edge", logs, 1, 0.1, 0.11, 2},
      {"logarithmic, all", logs, 1, -1, 3, 4},
  };
  for (const auto& row : rows) {
    const double runs = row.stats.sampleSize();
    EXPECT_NEAR(row.stats.intervalProbability(row.a, row.b, 0, row.scale), row.runs / runs, 1e-12) << row.name;
  }
  EXPECT_EQ(statsOf({{-1, 0, 1}}).intervalProbability(-1, 1, 0, 1), 0.0) << "no logarithms";
  EXPECT_EQ(linear.intervalProbability(0, 1, 7, 0), 1e308);
}

TEST(UaStats, EmptyArraysAreEmptyLines) {
  std::string text = "1\n4\n0.9\t0.75\ny\n\n3\t\n\n\n\n\n";
  for (int table = 0; table < 2; ++table) {
    for (int i = 0; i < kHistogramEntries; ++i) text += "1\t2\t";
    text += '\n';
  }
  TextReader in = TextReader::fromText(text);
  UaStats stats;
  stats.read(in);
  ASSERT_TRUE(in.ok());
  EXPECT_EQ(stats.minimum(0), 1e308);
  EXPECT_EQ(stats.maximum(0), 3.0);
  EXPECT_EQ(stats.tchebyBound(0), 1e308);
  EXPECT_EQ(stats.intervalProbability(0, 1, 0, 0), 1e308);
  TextWriter out;
  stats.write(out);
  EXPECT_EQ(out.text(), text);
}

TEST(CriticalValues, StudentQuantile) {
  const struct {
    const char* name;
    std::int32_t freedom;
    double confidence, expected;
  } rows[] = {
      {"first cell", 1, 0.75, 1.000},
      {"last column", 1, 0.9995, 636.619},
      {"the cell that stands as printed", 12, 0.975, 2.189},
      {"last row with its own freedom", 30, 0.95, 1.697},
      {"mean of 30 and 40", 35, 0.95, (1.697 + 1.684) / 2},
      {"end of the first mean", 40, 0.95, (1.697 + 1.684) / 2},
      {"mean of 40 and 60", 41, 0.99, (2.423 + 2.390) / 2},
      {"mean of 60 and 120", 120, 0.9, (1.296 + 1.289) / 2},
      {"beyond the table", 300, 0.75, 0.674},
      {"single precision level", 10, 0.9995f, 4.587},
      {"lower limit of a window", 10, 0.74, -1.0},
      {"upper limit of a window", 10, 0.98, -1.0},
      {"no window", 10, 0.5, -1.0},
      {"no freedom", 0, 0.95, -1.0},
      {"negative freedom", -7, 0.95, -1.0},
      {"no level", 10, std::nan(""), -1.0},
  };
  for (const auto& row : rows) EXPECT_DOUBLE_EQ(studentQuantile(row.freedom, row.confidence), row.expected) << row.name;
}

// A slip in the printed values would break their order; the deviating cell at 12 keeps it.
TEST(CriticalValues, StudentTableFallsWithFreedomAndRisesWithConfidence) {
  const double levels[] = {0.75, 0.9, 0.95, 0.975, 0.99, 0.995, 0.9995};
  for (std::int32_t freedom = 1; freedom <= 121; ++freedom)
    for (int i = 0; i < 7; ++i) {
      EXPECT_GE(studentQuantile(freedom, levels[i]), studentQuantile(freedom + 1, levels[i])) << freedom;
      if (i == 0) continue;
      EXPECT_GT(studentQuantile(freedom, levels[i]), studentQuantile(freedom, levels[i - 1])) << freedom;
    }
}

TEST(CriticalValues, KolmogorovHalfWidth) {
  EXPECT_DOUBLE_EQ(kolmogorovHalfWidth(100, 0.8), 0.107);
  EXPECT_DOUBLE_EQ(kolmogorovHalfWidth(100, 0.99), 0.163);
  EXPECT_EQ(kolmogorovHalfWidth(100, 0.985), -1.0);  // the limit between two windows
  EXPECT_EQ(kolmogorovHalfWidth(100, 0.75), -1.0);
}

}  // namespace
}  // namespace tarvex
