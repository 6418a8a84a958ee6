#include "factors/Equation.h"

#include <bit>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <random>

#include "base/uniformRandom.h"
#include "factors/NumberLiteral.h"
#include "factors/integerPower.h"
#include "factors/namesInText.h"
#include "support/Test.h"

namespace tarvex {
namespace {

// The printed route decides: any exponent, sizes that models have, ties, subnormals. TARVEX_LONG_TEST is the number of
// values beyond the few that a usual run takes.
TEST(NumberLiteralTest, EnteringValueIsWhatTheEvaluatorReads) {
  const char* const asked = std::getenv("TARVEX_LONG_TEST");
  const long count = asked == nullptr ? 200000 : std::atol(asked);
  std::mt19937_64 random(1);
  for (long i = 0; i < count; ++i) {
    const std::uint64_t bits = random();
    double value = std::bit_cast<double>(bits);
    if (i % 5 == 1)
      value = static_cast<double>(static_cast<std::int64_t>(bits >> 20)) / 4096.0 / static_cast<double>(1 + i % 1000);
    if (i % 5 == 2)
      value = (100000.5 + static_cast<double>(bits % 900000)) * std::pow(10.0, static_cast<int>(bits >> 59) - 18);
    if (i % 5 == 3) value = std::ldexp(static_cast<double>(bits >> 43 | 1), static_cast<int>(bits % 64) - 40);
    if (i % 5 == 4) value = std::bit_cast<double>(bits >> 12);
    if (!std::isfinite(value)) continue;
    const int precision = i % 7 == 0 ? 15 : 6;
    char text[64];
    std::snprintf(text, sizeof text, "%.*g", precision, value);
    std::size_t position = text[0] == '-' ? 1 : 0;
    double read = 0.0;
    ASSERT_TRUE(readNumberLiteral(text, position, read));
    ASSERT_EQ(std::bit_cast<std::uint64_t>(text[0] == '-' ? -read : read),
              std::bit_cast<std::uint64_t>(enteringValue(value, precision)))
        << text;
  }
  // Many at once, of all sizes or of neighbouring ones, those that are plain and those that aren't beside each other.
  std::vector<double> values(2 * 4099), entering(4099);
  for (long block = 0; block < std::max(count / 4099, 10L); ++block) {
    const int least = block % 2 == 0 ? -4 : static_cast<int>(random() % 12) - 5;
    const std::uint64_t sizes = block % 2 == 0 ? 12 : random() % 3 + 1;
    const std::size_t others = block % 4 < 2 ? 1 : 1000;
    for (std::size_t i = 0; i < values.size(); ++i) {
      const std::uint64_t bits = random();
      values[i] =
          (static_cast<double>(bits >> 11) * 0x1p-53 - 0.5) * std::pow(10.0, static_cast<int>(bits % sizes) + least);
      if (i % (6 * others) == 0) values[i] = std::bit_cast<double>(bits);
      if (i % (46 * others) == 0) values[i] = -0.0;
      if (i % (34 * others) == 0)
        values[i] = (100000.5 + static_cast<double>(bits % 900000)) * std::pow(10.0, -static_cast<int>(i % 10));
    }
    enteringValues(values.data(), 2, entering.size(), entering.data());
    for (std::size_t i = 0; i < entering.size(); ++i)
      ASSERT_EQ(std::bit_cast<std::uint64_t>(entering[i]), std::bit_cast<std::uint64_t>(enteringValue(values[2 * i])))
          << values[2 * i];
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
      {"the result's own name", "rEsUlTtOtAl + 1", {"rEsUlTtOtAl"}, {2}, true, 3},
      {"nan of a name that is called", "sin(a)", {"a", "sin"}, {0, nan}, true, 0},
      {"nan that looks like an exponent", "1e5", {"e5"}, {nan}, true, 1e5},
      {"a name that is none", "a", {"a", "b{"}, {1, 2}, false, 0},
      {"white space around a name", "a", {"\ta\n"}, {3}, true, 3},
      {"failure behind the value", "1; 1 / 0", {}, {}, false, 0},
      {"37 levels are 38 with the result", std::string(37, '(') + "1" + std::string(37, ')'), {}, {}, false, 0},
  };
  for (const auto& c : cases) {
    double value = -7.0;
    EXPECT_EQ(Equation(c.text, c.names).evaluate(c.values.data(), value), c.good) << c.what;
    EXPECT_EQ(value, c.good ? c.value : -7.0) << c.what;
  }
}

// A random text of the language, mostly one that can be evaluated.
class RandomText {
 public:
  explicit RandomText(std::uint64_t seed) : random_(seed) {}

  std::size_t below(std::size_t count) { return random_() % count; }

  std::string statements() {
    std::string text = below(4) != 0 ? expression(4) : "0";
    while (below(3) == 0) text += "; " + expression(3);
    return below(40) == 0 ? text.substr(0, below(text.size()) + 1) : text;
  }

 private:
  std::string expression(int depth) {
    static constexpr const char* kNames[] = {"a", "b", "c", "t", "rEsUlTtOtAl", "zero"};
    static constexpr const char* kLeaves[] = {"1", "0", "2.5", ".3e1", "7e-3", "2", "3", "4"};
    static constexpr const char* kSigns[] = {"+", "-", "*", "/", "**", "<", "<=", ">", ">=", "==", "!=", "&&", "||"};
    static constexpr const char* kCalls[] = {"sin",  "cos",  "tan",  "exp",  "log",  "log10", "sqrt", "fabs",
                                             "acos", "asin", "atan", "sinh", "cosh", "tanh",  "none"};
    static constexpr const char* kAssignments[] = {"=", "+=", "-=", "*=", "/="};
    if (depth == 0 || below(6) == 0) return below(3) == 0 ? kLeaves[below(8)] : kNames[below(6)];
    switch (below(10)) {
      case 0:
        return '(' + std::string(kNames[below(5)]) + kAssignments[below(5)] + expression(depth - 1) + ')';
      case 1:
        return '(' + expression(depth - 1) + " ? " + expression(depth - 1) + " : (" + expression(depth - 1) + "))";
      case 2:
        return kCalls[below(below(9) == 0 ? 15 : 14)] + ('(' + expression(depth - 1)) + ')';
      case 3:
        return (below(2) != 0 ? "atan2(" : "fmod(") + expression(depth - 1) + ", " + expression(depth - 1) + ')';
      case 4:
        return (below(2) != 0 ? "-" : "!") + expression(depth - 1);
      default:
        return '(' + expression(depth - 1) + ' ' + kSigns[below(13)] + ' ' + expression(depth - 1) + ')';
    }
  }

  std::mt19937_64 random_;
};

// What is compiled gives, row by row, bit by bit, what the evaluator gives with the assignments in front of the text.
TEST(EquationTest, CompiledIsEvaluated) {
  static constexpr double kSpecial[] = {0.0, -0.0, 1.0, -2.0, 1e-300, 1e300, INFINITY, -INFINITY, NAN};
  const std::vector<std::string> names{"c", "a", "b", "unused", "a"};
  constexpr std::size_t kRows = Equation::kBlockRows;
  RandomText random(20);
  int good = 0;
  for (int i = 0; i < 800; ++i) {
    const std::string text = random.statements();
    std::vector<std::vector<double>> columns(names.size(), std::vector<double>(kRows));
    std::vector<const double*> begins;
    for (auto& column : columns) {
      for (double& value : column)
        value = random.below(60) == 0 ? kSpecial[random.below(9)]
                                      : enteringValue(1e-3 * static_cast<double>(random.below(8000)) - 3.0);
      begins.push_back(column.data());
    }
    Equation equation(text, names);
    const std::size_t rows = i % 2 == 0 ? kRows : random.below(kRows) + 1;
    double values[kRows];
    double failed[kRows];
    equation.evaluateRows(begins.data(), rows, values, failed);
    for (std::size_t row = 0; row < rows; ++row) {
      Evaluator evaluator;
      bool done = true;
      for (std::size_t k : {0u, 1u, 2u}) {
        const bool isUsed = namesInText(text).contains(names[k]);
        done = done && !(isUsed && !std::isfinite(columns[k][row]));
        ASSERT_TRUE(evaluator.bind(names[k], columns[k][row]));
      }
      done = done && evaluator.evaluate("rEsUlTtOtAl = " + text);
      ASSERT_EQ(failed[row], done ? 0.0 : 1.0) << text;
      if (!done) continue;
      const double expected = *evaluator.find("rEsUlTtOtAl");
      ASSERT_TRUE((std::isnan(expected) && std::isnan(values[row])) ||
                  std::bit_cast<std::uint64_t>(expected) == std::bit_cast<std::uint64_t>(values[row]))
          << text << ": " << values[row] << " for " << expected;
      ++good;
    }
  }
  EXPECT_GT(good, 40000);
}

// The powers that are not asked of the library are the library's. TARVEX_LONG_TEST as above.
TEST(EquationTest, IntegerPowersAreTheLibrarys) {
  const char* const asked = std::getenv("TARVEX_LONG_TEST");
  const long blocks = (asked == nullptr ? 300000 : std::atol(asked)) / 100;
  std::mt19937_64 random(3);
  double x[100];
  double powers[100];
  for (long block = 0; block < blocks; ++block) {
    for (double& number : x) {
      const std::uint64_t bits = random();
      number = block % 2 == 0 ? std::bit_cast<double>(bits) : enteringValue(static_cast<double>(bits >> 11) * 0x1p-50);
    }
    const int exponent = static_cast<int>(2 + block / 2 % 3);
    integerPowers(exponent, x, powers, std::size(x));
    for (std::size_t i = 0; i < std::size(x); ++i) {
      if (std::isnan(x[i])) continue;
      ASSERT_EQ(std::bit_cast<std::uint64_t>(std::pow(x[i], static_cast<double>(exponent))),
                std::bit_cast<std::uint64_t>(powers[i]))
          << x[i] << " ** " << exponent;
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
