#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <numeric>

#include "postproc/Quantiles.h"
#include "postproc/VariableTrial.h"

namespace tarvex {
namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInf = std::numeric_limits<double>::infinity();

// 1, 2, ..., n, in some other order.
OrderedRuns firstNumbers(int n) {
  std::vector<double> values(static_cast<std::size_t>(n));
  std::iota(values.rbegin(), values.rend(), 1.0);
  return OrderedRuns(std::move(values));
}

// Ranks as the tables of nonparametric intervals have them; 0 stands for none. That 59 runs are needed for an upper
// bound of the 95th percentile with 95 percent confidence, and 58 aren't enough, is S. S. Wilks's (1941).
TEST(Quantiles, intervalsAreTheTabulatedOrderStatistics) {
  const struct {
    int n;
    double share, confidence;
    double lower, upper;
  } rows[] = {{5, 0.5, 0.95, 0, 0},     {6, 0.5, 0.95, 1, 6},   {10, 0.5, 0.95, 2, 9},   {20, 0.5, 0.95, 6, 15},
              {100, 0.5, 0.95, 40, 61}, {58, 0.95, 0.9, 52, 0}, {59, 0.95, 0.9, 53, 59}, {59, 0.05, 0.9, 1, 7},
              {10, 0.0, 0.95, 0, 1},    {10, 1.0, 0.95, 10, 0}, {1, 0.5, 0.95, 0, 0}};
  for (const auto& row : rows) {
    SCOPED_TRACE(testing::Message() << row.share << " of " << row.n);
    const Estimate found = firstNumbers(row.n).quantile(row.share, row.confidence);
    EXPECT_EQ(found.lower.value_or(0.0), row.lower);
    EXPECT_EQ(found.upper.value_or(0.0), row.upper);
    EXPECT_DOUBLE_EQ(found.value, 1.0 + row.share * (row.n - 1));
  }
}

// k = 0 and k = n in closed form, the others as C. J. Clopper and E. S. Pearson's method is tabulated.
TEST(Quantiles, exceedanceIsClopperAndPearsons) {
  const struct {
    int n, above;
    double lower, upper, tolerance;
  } rows[] = {
      {10, 0, 0.0, 1.0 - std::pow(0.025, 0.1), 1e-14}, {10, 10, std::pow(0.025, 0.1), 1.0, 1e-14},
      {10, 1, 0.002528579, 0.445016117, 1e-9},         {10, 5, 0.1870860, 0.8129140, 1e-7},
      {20, 3, 0.03207094, 0.37892683, 1e-8},           {1000000, 0, 0.0, -std::expm1(std::log(0.025) / 1e6), 1e-16}};
  for (const auto& row : rows) {
    SCOPED_TRACE(testing::Message() << row.above << " of " << row.n);
    const Estimate found = firstNumbers(row.n).exceedance(row.n - row.above, 0.95);
    EXPECT_DOUBLE_EQ(found.value, static_cast<double>(row.above) / row.n);
    EXPECT_NEAR(found.lower.value(), row.lower, row.tolerance);
    EXPECT_NEAR(found.upper.value(), row.upper, row.tolerance);
  }
}

TEST(Quantiles, runsWithoutANumberAreLeftOutAndInfiniteOnesStay) {
  const OrderedRuns runs({kInf, kNaN, 1.0, -kInf, 2.0, kNaN, kInf});
  EXPECT_EQ(runs.count(), 5);
  EXPECT_EQ(runs.missing(), 2);
  EXPECT_EQ(runs.quantile(0.0, 0.95).value, -kInf);
  EXPECT_EQ(runs.quantile(0.5, 0.95).value, 2.0);
  EXPECT_EQ(runs.quantile(0.9, 0.95).value, kInf);
  EXPECT_EQ(runs.exceedance(2.0, 0.95).value, 0.4) << "above, not at";
  const OrderedRuns none({kNaN});
  EXPECT_TRUE(std::isnan(none.quantile(0.5, 0.95).value));
  EXPECT_FALSE(none.exceedance(0.0, 0.95).upper.has_value());
}

TEST(Quantiles, aRequestThatMeansNothingIsRefused) {
  EXPECT_EQ(QuantileRequest().problem(), "");
  EXPECT_EQ((QuantileRequest{{1.01}, {}, 0.95}.problem()), "A quantile lies between 0 and 100 percent: 101 %");
  EXPECT_NE((QuantileRequest{{kNaN}, {}, 0.95}.problem()), "");
  EXPECT_NE((QuantileRequest{{}, {kNaN}, 0.95}.problem()), "");
  EXPECT_NE((QuantileRequest{{}, {}, 1.0}.problem()), "");
}

TEST(VariableTrial, saysWhereATextGoesWrong) {
  const struct {
    const char* text;
    const char* reason;  // empty: it is taken
    std::size_t place;
  } rows[] = {{"Y", "", 0},
              {"Y[max] / Z[2.5]", "", 0},
              {"a = Y * 2; a + Z", "", 0},
              {"Y[max] * (1 + Z[1]", "Unexpected end of text at character 19", 18},
              {"Y + Q", "unknown name 'Q'", 4},
              {"a = 2; a * Q", "unknown name 'Q'", 11},
              {"Y[max] + Y[soon]", "a bracket holds a time or the word max", 11},
              {"X", "The model has no output \"X\".", 0},
              {"2 * foo(Y[max])", "unknown function 'foo'", 4}};
  for (const auto& row : rows) {
    const VariableTrial trial = tryVariable(row.text, {"Y", "Z"});
    EXPECT_EQ(trial.reason, row.reason) << row.text;
    EXPECT_EQ(trial.place, row.place) << row.text;
  }
}

}  // namespace
}  // namespace tarvex
