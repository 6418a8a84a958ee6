#include "model/InternalModel.h"

#include <gtest/gtest.h>

#include <cmath>

#include "base/TextReader.h"
#include "base/TextWriter.h"
#include "support/Golden.h"
#include "support/TempDirectory.h"
#include "support/TextFiles.h"

namespace tarvex {
namespace {

InternalModel modelOf(const std::vector<std::string>& variables,
                      const std::vector<std::pair<std::string, std::string>>& equations) {
  InternalModel model;
  for (const std::string& name : variables) EXPECT_TRUE(model.addVariable(name)) << name;
  for (const auto& [name, text] : equations) {
    EXPECT_TRUE(model.addExpression(model.numExpressions(), name, text, 1)) << name << model.errorText();
  }
  return model;
}

std::string textOf(InternalModel model) {
  TextWriter out;
  model.write(out);
  return out.text();
}

TEST(InternalModelTest, NamesThatAreRefused) {
  for (const std::string name : {"", "2x", "a b", "a-b", "a>b", "a\"b", "a\\b", "a#", "a\xc3\xa7", "a\xa3"}) {
    InternalModel model;
    EXPECT_FALSE(model.addVariable(name)) << name;
    EXPECT_EQ(model.errorText(), "Incorrect factor name") << name;
    EXPECT_FALSE(model.addExpression(0, name, "1", 1)) << name;
    EXPECT_EQ(model.errorText(), "Incorrect expression name") << name;
    ASSERT_TRUE(model.addExpression(0, "y", "1", 1));
    EXPECT_FALSE(model.modifyExpression(0, name, "1", 1)) << name;
    EXPECT_EQ(textOf(model), textOf(modelOf({}, {{"y", "1"}}))) << name;
  }
  EXPECT_TRUE(modelOf({"a_b", "_2"}, {}).numVariables() == 2);
}

TEST(InternalModelTest, RefusalsLeaveTheModel) {
  using Step = std::function<bool(InternalModel&)>;
  const struct {
    const char* text;
    Step step;
  } cases[] = {
      {"Factor already inserted in the list", [](auto& m) { return m.addVariable("b"); }},
      {"Factor already inserted in the list", [](auto& m) { return m.renameVariable(0, "b"); }},
      {"Incorrect factor name", [](auto& m) { return m.renameVariable(0, "1"); }},
      {"Factor currently in use, I can't delete it", [](auto& m) { return m.removeVariable(0); }},
      {"Factor to remove not found", [](auto& m) { return m.removeVariable(3); }},
      {"Factor to remove not found", [](auto& m) { return m.removeVariable(-1); }},
      {"Expression name already in the list", [](auto& m) { return m.addExpression(0, "y", "1", 1); }},
      {"Current expression cannot be evaluated\n Syntax error.",
       [](auto& m) { return m.addExpression(0, "n", "a +", 1); }},
      {"Current expression cannot be evaluated\n Syntax error.",
       [](auto& m) { return m.addExpression(0, "n", "foo(a)", 1); }},
      {"Current expression cannot be evaluated.\n Unknown Variable.",
       [](auto& m) { return m.addExpression(0, "n", "a + q", 1); }},
      {"Current expression cannot be evaluated.\n Unknown Variable.",
       [](auto& m) { return m.addExpression(0, "n", "n + 1", 1); }},
      {"Variable already inserted in the list", [](auto& m) { return m.modifyExpression(1, "y", "1", 1); }},
      {"Current expression cannot be evaluated\n Syntax error.",
       [](auto& m) { return m.modifyExpression(1, "other", "(", 1); }},
      {"The expression is in use, I can't delete it", [](auto& m) { return m.removeExpression(0); }},
      {"Expression not found", [](auto& m) { return m.removeExpression(2); }},
      {"Index out of range", [](auto& m) { return m.expressionType(2) != -1; }},
      {"Index out of Range",
       [](auto& m) {
         std::string name;
         return m.internalName(0, name);
       }},
  };
  const InternalModel original = modelOf({"a", "b", "c"}, {{"y", "a * b"}, {"z", "y + c"}});
  for (const auto& c : cases) {
    InternalModel model = original;
    EXPECT_FALSE(c.step(model)) << c.text;
    EXPECT_EQ(model.errorText(), c.text);
    EXPECT_EQ(textOf(model), textOf(original)) << c.text;
  }
  InternalModel empty;
  EXPECT_FALSE(empty.removeVariable(0));
  EXPECT_EQ(empty.errorText(), "No Factor to delete");
}

TEST(InternalModelTest, ReferenceToALaterEquationIsZero) {
  InternalModel model = modelOf({"a"}, {{"late", "a"}});
  ASSERT_TRUE(model.addExpression(0, "early", "late + a", 1));
  const double a = 3.0;
  double outputs[2];
  ASSERT_TRUE(model.evaluate(&a, outputs));
  EXPECT_EQ(outputs[0], 3.0);
  EXPECT_EQ(outputs[1], 3.0);
}

TEST(InternalModelTest, UsesNameLooksAtTheFirstOccurrence) {
  const struct {
    const char* name;
    const char* text;
    bool used;
  } cases[] = {
      {"a", "a", true},         {"a", "  a  ", true},      {"a", "b+a", true},     {"a", "sin(a)", true},
      {"a", "b + a * c", true}, {"ab", "abc+ab", false},   {"a", "ab+a", false},   {"a", "a > 1", false},
      {"a", "1 > a", false},    {"a", "a ? 1 : 2", false}, {"a", "b", false},      {"a", "b = a", false},
      {"a", "-a/b", true},      {"a", "a  ** 2", true},    {"a", "tan(a)", false},
  };
  for (const auto& c : cases) EXPECT_EQ(usesName(c.name, c.text), c.used) << c.name << " in " << c.text;
  InternalModel model = modelOf({"a", "ab"}, {{"y", "ab+a"}});
  EXPECT_TRUE(model.removeVariable(0));  // in use, but not seen
}

TEST(InternalModelTest, RenamingChangesTheFirstOccurrence) {
  InternalModel model = modelOf({"a", "b"}, {{"y", "a * a + b"}, {"z", "y + y"}});
  ASSERT_TRUE(model.renameVariable(0, "c"));
  EXPECT_EQ(model.expressions()[0].text, "c * a + b");
  ASSERT_TRUE(model.modifyExpression(0, "w", "b * 2", 0));
  EXPECT_EQ(model.expressions()[1].text, "w + y");
  EXPECT_EQ(model.variables()[0].usedBy, std::vector<std::int32_t>{});
  EXPECT_EQ(model.variables()[1].usedBy, std::vector<std::int32_t>{0});
  EXPECT_EQ(model.expressions()[0].usedBy, std::vector<std::int32_t>{1});
}

TEST(InternalModelTest, MovedVariablesTakeOtherColumns) {
  InternalModel model = modelOf({"a", "b", "c"}, {{"y", "100 * a + 10 * b + c"}});
  model.moveVariable(0, 2);
  model.moveVariable(5, 0);
  const double row[] = {1, 2, 3};
  double y = 0.0;
  ASSERT_TRUE(model.evaluate(row, &y));
  EXPECT_EQ(y, 312.0);
}

TEST(InternalModelTest, SixDigitsEnterEveryEquation) {
  InternalModel model = modelOf({"a", "b"}, {{"copy", "a"}, {"third", "copy / 3"}, {"back", "third * 3"}});
  const double row[] = {1234567.8, 0.0};
  double outputs[3];
  ASSERT_TRUE(model.evaluate(row, outputs));
  EXPECT_EQ(outputs[0], 1.23457e6);
  EXPECT_EQ(outputs[1], 1.23457e6 / 3);
  EXPECT_EQ(outputs[2], 411523.0 * 3);
}

TEST(InternalModelTest, FailedRowLeavesTheOutputs) {
  InternalModel model = modelOf({"a", "b"}, {{"y", "1 / a"}, {"huge", "exp(1000 * b)"}});
  double outputs[] = {-1, -2};
  const double zero[] = {0, 1};
  EXPECT_FALSE(model.evaluate(zero, outputs));
  EXPECT_EQ(model.errorText(), "Error evaluating model");
  EXPECT_EQ(outputs[0], -1.0);
  const double good[] = {2, 1};
  EXPECT_TRUE(model.evaluate(good, outputs));
  EXPECT_EQ(outputs[1], INFINITY);
  ASSERT_TRUE(model.addExpression(2, "use", "huge + 1", 1));
  EXPECT_FALSE(model.evaluate(good, outputs)) << "an infinite value can't enter an equation";
}

TEST(InternalModelTest, LimitsOfExpressions) {
  InternalModel model;
  for (int i = 0; i < 500; ++i) ASSERT_TRUE(model.addExpression(i, "e" + std::to_string(i), "1", 1)) << i;
  EXPECT_FALSE(model.addExpression(0, "more", "1", 1));
  EXPECT_EQ(model.errorText(), "Too much expressions: max number of expression 500");
  EXPECT_EQ(model.numExpressions(), 500);
  TextReader full = TextReader::fromText(textOf(model));
  InternalModel loaded;
  loaded.read(full);
  EXPECT_TRUE(full.fail());
  EXPECT_EQ(loaded.errorText(), "Too much model outputs variables found: max output var = 500");
  ASSERT_TRUE(model.removeExpression(499));
  TextReader in = TextReader::fromText(textOf(model));
  loaded.read(in);
  EXPECT_TRUE(in.ok());
  EXPECT_EQ(loaded.numExpressions(), 499);
  EXPECT_EQ(loaded.errorText(), "");
}

TEST(InternalModelTest, LongTexts) {
  std::string sum = "a";
  for (int i = 0; i < 2000; ++i) sum += " + a";
  InternalModel model = modelOf({"a"}, {{"y", sum}});
  const double a = 0.5;
  double y = 0.0;
  ASSERT_TRUE(model.evaluate(&a, &y));
  EXPECT_EQ(y, 1000.5);
}

TEST(InternalModelFileTest, GoldenModelsComeBackByteByByte) {
  for (const std::string name : {"ishigami.imd", "g.imd", "mixed.imd", "plant.imd"}) {
    const std::string path = test::goldenPath(name);
    TextReader in = TextReader::fromFile(path);
    InternalModel model;
    model.read(in);
    ASSERT_TRUE(in.ok()) << name;
    EXPECT_EQ(textOf(model), test::readFile(path)) << name;
  }
}

TEST(InternalModelFileTest, SmallestFiles) {
  EXPECT_EQ(textOf(InternalModel()), "noname\n0\n\n0\nnofile\n");
  const struct {
    const char* what;
    const char* text;
    bool good;
  } cases[] = {
      {"no variables, no expressions", "m\n0\n\n0\nf.imd\n", true},
      {"CR LF and no last line end", "m\r\n1\r\na\r\n0\r\n1\r\ny\r\na\r\n1\r\n0\r\nf.imd", true},
      {"two words on a name's line", "m n\n1\na b\n0\n1\ny\na\n1\n0\nf\n", true},
      {"wrong lists of uses are dropped", "m\n1\na\n3\n7\t8\t9\t\n1\ny\na\n1\n5\nf\n", true},
      {"empty model name", "\n0\n\n0\nf\n", false},
      {"variable with an underscore", "m\n1\na_b\n0\n0\nf\n", false},
      {"variable twice", "m\n2\na\n0\na\n0\n0\nf\n", false},
      {"variable that starts with a digit", "m\n1\n1a\n0\n0\nf\n", false},
      {"unknown name in an equation", "m\n1\na\n0\n1\ny\nq\n1\n0\nf\n", false},
      {"type 2", "m\n1\na\n0\n1\ny\na\n2\n0\nf\n", false},
      {"no file name", "m\n1\na\n0\n0\n", false},
      {"negative count", "m\n0\n\n-1\nf\n", false},
  };
  for (const auto& c : cases) {
    TextReader in = TextReader::fromText(c.text);
    InternalModel model = modelOf({"old"}, {});
    model.read(in);
    EXPECT_EQ(in.ok(), c.good) << c.what;
    EXPECT_EQ(model.errorText().empty(), c.good) << c.what;
    if (!c.good) {
      EXPECT_EQ(textOf(model), textOf(InternalModel())) << c.what;
    }
  }
}

TEST(InternalModelFileTest, LoadKeepsTheModelWhenItFails) {
  const test::TempDirectory directory;
  const std::string path = directory.file("m.imd");
  InternalModel model = modelOf({"a"}, {{"y", "a"}});
  std::string message;
  ASSERT_TRUE(saveModelFile(path, model, message)) << message;
  EXPECT_EQ(model.fileName(), path);
  InternalModel loaded;
  ASSERT_TRUE(loadModelFile(path, loaded, message));
  EXPECT_EQ(textOf(loaded), textOf(model));
  test::writeFile(path, "m\n1\na\n");
  for (const std::string& bad : {path, directory.file("none.imd"), directory.path()}) {
    EXPECT_FALSE(loadModelFile(bad, loaded, message)) << bad;
    EXPECT_EQ(message, "Error reading the internal model file");
    EXPECT_EQ(textOf(loaded), textOf(model));
  }
  EXPECT_FALSE(saveModelFile(directory.file("no/m.imd"), model, message));
}

// Every line cut off or replaced by what doesn't belong there: no crash, and a failed read leaves an empty model.
TEST(InternalModelFileTest, DamagedFiles) {
  const std::vector<std::string> lines = test::readLines(test::goldenPath("plant.imd"));
  const std::string junk[] = {
      "", "text", "-1", "2147483647", "99999999999", "1e999", std::string(5000, 'x'), std::string("\0\xff\x01", 3)};
  for (std::size_t damaged = 0; damaged < lines.size(); ++damaged) {
    for (std::size_t j = 0; j <= std::size(junk); ++j) {
      std::string text;
      for (std::size_t i = 0; i < lines.size() && (i < damaged || j < std::size(junk)); ++i) {
        text += (i == damaged ? junk[j] : lines[i]) + '\n';
      }
      TextReader in = TextReader::fromText(text);
      InternalModel model;
      model.read(in);
      if (in.ok()) {
        TextReader again = TextReader::fromText(textOf(model));
        model.read(again);
        EXPECT_TRUE(again.ok()) << "line " << damaged << " junk " << j;
      } else {
        EXPECT_EQ(model.numVariables() + model.numExpressions(), 0);
      }
      EXPECT_TRUE(in.fail() || j < std::size(junk)) << "cut at line " << damaged;
    }
  }
}

TEST(InternalModelFileTest, ManyVariablesDontTakeForever) {
  std::string text = "m\n100000\n";
  for (int i = 0; i < 100000; ++i) text += "v" + std::to_string(i) + "\n0\n";
  TextReader in = TextReader::fromText(text + "1\ny\nv1\n1\n0\nf\n");
  InternalModel model;
  model.read(in);
  EXPECT_TRUE(in.fail());  // more names than the evaluator holds
  TextReader bare = TextReader::fromText(text + "0\nf\n");
  model.read(bare);
  EXPECT_EQ(model.numVariables(), 100000);
}

}  // namespace
}  // namespace tarvex
