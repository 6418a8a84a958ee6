#include "model/InternalModel.h"

#include "base/TextReader.h"
#include "support/Test.h"

namespace tarvex {
namespace {

using test::textOf;

InternalModel modelOf(const std::vector<std::string>& variables,
                      const std::vector<std::pair<std::string, std::string>>& equations) {
  InternalModel model;
  for (const std::string& name : variables) EXPECT_TRUE(model.addVariable(name)) << name;
  for (const auto& [name, text] : equations) {
    EXPECT_TRUE(model.addExpression(model.numExpressions(), name, text, 1)) << name << model.errorText();
  }
  return model;
}

TEST(InternalModelTest, NamesThatAreRefused) {
  for (const std::string name : {"", "2x", "a b", "a-b", "a>b", "a\\b", "a#", "a\xc3\xa7"}) {
    InternalModel model = modelOf({}, {{"y", "1"}});
    EXPECT_FALSE(model.addVariable(name)) << name;
    EXPECT_EQ(model.errorText(), "Incorrect factor name") << name;
    EXPECT_FALSE(model.modifyExpression(0, name, "1", 1)) << name;
    EXPECT_FALSE(model.addExpression(0, name, "1", 1)) << name;
    EXPECT_EQ(model.errorText(), "Incorrect expression name") << name;
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
      {"Factor currently in use, I can't delete it", [](auto& m) { return m.removeVariable(0); }},
      {"Factor to remove not found", [](auto& m) { return m.removeVariable(3); }},
      {"Expression name already in the list", [](auto& m) { return m.addExpression(0, "y", "1", 1); }},
      {"Current expression cannot be evaluated\n Syntax error.",
       [](auto& m) { return m.addExpression(0, "n", "a +", 1); }},
      {"Current expression cannot be evaluated.\n Unknown Variable.",
       [](auto& m) { return m.addExpression(0, "n", "a + q", 1); }},
      {"Current expression cannot be evaluated.\n Unknown Variable.",
       [](auto& m) { return m.addExpression(0, "n", "n + 1", 1); }},
      {"Variable already inserted in the list", [](auto& m) { return m.modifyExpression(1, "y", "1", 1); }},
      {"The expression is in use, I can't delete it", [](auto& m) { return m.removeExpression(0); }},
      {"Expression not found", [](auto& m) { return m.removeExpression(2); }},
  };
  InternalModel original = modelOf({"a", "b", "c"}, {{"y", "a * b"}, {"z", "y + c"}});
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

TEST(InternalModelTest, UsesNameLooksAtTheFirstOccurrence) {
  const struct {
    const char *name, *text;
    bool used;
  } cases[] = {
      {"a", "a", true},      {"a", "b+a", true},    {"a", "sin(a)", true},  {"ab", "abc+ab", false},
      {"a", "ab+a", false},  {"a", "a > 1", false}, {"a", "1 > a", false},  {"a", "a ? 1 : 2", false},
      {"a", "b = a", false}, {"a", "-a/b", true},   {"a", "a  ** 2", true}, {"a", "tan(a)", false},
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

TEST(InternalModelTest, ValuesOfARow) {
  const struct {
    const char* what;
    std::vector<std::pair<std::string, std::string>> equations;
    std::vector<double> row;  // of a, b, c
    std::vector<double> outputs;
  } cases[] = {
      {"columns", {{"y", "100 * a + 10 * b + c"}}, {1, 2, 3}, {123}},
      {"six digits enter every equation",
       {{"copy", "a"}, {"third", "copy / 3"}, {"back", "third * 3"}},
       {1234567.8, 0, 0},
       {1.23457e6, 1.23457e6 / 3, 411523.0 * 3}},
      {"infinite result", {{"huge", "exp(1000 * b)"}}, {2, 1, 0}, {INFINITY}},
  };
  for (const auto& c : cases) {
    InternalModel model = modelOf({"a", "b", "c"}, c.equations);
    std::vector<double> outputs(c.outputs.size());
    EXPECT_TRUE(model.evaluate(c.row.data(), outputs.data())) << c.what;
    EXPECT_EQ(outputs, c.outputs) << c.what;
  }
  const double row[] = {3, 1};
  double outputs[] = {-1, -2};
  InternalModel later = modelOf({"a"}, {{"late", "a"}});
  ASSERT_TRUE(later.addExpression(0, "early", "late + a", 1));
  ASSERT_TRUE(later.evaluate(row, outputs));
  EXPECT_EQ(outputs[0], 3.0) << "a reference to a later equation is zero";
  InternalModel moved = modelOf({"a", "b"}, {{"y", "10 * a + b"}});
  moved.moveVariable(0, 1);
  moved.moveVariable(5, 0);
  ASSERT_TRUE(moved.evaluate(row, outputs));
  EXPECT_EQ(outputs[0], 13.0);
  // An infinite value can't enter an equation; a failed row leaves the outputs.
  InternalModel failing = modelOf({"a", "b"}, {{"huge", "exp(1000 * b)"}, {"use", "huge + 1"}});
  EXPECT_FALSE(failing.evaluate(row, outputs));
  EXPECT_EQ(failing.errorText(), "Error evaluating model");
  EXPECT_EQ(outputs[0], 13.0);
}

TEST(InternalModelTest, LimitsOfExpressions) {
  InternalModel model;
  for (int i = 0; i < 500; ++i) ASSERT_TRUE(model.addExpression(i, "e" + std::to_string(i), "1", 1)) << i;
  EXPECT_FALSE(model.addExpression(0, "more", "1", 1));
  EXPECT_EQ(model.errorText(), "Too much expressions: max number of expression 500");
  EXPECT_EQ(model.numExpressions(), 500);
  std::string text = textOf(model);
  TextReader in = TextReader::fromText(text);
  InternalModel loaded;
  EXPECT_TRUE(loaded.read(in)) << "what can be made can be loaded back";
  EXPECT_EQ(loaded.numExpressions(), 500);
  EXPECT_EQ(loaded.errorText(), "");
  TextReader more = TextReader::fromText(text.replace(text.find("500"), 3, "501"));
  EXPECT_FALSE(loaded.read(more));
  EXPECT_EQ(loaded.errorText(), "Too much model outputs variables found: max output var = 500");

  // Texts of any length that is kept come back; others are refused where they are set.
  InternalModel wide = modelOf({"a_b"}, {{"y", "a_b" + std::string(9000, ' ') + "+ 1"}});
  const std::string kept = textOf(wide);
  EXPECT_FALSE(wide.addExpression(1, "z", std::string(2 << 20, '1'), 1) || wide.addExpression(1, "z", "1 +\n1", 1) ||
               wide.addVariable("b\n") || wide.setName("two words") || wide.setFileName("a\nb"));
  TextReader again = TextReader::fromText(kept);
  EXPECT_TRUE(loaded.read(again));
  EXPECT_EQ(textOf(loaded), kept);
  EXPECT_EQ(textOf(wide), kept);
}

TEST(InternalModelFileTest, RulesOfTheFile) {
  const struct {
    const char *what, *text;
    const char* problem;  // null: it loads
  } cases[] = {
      {"CR LF and no last line end", "m\r\n1\r\na\r\n0\r\n1\r\ny\r\na\r\n1\r\n0\r\nf.imd", nullptr},
      {"wrong lists of uses are dropped", "m\n1\na\n3\n7\t8\t9\t\n1\ny\na\n1\n5\nf\n", nullptr},
      {"a trial that divides by zero", "m\n1\na\n0\n1\ny\n1 / (a > 5)\n1\n0\nf\n", nullptr},
      {"empty model name", "\n0\n\n0\nf\n", "line 1: the name of the model is empty"},
      {"a name twice", "m\n2\na\n0\na\n0\n0\nf\n", "line 5: the variable a is there twice"},
      {"no name", "m\n1\n2x\n0\n0\nf\n", "line 3: '2x' is no name of a variable"},
      {"unknown name", "m\n1\na\n0\n1\ny\nq\n1\n0\nf\n", "line 7: unknown name 'q'"},
      {"unknown function", "m\n1\na\n0\n1\ny\nsin(max(a, 1))\n1\n0\nf\n", "line 7: unknown function 'max'"},
      {"no end", "m\n1\na\n0\n1\ny\n1 / 0 +\n1\n0\nf\n", "line 7: Missing expression at character 8 of '1 / 0 +'"},
      {"type 2", "m\n1\na\n0\n1\ny\na\n2\n0\nf\n", "line 8: the type must be 0 or 1, not 2"},
      {"negative count", "m\n0\n\n-1\nf\n", "line 4: the number of equations must be at least 0, not -1"},
      {"no count", "m\nx\n", "line 2: expected the number of variables, found 'x'"},
  };
  for (const auto& c : cases) {
    TextReader in = TextReader::fromText(c.text);
    InternalModel model = modelOf({"old"}, {});
    EXPECT_EQ(model.read(in), c.problem == nullptr) << c.what;
    EXPECT_EQ(in.fail() ? in.problem() : "", c.problem != nullptr ? c.problem : "") << c.what;
    EXPECT_EQ(model.errorText().empty(), c.problem == nullptr) << c.what;
    EXPECT_TRUE(in.ok() || textOf(model) == "noname\n0\n\n0\nnofile\n") << c.what;
    EXPECT_EQ(model.warningText().empty(), in.fail() || model.expressions()[0].text == "a") << c.what;
  }
}

TEST(InternalModelFileTest, LoadKeepsTheModelWhenItFails) {
  const test::TempDirectory directory;
  const std::string path = directory.file("m.imd");
  InternalModel model = modelOf({"a"}, {{"y", "a"}});
  std::string message;
  ASSERT_TRUE(saveModelFile(path, model, message)) << message;
  InternalModel loaded;
  ASSERT_TRUE(loadModelFile(path, loaded, message));
  EXPECT_EQ(textOf(loaded), textOf(model));
  test::writeFile(path, "m\n1\na\n");
  for (const std::string& bad : {path, directory.file("none.imd"), directory.path()}) {
    EXPECT_FALSE(loadModelFile(bad, loaded, message)) << bad;
    EXPECT_EQ(message.substr(0, message.find('\n')), "Error reading the internal model file");
    EXPECT_EQ(textOf(loaded), textOf(model));
  }
}

TEST(InternalModelFileTest, ManyVariablesDontTakeForever) {
  std::string text = "m\n100000\n";
  for (int i = 0; i < 100000; ++i) text += "v" + std::to_string(i) + "\n0\n";
  TextReader in = TextReader::fromText(text + "1\ny\nv1\n1\n0\nf\n");
  InternalModel model;
  EXPECT_FALSE(model.read(in));  // more names than the evaluator holds
  TextReader bare = TextReader::fromText(text + "0\nf\n");
  EXPECT_TRUE(model.read(bare));
  EXPECT_EQ(model.numVariables(), 100000);
}

}  // namespace
}  // namespace tarvex
