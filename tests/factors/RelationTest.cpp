#include "factors/Relation.h"

#include "base/TextReader.h"
#include "support/Test.h"

namespace tarvex {
namespace {

using test::textOf;
using Names = std::vector<std::string>;

TEST(RelationTest, RefusedExpressionsKeepTheOldOne) {
  const std::string tooLong(255, 'x');
  for (const std::string& text : Names{"a +", "", "a / b", "pow(a, 2)", "a;", "1 / (a - a)", "a\n+ b", tooLong}) {
    Relation relation;
    ASSERT_TRUE(relation.setExpression("k * 2"));
    EXPECT_FALSE(relation.setExpression(text)) << text;
    EXPECT_NE(relation.errorText, "No errors");
    EXPECT_FALSE(relation.renameFactor("k", "1 +" + text)) << text;
    EXPECT_EQ(relation.expression(), "k * 2");
    EXPECT_EQ(relation.factorNames(), Names{"k"});
  }
}

TEST(RelationTest, ValueOfARun) {
  const struct {
    const char *what, *text;
    std::vector<double> row;  // of a, b, c
    bool good;
    double value;
  } cases[] = {
      {"six digits", "c", {0, 0, 1234567.0}, true, 1.23457e6},
      {"negative and small", "c", {0, 0, -1.23456789e-5}, true, -1.23457e-5},
      {"a name that is nowhere", "a + nobody", {4, 0, 0}, true, 4},
      {"division in this run only", "1 / (a - 2 + (b == 0))", {2, 1, 0}, false, 0},
      {"failure behind the value", "a; 1 / (b - 1)", {2, 1, 0}, false, 0},
      {"value that it doesn't use isn't finite", "a + b", {2, 1, INFINITY}, true, 3},
  };
  for (const auto& c : cases) {
    Relation relation;
    ASSERT_TRUE(relation.setExpression(c.text)) << c.what;
    double value = -1.0;
    relation.bindNames({"a", "b", "c"});
    EXPECT_EQ(relation.evaluate(c.row.data(), value), c.good) << c.what;
    EXPECT_DOUBLE_EQ(value, c.value) << c.what;
  }
}

TEST(RelationTest, FollowsTheListOfNames) {
  Relation relation;
  ASSERT_TRUE(relation.setExpression("a - b"));
  const double row[] = {5, 3, 1};
  double value = 0.0;
  relation.bindNames({"b", "x", "a"});
  ASSERT_TRUE(relation.evaluate(row, value));
  EXPECT_EQ(value, -4.0);
  relation.bindNames({"a", "b", "a"});  // the first of equal names
  const std::unique_ptr<Factor> copy = relation.clone();
  ASSERT_TRUE(relation.setExpression("t = a; t + b"));
  EXPECT_EQ(relation.factorNames(), (Names{"a", "b", "t"}));
  ASSERT_TRUE(dynamic_cast<Relation&>(*copy).evaluate(row, value));
  EXPECT_EQ(value, 2.0);
}

TEST(RelationTest, Renaming) {
  Relation relation;
  ASSERT_TRUE(relation.setExpression("a + ab * a"));
  EXPECT_TRUE(relation.usesFactor("ab"));
  EXPECT_FALSE(relation.usesFactor("b"));
  EXPECT_FALSE(relation.renameFactor("b", "new"));
  EXPECT_TRUE(relation.renameFactor("a", "new"));
  EXPECT_EQ(relation.expression(), "new + newb * new");
  EXPECT_EQ(relation.factorNames(), (Names{"new", "newb"}));
}

TEST(RelationTest, Record) {
  const std::string record = "Relation\nr1\nsome note\n1\t\na * b - k\n\n";
  Relation relation;
  TextReader in = TextReader::fromText(record + "\nnext");
  in.skipLine();
  relation.read(in);
  ASSERT_TRUE(in.ok());
  EXPECT_EQ(textOf(relation), record);
  EXPECT_EQ(relation.factorNames(), (Names{"a", "b", "k"}));
  std::string line;
  in.skipLine();
  in.skipLine();
  in.readLine(line, 10);
  EXPECT_EQ(line, "next") << "two lines behind the record are the list's";

  const struct {
    const char* what;
    std::string text;
    bool good;
    std::string expression;
  } cases[] = {
      {"refused expression", "a / b", true, ""},
      {"255 characters", std::string(255, 'x'), false, ""},
  };
  for (const auto& c : cases) {
    TextReader one = TextReader::fromText("r\n\n1\t\n" + c.text + "\n\n\n");
    Relation read;
    read.read(one);
    EXPECT_EQ(one.ok(), c.good) << c.what;
    EXPECT_EQ(read.expression(), c.expression) << c.what;
    // What is refused isn't lost when the list is saved.
    EXPECT_TRUE(!c.good || textOf(read) == "Relation\nr\n\n1\t\n" + c.text + "\n\n") << c.what;
  }
}

}  // namespace
}  // namespace tarvex
