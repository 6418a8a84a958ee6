#include "base/Names.h"

#include "base/TextReader.h"
#include "base/TextRules.h"
#include "base/TextWriter.h"
#include "support/Test.h"

namespace tarvex {
namespace {

TEST(Names, RulesOfCharacters) {
  const struct {
    const char* name;
    bool valid;
  } rows[] = {{"x", true},        {"x1", true},           {"Xy9Z", true},    {"a<b", true},  {"a~b{}", true},
              {"", false},        {"1x", false},          {"x_1", false},    {"x y", false}, {" x", false},
              {"x.1", false},     {"x-1", false},         {"x:", false},     {"x\\", false}, {"x\"", false},
              {"caf\xE9", false}, {"caf\xC3\xA9", false}, {"x[max]", false}, {"x?", false},  {"x'", false},
              {"x\n", false},     {"x\ty", false}};
  for (const auto& row : rows) EXPECT_EQ(isValidName(row.name), row.valid) << row.name;

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

// What a rule takes comes back from a file as it is; what it refuses is told in the same words when it is set and when
// it is written, and no file appears.
TEST(TextRules, acceptedTextsComeBackAndOthersAreRefused) {
  const struct {
    std::string text;
    const char *lineProblem, *nameProblem;
  } rows[] = {
      {"five5", "", ""},
      {"", "", "the name is empty"},
      {" \xC3\xA9 ", "", "the name ' \xC3\xA9 ' is no name: letters and digits only, a letter first"},
      {"toolong", "the note has 7 characters, more than 5", "the name 'toolong' has 7 characters, more than 5"},
      {"a\nb", "the note holds a line end", "the name 'a b' is no name: letters and digits only, a letter first"},
      {"a\r", "the note holds a line end", "the name 'a ' is no name: letters and digits only, a letter first"},
  };
  const auto check = [](const auto& rule, const std::string& text, const std::string& problem) {
    EXPECT_EQ(rule.problem(text), problem) << text;
    TextWriter out;
    rule.write(out, text);
    ASSERT_EQ(out.ok(), problem.empty()) << text;
    if (!out.ok()) {
      EXPECT_EQ(withProblem("refused", out), "refused\n" + problem);
      return;
    }
    TextReader in = TextReader::fromText(out.text());
    std::string back;
    EXPECT_TRUE(rule.read(in, back) && in.atEnd());
    EXPECT_EQ(back, text);
  };
  for (const auto& row : rows) {
    check(LineRule{"the note", 5}, row.text, row.lineProblem);
    check(NameRule{"the name", 5}, row.text, row.nameProblem);
  }
  TextReader in = TextReader::fromText("1st\n");
  std::string name = "old";
  EXPECT_FALSE((NameRule{"the name", 5}.read(in, name)));
  EXPECT_EQ(in.problem(), "line 1: the name '1st' is no name: letters and digits only, a letter first");
  EXPECT_EQ(name, "old");
}

}  // namespace
}  // namespace tarvex
