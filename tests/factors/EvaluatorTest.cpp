#include "factors/Evaluator.h"

#include <fstream>
#include <nlohmann/json.hpp>
#include <sstream>

#include "support/Test.h"

namespace tarvex {
namespace {

std::vector<std::string> fields(const std::string& line) {
  std::vector<std::string> parts;
  std::istringstream in(line);
  for (std::string part; std::getline(in, part, '\t');) parts.push_back(part);
  return parts;
}

// Equal but for the last bit of a library function.
void expectAlike(double got, double wanted, const std::string& where) {
  if (std::isnan(wanted) || std::isinf(wanted) || wanted == 0.0) {
    EXPECT_TRUE(std::isnan(wanted) ? std::isnan(got) : got == wanted) << where << ": " << got;
  } else {
    EXPECT_LE(std::fabs(got - wanted), std::nextafter(std::fabs(wanted), INFINITY) - std::fabs(wanted)) << where;
  }
}

bool isSyntaxError(const std::string& text) {
  return text.starts_with("Missing ") || text.starts_with("Unexpected ") || text == "Unexepected input";
}

TEST(EvaluatorTest, GoldenExpressions) {
  std::ifstream in(TARVEX_TEST_DATA "/golden/expressions.txt");
  int count = 0;
  for (std::string line; std::getline(in, line); ++count) {
    const std::vector<std::string> parts = fields(line);
    const std::string text = nlohmann::json::parse(parts[0]).get<std::string>();
    Evaluator evaluator;
    const bool good = evaluator.evaluate(text);
    EXPECT_EQ(good, parts[1] == "ok") << line;
    if (parts[1] == "syntax") {
      EXPECT_TRUE(isSyntaxError(evaluator.evalErrorText())) << line << ": " << evaluator.evalErrorText();
    } else {
      EXPECT_EQ(evaluator.evalErrorText(), good ? "" : parts[1]) << line;
    }
    const auto& symbols = evaluator.symbolTable();
    ASSERT_EQ(symbols.size(), parts.size() - 2) << line;
    for (std::size_t i = 0; i < symbols.size(); ++i) {
      const std::string& symbol = parts[i + 2];
      const std::size_t equals = symbol.find('=');
      EXPECT_EQ(symbols[i].name, symbol.substr(0, equals)) << line;
      expectAlike(symbols[i].value, std::strtod(symbol.c_str() + equals + 1, nullptr), line);
    }
  }
  EXPECT_EQ(count, 168);
}

TEST(EvaluatorTest, ErrorTextsAndPositions) {
  const struct {
    const char* text;
    const char* error;
    int line, column;
  } cases[] = {
      {"", "Missing expressions", 1, 1},
      {"x = 1;", "Missing expression", 1, 7},
      {"x = 3 /* open", "Unexpected end of text", 1, 14},
      {"x = 1 y", "Unexpected name", 1, 7},
      {"x = 1e", "Missing integer", 1, 7},
      {"x = 1 % 2", "Unexpected '%'", 1, 7},
      {"x = 1 \xe4", "Unexepected input", 1, 7},
      {"\tx = 1 2", "Unexpected real", 1, 15},
      {"x = 12345\t$", "Unexpected '$'", 1, 17},
      {"\na = 1;\n\tb = a / 0 + 1", "Divide by Zero", 3, 19},
  };
  for (const auto& c : cases) {
    Evaluator evaluator;
    EXPECT_FALSE(evaluator.evaluate(c.text)) << c.text;
    EXPECT_EQ(evaluator.evalErrorText(), c.error) << c.text;
    EXPECT_EQ(evaluator.evalErrorLine(), c.line) << c.text;
    EXPECT_EQ(evaluator.evalErrorColumn(), c.column) << c.text;
  }
}

std::string repeated(const std::string& part, int times) {
  std::string text;
  for (int i = 0; i < times; ++i) text += part;
  return text;
}

TEST(EvaluatorTest, Limits) {
  std::string names499;
  for (int i = 0; i < 499; ++i) names499 += (i ? " + n" : "n") + std::to_string(i);
  const std::string call199 = "atan2(" + repeated("1, ", 199);
  const struct {
    const char* what;
    std::string text;
    const char* error;
  } cases[] = {
      {"499 symbols", names499, ""},
      {"500 symbols", names499 + " + m", "Symbol Table Full"},
      {"500th symbol assigned", names499 + "; m = 1", "Symbol Table Full"},
      {"old symbols in a full table", names499 + "; n7 = n8", ""},
      {"200 arguments are counted", call199 + "1)", "Wrong Number of Arguments"},
      {"201 arguments", call199 + "1, 1)", "Argument Stack Full"},
      {"arguments are given back", repeated("atan2(1, 2) + ", 300) + "0", ""},
      {"names of 1000 characters at once", std::string(600, 'a') + " = " + std::string(400, 'b') + " = 1", ""},
      {"names of 1001 characters at once", std::string(600, 'a') + " = " + std::string(401, 'b'),
       "Character Stack Overflow"},
      {"37 questions", "0" + repeated(" ? 1", 37) + repeated(" : 2", 37), ""},
      {"38 questions", "0" + repeated(" ? 1", 38) + repeated(" : 2", 38), "Parser stack overflow"},
      {"38 calls", repeated("sin(", 38) + "1" + repeated(")", 38), "Parser stack overflow"},
      {"38th call without arguments", repeated("sin(", 37) + "f()" + repeated(")", 37), "Parser stack overflow"},
      {"a million parentheses", std::string(1000000, '('), "Parser stack overflow"},
      {"a long sum", "0" + repeated(" + 1", 100000), ""},
  };
  for (const auto& c : cases) {
    Evaluator evaluator;
    EXPECT_EQ(evaluator.evaluate(c.text), *c.error == '\0') << c.what;
    EXPECT_EQ(evaluator.evalErrorText(), c.error) << c.what;
    EXPECT_LE(evaluator.symbolTable().size(), 499u) << c.what;
  }
}

TEST(EvaluatorTest, TableLivesBetweenCalls) {
  Evaluator evaluator;
  ASSERT_TRUE(evaluator.bind("b", 4.0));
  ASSERT_TRUE(evaluator.evaluate("a = b * 2"));
  ASSERT_TRUE(evaluator.evaluate(std::string_view("b = a + 1\0 + junk", 17)));
  EXPECT_EQ(*evaluator.find("b"), 9.0);
  EXPECT_EQ(evaluator.find("c"), nullptr);
  evaluator.clearSymbols();
  EXPECT_EQ(evaluator.find("b"), nullptr);
}

}  // namespace
}  // namespace tarvex
