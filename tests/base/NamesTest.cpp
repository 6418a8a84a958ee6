#include "base/Names.h"

#include <gtest/gtest.h>

#include <string>

namespace tarvex {
namespace {

TEST(Names, RulesOfCharacters) {
  struct Row {
    const char* name;
    bool valid;
  };
  const Row rows[] = {{"x", true},        {"x1", true},           {"Xy9Z", true},    {"a<b", true},  {"a~b{}", true},
                      {"", false},        {"1x", false},          {"x_1", false},    {"x y", false}, {" x", false},
                      {"x.1", false},     {"x-1", false},         {"x:", false},     {"x\\", false}, {"x\"", false},
                      {"caf\xE9", false}, {"caf\xC3\xA9", false}, {"x[max]", false}, {"x?", false},  {"x'", false}};
  for (const Row& row : rows) EXPECT_EQ(isValidName(row.name), row.valid) << row.name;

  std::string forbidden;
  for (int c = 1; c < 128; ++c)
    if (isForbiddenInName(static_cast<char>(c))) forbidden += static_cast<char>(c);
  EXPECT_EQ(forbidden, " !\"#$%&'()*+,-./:;=?@[\\]^_|");
}

TEST(Names, FirstWordOfALine) {
  EXPECT_EQ(firstWord("  alpha beta"), "alpha");
  EXPECT_EQ(firstWord("alpha\t1"), "alpha");
  EXPECT_EQ(firstWord(" \t "), "");
  EXPECT_EQ(firstWord(""), "");
}

}  // namespace
}  // namespace tarvex
