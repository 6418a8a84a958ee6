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

// The assignments that bindings stand for, as text.
std::string prologue(const std::vector<std::string>& names, const std::vector<double>& values, const char* format) {
  std::string program;
  for (std::size_t i = 0; i < names.size(); ++i) {
    char text[64];
    std::snprintf(text, sizeof text, format, values[i]);
    program = names[i] + " = " + text + ";\n" + program;
  }
  return program;
}

TEST(NumberLiteralTest, EnteringValueIsWhatTheEvaluatorReads) {
  for (const int precision : {6, 15}) {
    const std::string format = "%." + std::to_string(precision) + "g";
    std::uint64_t bits = 88172645463325252u;
    for (int i = 0; i < 200000; ++i) {
      bits ^= bits << 13, bits ^= bits >> 7, bits ^= bits << 17;
      // Half of them of any size, half of the sizes that models have.
      double value = std::bit_cast<double>(bits);
      if (i % 2) value = static_cast<double>(static_cast<std::int64_t>(bits >> 20)) / 4096.0 / (1 + i % 1000);
      if (!std::isfinite(value)) continue;
      Evaluator evaluator;
      ASSERT_TRUE(evaluator.evaluate(prologue({"x"}, {value}, format.c_str()) + "0"));
      ASSERT_EQ(std::bit_cast<std::uint64_t>(*evaluator.find("x")),
                std::bit_cast<std::uint64_t>(enteringValue(value, precision)))
          << value;
    }
  }
}

TEST(NumberLiteralTest, DigitByDigit) {
  EXPECT_EQ(enteringValue(0.3), (0.0 + 3) * 0.1);
  EXPECT_EQ(enteringValue(1234567.8), (1 + (2 + (3 + (4 + (5 + 7 * 0.1) * 0.1) * 0.1) * 0.1) * 0.1) * 1e6);
  EXPECT_EQ(enteringValue(1e-5), 1 * std::pow(10.0, -5.0));
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
      {"product", "a * b", {"a", "b"}, {1.5, 2}, true, 3},
      {"unbound names are 0", "a + zero", {"a"}, {2}, true, 2},
      {"first of equal names holds", "a", {"a", "a"}, {1, 2}, true, 1},
      {"only the first expression counts", "t = a; t * 2", {"a"}, {4}, true, 4},
      {"the text may set a bound name", "(a = 5) + a", {"a"}, {1}, true, 10},
      {"the result's own name", "rEsUlTtOtAl + 1", {"rEsUlTtOtAl"}, {2}, true, 3},
      {"used nan", "a + b", {"a", "b"}, {1, nan}, false, 0},
      {"used infinity", "b", {"a", "b"}, {1, INFINITY}, false, 0},
      {"unused nan", "a + 1", {"a", "b"}, {1, nan}, true, 2},
      {"nan in a comment", "a /* b */ + 1 // b", {"a", "b"}, {1, nan}, true, 2},
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
  std::vector<std::string> names;
  for (int i = 0; i < 497; ++i) names.push_back("n" + std::to_string(i));
  const std::vector<double> values(600, 1.0);
  double value = 0.0;
  EXPECT_TRUE(Equation("n1 + other", names).evaluate(values.data(), value));
  names.push_back("n497");
  EXPECT_TRUE(Equation("n1", names).evaluate(values.data(), value));
  EXPECT_FALSE(Equation("n1 + other", names).evaluate(values.data(), value));
  EXPECT_EQ(tryExpression("n1 + n2", names), Trial::kGood);
  names.push_back("n498");
  EXPECT_FALSE(Equation("n1", names).evaluate(values.data(), value));
  EXPECT_EQ(tryExpression("n1 + n2", names), Trial::kGood);
  names.push_back("n499");
  EXPECT_EQ(tryExpression("n1 + n2", names), Trial::kFailed);
}

TEST(EquationTest, TrialDrawsForEveryName) {
  restoreInitialTrialState();
  trialRandom();
  trialRandom();
  trialRandom();
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
