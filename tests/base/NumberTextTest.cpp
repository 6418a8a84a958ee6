#include "base/NumberText.h"

#include <bit>
#include <charconv>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <random>

#include "support/Test.h"

namespace tarvex {
namespace {

std::string printed(double value, int precision) {
  char text[64];
  const int size = std::snprintf(text, sizeof text, "%.*g", precision, value);
  return std::string(text, static_cast<std::size_t>(size));
}

// Bit patterns of all doubles, and numbers of everyday size, a few of them at the edge between two texts.
std::vector<double> manyNumbers(std::size_t count, std::uint64_t seed = 20240607) {
  std::mt19937_64 bits(seed);
  std::vector<double> values;
  for (const char* edge : {"0", "-0", "5e-324", "-2.5e-310", "2.2250738585072014e-308", "1.7976931348623157e308", "1e6",
                           "999999.5", "999999.4999999999", "1e-5", "0.0001", "123456.5", "9.9999949999e-17"})
    values.push_back(std::strtod(edge, nullptr));
  while (values.size() < count) {
    const double any = std::bit_cast<double>(bits());
    if (std::isfinite(any)) values.push_back(any);
    values.push_back(static_cast<double>(static_cast<std::int64_t>(bits()) >> 20) * 1e-9);
    // Digits that end in 5: a half in the one before, the sixth or the tenth.
    const std::uint64_t digits = bits() % 2 == 0 ? bits() % 900000 + 100000 : bits() % 9000000000 + 1000000000;
    const double half = (static_cast<double>(digits) * 10 + 5) * std::pow(10.0, static_cast<int>(bits() % 41) - 27);
    values.push_back(half);
    values.push_back(std::nextafter(half, 0));
  }
  return values;
}

std::uint64_t bitsOf(double value) {
  return std::bit_cast<std::uint64_t>(value);
}

// TARVEX_MILLIONS=100 in the environment makes it so many millions of doubles.
TEST(NumberText, WritesEveryDoubleAsPrintfDoes) {
  const char* const asked = std::getenv("TARVEX_MILLIONS");
  const std::uint64_t millions = asked == nullptr ? 1 : std::strtoull(asked, nullptr, 10);
  for (std::uint64_t million = 1; million <= millions; ++million)
    for (const double value : manyNumbers(1000000, million)) {
      ASSERT_EQ(numberText(value), printed(value, 6));
      ASSERT_EQ(numberText(value, 10), printed(value, 10));
    }
  for (const double value : manyNumbers(20000)) {
    for (const int precision : {0, 1, 2, 15, 16, 17})
      ASSERT_EQ(numberText(value, precision), printed(value, precision));
    double back = 0;
    const std::string text = numberText(value, 17);
    ASSERT_EQ(parseNumber(text, back), text.size());
    ASSERT_EQ(bitsOf(back), bitsOf(value));
  }
}

// As from_chars reads it, with room behind the text and without.
TEST(NumberText, ReadsEveryTextAsTheLibraryDoes) {
  std::mt19937_64 bits(4711);
  for (int i = 0; i < 300000; ++i) {
    std::string text;
    for (std::size_t left = bits() % 30; left > 0; --left) text += "0123456789.0123456789.e-"[bits() % 24];
    double expected = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), expected);
    if (error == std::errc::result_out_of_range) continue;
    const std::size_t taken = error == std::errc() ? static_cast<std::size_t>(end - text.data()) : 0;
    for (const std::string& shown : {text, text + std::string(40, "\t_"[bits() % 2])}) {
      double value = 0;
      ASSERT_EQ(parseNumber(shown, value), taken) << shown;
      ASSERT_EQ(bitsOf(value), bitsOf(expected)) << shown;
    }
  }
}

TEST(NumberText, NonFiniteNumbers) {
  EXPECT_EQ(numberText(-kNan), "nan");
  EXPECT_EQ(numberText(-kInf), "-inf");
}

struct Text {
  const char* text;
  std::size_t taken;  // 0: no number
  double value;
};

TEST(NumberText, ParsesTheNumberAtTheStart) {
  const std::string tinyByItsZeros = "0." + std::string(400, '0') + "1e50";
  const std::string largeByItsDigits = std::string(400, '1') + "e-50";
  const Text texts[] = {
      {tinyByItsZeros.c_str(), tinyByItsZeros.size(), 0},
      {largeByItsDigits.c_str(), 0, 0},
      {"+1.5", 4, 1.5},
      {"-.5e1x", 5, -5},
      {"12,5", 2, 12},
      {"1e999", 0, 0},
      {"1e99999999999999999999", 0, 0},
      {"1e-999", 6, 0},
      {"1e-99999999999999999999", 23, 0},
      {"0e999", 5, 0},
      {"4e-324", 6, 5e-324},
      {"0.0000000001e400", 0, 0},
      {"0.0000000001e-320", 17, 0},
      {"inf", 3, kInf},
      {"+Infinity.", 9, kInf},
      {"nan", 3, kNan},
      {"-NaN(12)", 4, kNan},
      {".e1", 0, 0},
      {" 1", 0, 0},
  };
  for (const Text& row : texts) {
    SCOPED_TRACE(row.text);
    double value = -77;
    EXPECT_EQ(parseNumber(row.text, value), row.taken);
    if (row.taken == 0)
      EXPECT_EQ(value, -77);
    else if (std::isnan(row.value))
      EXPECT_TRUE(std::isnan(value) && !std::signbit(value));
    else
      EXPECT_EQ(value, row.value);
  }
  double value = 0;
  ASSERT_GT(parseNumber("-0", value), 0u);
  EXPECT_TRUE(std::signbit(value));
  float single = 0;
  EXPECT_EQ(parseNumber("1e39", single), 0u);
  EXPECT_GT(parseNumber("16777217.0000001", single), 0u);
  EXPECT_EQ(single, 16777218.0F);  // rounded once, not by way of a double
}

TEST(NumberText, IsNumberWantsTheWholeText) {
  double value = 0;
  EXPECT_TRUE(isNumber(" \t-2.5\r", value));
  EXPECT_EQ(value, -2.5);
  for (const char* text : {"", "  ", "1 2", "1x", "1e", "0x1", "nan(1)"}) EXPECT_FALSE(isNumber(text, value)) << text;
}

}  // namespace
}  // namespace tarvex
