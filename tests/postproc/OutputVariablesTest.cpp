#include "postproc/OutputVariables.h"

#include "model/ModelConfiguration.h"
#include "postproc/Quantiles.h"
#include "postproc/TimeBands.h"
#include "support/Test.h"

namespace tarvex {
namespace {

// Two outputs, the name of one the beginning of the other's, on different grids; dose2 is ten times dose.
constexpr const char* kTimed = R"(2
dose
dose2
time = yes
2
RUN 0
3
0 1 10
1 4 40
2.0000004 2 20
RUN 1
2
0.5 7 70
1.5 5 nan
)";

constexpr const char* kPlain = R"(3
y
log
z
time = no
3
1 2 0
0.1 5 3
-2 6 inf
)";

class OutputVariablesTest : public test::InDirectory {
 protected:
  void read(const std::string& text) {
    test::writeFile(directory_.path() + "/model.out", text);
    model_.choice.outputFile = directory_.path() + "/model.out";
    std::string problem;
    ASSERT_TRUE(model_.readModelOutput([](const std::string&, const std::string&) {}, problem)) << problem;
  }

  std::vector<double> valuesOf(const std::string& text) {
    EXPECT_TRUE(variables_.set({text}, model_.results.outputNames())) << text << ": " << variables_.errorText();
    OutputTable table;
    EXPECT_TRUE(variables_.build(model_, table)) << variables_.errorText();
    std::vector<double> values;
    EXPECT_TRUE(table.getColumn(0, values));
    return values;
  }

  ModelConfiguration model_;
  OutputVariables variables_;
};

TEST_F(OutputVariablesTest, ValuesOverTime) {
  struct Row {
    const char* text;
    std::vector<double> values;
  };
  read(kTimed);
  const Row rows[] = {
      {"dose", {1.0, 7.0}},                               // first time
      {"dose[max]", {4.0, 7.0}},                          // each over its own grid
      {"dose2[max]", {40.0, 70.0}},                       // passes over the nan
      {"dose[1]", {4.0, 6.0}},                            // stored; between
      {"dose[2]", {2.0, 5.0}},                            // prints alike; behind the last
      {"dose[-3]", {1.0, 7.0}},                           // before the first
      {"dose[0.25]", {1.75, 7.0}},                        // straight line
      {"dose2 - dose", {9.0, 63.0}},                      // longest name first
      {"dose2[max]/dose[max]", {10.0, 10.0}},             // brackets follow their name
      {"1/(dose[max] - dose[0]) + 2", {1.0 / 3 + 2, 0}},  // fails where the divisor vanishes
      {"twice = 2 * dose; twice + 1", {2.0, 14.0}},       // the first expression is the value
      {"var0 = 3", {3.0, 3.0}},                           // a name of its own, whatever references are called
      {"sin(dose) // dose[", {std::sin(1.0), std::sin(7.0)}},
  };
  for (const Row& row : rows) {
    const std::vector<double> values = valuesOf(row.text);
    ASSERT_EQ(values.size(), 2u);
    EXPECT_NEAR(values[0], row.values[0], 1e-12) << row.text;
    EXPECT_NEAR(values[1], row.values[1], 1e-12) << row.text;
  }
  EXPECT_EQ(OutputVariables::defaultVariables(model_.results.outputNames(), model_.results.hasTimeAxis()),
            (std::vector<std::string>{"dose[max]", "dose2[max]"}));
}

TEST_F(OutputVariablesTest, BandsAreOfTheVariablesAtEachTime) {
  read(kTimed);
  const std::vector<std::string>& names = model_.results.outputNames();
  TimeBands bands;
  std::string message;
  ASSERT_TRUE(computeTimeBands(model_, names, "dose2", bands, message)) << message;
  EXPECT_EQ(bands.times, (std::vector<double>{0.0, 0.5, 1.0, 1.5, 2.0000004}));
  EXPECT_EQ(bands.missing, 1);
  for (std::size_t i = 0; i < bands.times.size(); ++i) {
    const std::vector<double> values = valuesOf(timeName("dose2", bands.times[i]));
    const OrderedRuns ordered(values);
    const double mean = (values[0] + values[1]) / 2.0;
    EXPECT_TRUE(bands.means[i] == mean || (std::isnan(mean) && std::isnan(bands.means[i]))) << bands.times[i];
    for (std::size_t share = 0; share < kBandShares.size(); ++share)
      EXPECT_EQ(bands.quantiles[share][i], ordered.quantile(kBandShares[share], 0.95).value) << bands.times[i];
  }
  const auto refusal = [&](const char* output, const Progress& progress) {
    EXPECT_FALSE(computeTimeBands(model_, names, output, bands, message, progress));
    EXPECT_EQ(bands.times.size(), 5u) << "as it was";
    return message;
  };
  EXPECT_EQ(refusal("dose2[1]", {}), "There is no output dose2[1].");
  EXPECT_EQ(refusal("dose", Progress([](double) { return false; })), "The computation was stopped.");
  read(kPlain);
  EXPECT_EQ(refusal("y", {}), "The results have no time axis.");
}

TEST_F(OutputVariablesTest, FailedExpressionsAreZeroAndCounted) {
  read(kPlain);
  EXPECT_EQ(valuesOf("y / z"), (std::vector<double>{0.0, 0.1 / 3.0, 0.0}));  // division by zero; inf can't enter
  EXPECT_EQ(variables_.failures(),
            "The expression y / z could not be evaluated in 2 of 3 runs and has the value 0 there.");
  EXPECT_TRUE(std::isinf(valuesOf("z")[2]));  // a plain output keeps it
  EXPECT_EQ(variables_.failures(), "");
  EXPECT_TRUE(std::isnan(valuesOf("log(y)")[2]));  // not a number is a result; the function, not the output
  EXPECT_EQ(valuesOf("log[max] + log"), (std::vector<double>{4.0, 10.0, 12.0}));    // without a time axis: its value
  EXPECT_EQ(valuesOf("log10(0 * y + 100)"), (std::vector<double>{2.0, 2.0, 2.0}));  // begins as an output does
}

TEST_F(OutputVariablesTest, FifteenDigitsEnterAnExpression) {
  read("1\ny\ntime = no\n1\n1.2345678901234567\n");
  EXPECT_NEAR(valuesOf("(y - 1.23456789) * 1000000000")[0], 0.12346, 1e-6);  // not 0.1234567
}

TEST_F(OutputVariablesTest, Refusals) {
  read(kTimed);
  const std::string failed = "   Expression can't be evaluated.";
  const std::vector<std::pair<std::string, std::string>> rows = {
      {"rate", "The model has no output \"rate\"."},
      {"dose[noon]", "\"dose[noon]\" names neither the maximum nor a time of the output dose."},
      {"", failed},
      {"dose[1", failed},
      {"(dose + 1", failed},
      {"dose + dose2[noon]", failed},
      {"dose + rate[1]", failed},
      {"dose [1]", failed},
      {"1 / (dose - dose)", failed},
      {"pow(dose, 2)", failed},
      {"dose\n", "A variable is one line of at most 999 characters."},
      {std::string(1000, '('), "A variable is one line of at most 999 characters."},
  };
  ASSERT_TRUE(variables_.set({"dose"}, model_.results.outputNames()));
  for (const auto& [text, reason] : rows) {
    EXPECT_FALSE(variables_.set({"dose2", text}, model_.results.outputNames())) << text;
    EXPECT_EQ(variables_.errorText(), reason) << text;
    EXPECT_EQ(variables_.texts(), std::vector<std::string>{"dose"});
  }
}

TEST(OutputVariables, TimeRangeEndsBelowItsUpperBound) {
  using Times = std::vector<double>;
  EXPECT_EQ(OutputVariables::timeRange(0.0, 1.0, 0.25), (Times{0.0, 0.25, 0.5, 0.75}));
  EXPECT_EQ(OutputVariables::timeRange(2.0, 2.5, 1.0), Times{2.0});
  const double inf = HUGE_VAL;
  for (const auto& [lower, upper, step] : std::vector<std::array<double, 3>>{
           {0, 1, 0}, {0, 1, -1}, {1, 1, 1}, {2, 1, 1}, {0, 1, 1e-9}, {0, inf, 1}, {0, 1, NAN}, {-1e308, 1e308, 1}})
    EXPECT_TRUE(OutputVariables::timeRange(lower, upper, step).empty()) << lower << ' ' << upper << ' ' << step;
}

}  // namespace
}  // namespace tarvex
