#include "factors/Equation.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <cstdio>

#include "base/uniformRandom.h"
#include "factors/NumberLiteral.h"

namespace tarvex {
namespace {

TEST(NumberLiteralTest, EnteringValueIsWhatTheEvaluatorReads) {
  for (const int precision : {6, 15}) {
    std::uint64_t bits = 88172645463325252u;
    for (int i = 0; i < 200000; ++i) {
      bits ^= bits << 13, bits ^= bits >> 7, bits ^= bits << 17;
      // Half of them of any size, half of the sizes that models have.
      double value = std::bit_cast<double>(bits);
      if (i % 2) value = static_cast<double>(static_cast<std::int64_t>(bits >> 20)) / 4096.0 / (1 + i % 1000);
      if (!std::isfinite(value)) continue;
      char text[64];
      std::snprintf(text, sizeof text, "x = %.*g", precision, value);
      Evaluator evaluator;
      ASSERT_TRUE(evaluator.evaluate(text));
      ASSERT_EQ(std::bit_cast<std::uint64_t>(*evaluator.find("x")),
                std::bit_cast<std::uint64_t>(enteringValue(value, precision)))
          << value;
    }
  }
  EXPECT_TRUE(std::signbit(enteringValue(-0.0)));
  EXPECT_TRUE(std::isnan(enteringValue(NAN)));
  EXPECT_EQ(enteringValue(-INFINITY), -INFINITY);
}

TEST(EquationTest, ValueUnderBindings) {
  const double nan = std::nan("");
  const struct {
    const char* what;
    std::string text;
    std::vector<std::string> names;
    std::vector<double> values;
    bool good;
    double value;
  } cases[] = {
      {"unbound names are 0", "a + zero", {"a"}, {2}, true, 2},
      {"first of equal names holds", "a", {"a", "a"}, {1, 2}, true, 1},
      {"the text may set a bound name", "(a = 5) + a", {"a"}, {1}, true, 10},
      {"the result's own name", "rEsUlTtOtAl + 1", {"rEsUlTtOtAl"}, {2}, true, 3},
      {"used nan", "a + b", {"a", "b"}, {1, nan}, false, 0},
      {"nan of a name that is called", "sin(a)", {"a", "sin"}, {0, nan}, true, 0},
      {"nan that looks like an exponent", "1e5", {"e5"}, {nan}, true, 1e5},
      {"a name that is none", "a", {"a", "b{"}, {1, 2}, false, 0},
      {"white space around a name", "a", {"\ta\n"}, {3}, true, 3},
      {"failure behind the value", "1; 1 / 0", {}, {}, false, 0},
      {"37 levels are 38 with the result", std::string(37, '(') + "1" + std::string(37, ')'), {}, {}, false, 0},
  };
  for (const auto& c : cases) {
    Equation equation(c.text, c.names);
    for (int row = 0; row < 2; ++row) {
      double value = -7.0;
      EXPECT_EQ(equation.evaluate(c.values.data(), value), c.good) << c.what;
      EXPECT_EQ(value, c.good ? c.value : -7.0) << c.what;
    }
  }
}

TEST(EquationTest, SymbolTableCountsEveryBinding) {
  const struct {
    std::size_t names;
    bool extra, bare;  // whether an equation with one more name than those works, and one without
    Trial trial;
  } cases[] = {{497, true, true, Trial::kGood},
               {498, false, true, Trial::kGood},
               {499, false, false, Trial::kGood},
               {500, false, false, Trial::kFailed}};
  for (const auto& c : cases) {
    std::vector<std::string> names;
    while (names.size() < c.names) names.push_back("n" + std::to_string(names.size()));
    const std::vector<double> values(c.names, 1.0);
    double value = 0.0;
    EXPECT_EQ(Equation("n1 + other", names).evaluate(values.data(), value), c.extra) << c.names;
    EXPECT_EQ(Equation("n1", names).evaluate(values.data(), value), c.bare) << c.names;
    EXPECT_EQ(tryExpression("n1 + n2", names), c.trial) << c.names;
  }
}

TEST(EquationTest, TrialDrawsForEveryName) {
  restoreInitialTrialState();
  for (int i = 0; i < 3; ++i) trialRandom();
  const double fourth = trialRandom();
  restoreInitialTrialState();
  EXPECT_EQ(tryExpression("a / b", {"a", "b", "c"}), Trial::kGood);
  EXPECT_EQ(trialRandom(), fourth);
  EXPECT_EQ(tryExpression("a + later", {"a"}, {"later"}), Trial::kGood);
  EXPECT_EQ(tryExpression("a + t", {"a"}, {"later"}), Trial::kUnknownName);
  EXPECT_EQ(tryExpression("t = a", {"a"}), Trial::kUnknownName);
  EXPECT_EQ(tryExpression("a +", {"a"}), Trial::kFailed);
}

}  // namespace
}  // namespace tarvex
