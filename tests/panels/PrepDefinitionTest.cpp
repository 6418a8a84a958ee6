#include "panels/PrepFixture.h"
#include "panels/prep/PInspector.h"
#include "panels/prep/editFactor.h"
#include "plots/Figure.h"
#include "toolkit/ChartView.h"

namespace tarvex {
namespace {

using test::Texts;
using test::Uses;

class PrepDefinition : public test::PrepPanelTest<PDefinition> {
 protected:
  void open(const std::string& kind, const FactorList* list = nullptr) {
    show(makeDefinition(display_, *makeFactor(kind), {list, -1, false}, nullptr));
  }
  // The parameters that ok takes, or what it says, of which the message line told before.
  std::string outcome() {
    const std::string line = message();
    const Texts shown = shownBy(*panel_, "ok");
    EXPECT_EQ(panel_->result(), shown.empty() ? PDefinition::kAccepted : PDefinition::kCancelled);
    EXPECT_EQ(shown.empty(), line.empty()) << line;
    return shown.empty() ? factorFields(*panel_->takeFactor()) : shown.front();
  }
  std::string outcomeOf(const char* kind, const Uses& fields) {
    open(kind);
    type(window(), fields);
    return outcome();
  }
};

// clang-format off
TEST_F(PrepDefinition, FieldsAreReadInTheirOrderAndJudgedTogether) {
  const std::string range = " out of range!", lower = "Right truncation bound", upper = "Right Truncation bound";
  const std::vector<std::pair<const char*, std::string>> ofNormal{
      {"NMean", "Mean value"}, {"NStdDeviation", "Standard deviation value"}, {"NLeftTrunc", "Left Truncation value"},
      {"NRightTrunc", "Right Truncation value"}};
  const std::pair<const char*, std::vector<std::pair<const char*, std::string>>> words[] = {
      {"Normal", ofNormal},
      {"LogNormal", ofNormal},
      {"Beta", {{"NAlfa", "Alfa value"}, {"NBeta", "Beta value"}, {"NLeftBound", "Left bound value"},
                {"NRightBound", "Right bound value"}}},
      {"Exponential", {{"NLambda", "Lambda value"}, {"NB", "b value"}, {"NRightTrunc", upper}}},
      {"Gamma", {{"NR", "R value"}, {"NLambda", "Lambda"}, {"NB", "B value"}, {"NRightTrunc", lower}}},
      {"Triangular", {{"NAlfa", "Alfa value"}, {"NBeta", "Beta value"}, {"NGamma", "Gamma value"}}},
      {"Weibull", {{"NBeta", "Beta value"}, {"NB", "B value"}, {"NN", "N value"},
                   {"NRightTrunc", "Right truncation value"}}}};
  for (const auto& [kind, fields] : words)
    for (const auto& [field, word] : fields)
      EXPECT_EQ(outcomeOf(kind, {{field, field[1] == 'L' ? "" : "1,5"}}), "Error: " + word + range) << kind;
  const std::string wrong =
      "Error: Wrong factor name, The name must begin with a letter and can contain only numbers and letters.";
  const std::string trial = "Error: Error: ";
  const std::tuple<const char*, Uses, std::string> rows[] = {  // with what the outcome begins with
      {"Normal", {{"TName", "  a1 "}, {"NMean", "10"}, {"NStdDeviation", "2"}}, "10, 2, 0.001, 0.999"},
      {"Normal", {{"TName", ""}}, "Error: Invalid name:    Empty name field not admitted."},
      {"Normal", {{"TName", "1a"}, {"NMean", "x"}}, wrong},
      {"Normal", {{"TName", "a_b"}}, wrong},
      {"Normal", {{"NMean", "x"}, {"NStdDeviation", "-1"}}, "Error: Mean value out of range!"},
      {"Normal", {{"NStdDeviation", "-1"}, {"NLeftTrunc", "x"}}, trial + "Standard deviation must be >= 0"},
      {"Normal", {{"NRightTrunc", "inf"}}, "Error: Right Truncation value out of range!"},
      {"Normal", {{"NLeftTrunc", "0.5"}, {"NRightTrunc", "0.4"}}, trial + "Left Truncation must be less than right"},
      {"LogNormal", {{"NLeftTrunc", "0.9995"}, {"NRightTrunc", "0.9999"}}, "0, 1, 0.9995, 0.9999"},
      {"Beta", {{"NAlfa", "0"}, {"NBeta", "b"}}, "Error: Wrong negative value assigned to Alfa"},
      {"Beta", {{"NBeta", "-1"}, {"NRightBound", "b"}}, "Error: Wrong negative value assigned to Beta"},
      {"Beta", {{"NLeftBound", "9"}, {"NRightBound", "9"}}, "Error: Negative or null definition interval: check a and b"},
      {"Weibull", {{"NN", "0"}, {"NB", "x"}}, "Error: B value out of range!"},
      {"Weibull", {{"NN", "0"}, {"NRightTrunc", "x"}}, trial + "n must be > 0"},
      {"Triangular", {{"NBeta", "2"}}, "Error: Wrong values assigned to the distribution definition interval"},
      {"Constant", {{"TName", "1a"}}, "Error: Invalid name:    Invalid factor name. The name must begin vith a letter "
                                      "and must contain numbers and letters only"},
      {"Constant", {{"NValue", "3.5"}}, "3.5"},
  };
  for (const auto& [kind, fields, expected] : rows)
    EXPECT_EQ(outcomeOf(kind, fields).substr(0, expected.size()), expected);
}

TEST_F(PrepDefinition, RowsOfIntervalsAndPointsAreJudgedAsAWhole) {
  const std::string chooser = "Select tabulated uniform values file: open *.fac *.*";
  const std::tuple<const char*, const char*, const char*> pasted[] = {
      {"Uniform", "0\t1\t0.5\n1\t2\t0.25\n5\t6\t0.25", "0, 1, 0.5; 1, 2, 0.25; 5, 6, 0.25"},
      {"Uniform", "0\t1\t0.5\n1\t2\t0.4", "Error: Error: Sum of weights not equal to 1"},
      {"Uniform", "0\t2\t0.5\n1\t3\t0.5", "Error: Row 2: Interval to insert overloads previous intervals stored"},
      {"Uniform", "0\t1\t", "Error: Row 1: Weight value error"},
      {"Uniform", "0,5\t1\t1", "Error: Row 1: '0,5' is no number"},
      {"Discrete", "1\t0.5\n1\t0.5", "Error: Row 2: The new point already exists"},
  };
  // clang-format on
  for (const auto& [kind, rows, expected] : pasted) {
    open(kind);
    paste(table("MaValues"), 0, 0, rows);
    EXPECT_EQ(outcome(), expected);
  }
  const auto values = [this] { return cells(*table("MaValues").model()); };
  open("Discrete");
  const std::string opened = values();
  table("MaValues").selectRow(0);
  does("add");
  EXPECT_EQ(values(), "0 0.5| |1 0.5|");
  does("del");
  table("MaValues").clearSelection();
  does("del", {"Error: No row selected"});
  table("MaValues").selectRow(0);
  does("del");
  paste(table("MaValues"), 0, 0, "7\t1");
  does("save", {"Save tabulated uniform values file: save *.fac *.*"}, {}, {file("t.fac")});
  EXPECT_EQ(test::readFile(file("t.fac")), "1\n7\t1\n");
  does("reset");
  does("load", {chooser, "Error: Error opening tabulated values file..."}, {}, {file("none.fac")});
  EXPECT_EQ(values(), opened);
  does("load", {chooser}, {}, {file("t.fac")});
  EXPECT_EQ(values(), "7 1|");
}

TEST_F(PrepDefinition, TheGraphFollowsTheTypingAndDraftsAreNoVetoes) {
  open("Triangular");
  const auto upper = [&] { return std::get<XyChart>(in<ChartView>("boundGraph").figure().charts.at(0)).x.upper; };
  type(window(), {{"NAlfa", "10"}});  // now above the mode
  EXPECT_NE(message(), "");
  EXPECT_LT(upper(), 3.0);
  type(window(), {{"NBeta", "15"}, {"NGamma", "20"}});
  EXPECT_EQ(message(), "");
  EXPECT_GT(upper(), 19.0);
  EXPECT_EQ(label("MlSummary"), "Sampled: mean 15, deviation 2.041; 5\u00a0% lie below 11.58, 95\u00a0% below 18.42");
  does("reset");
  EXPECT_EQ(field("NGamma"), "2");
  open("Normal");
  EXPECT_EQ(label("MlTruncation"), "0.001 - 0.999");
  type(window(), {{"NStdDeviation", "0"}});
  does("apply", {"Warning: Warning. Can't display function graph: undeflow error"});
  for (const std::string kind : {"LogNormal", "LogUniform"}) {
    open(kind);
    EXPECT_EQ(in<QPushButton>("BFormula").text().toStdString(), '&' + kind);
    does("formula", {kind + " distribution: f(x) = ..."});
  }
}

TEST_F(PrepDefinition, AnotherKindGoesOnWithMeanDeviationAndTexts) {
  const auto list = normals(2, kDependenceTree);
  ASSERT_TRUE(list->link(1, 0, 0.5));
  whenShown("Normal Distribution", [](QWidget& panel) {
    type(panel, {{"TName", "flow"}, {"TNote", "m3 a s"}});
    use(panel, {{"ODistType", "Gamma"}});
  });
  whenShown("Gamma Distribution", [](QWidget& panel) { click(panel, "BOk"); });
  const auto gamma = editFactor(display_, *makeFactorOf("Normal", {10.0, 2.0}), {list.get(), -1, false}, nullptr);
  ASSERT_NE(gamma, nullptr);
  EXPECT_EQ(gamma->name + ' ' + gamma->note + ' ' + factorFields(*gamma), "flow m3 a s 25, 2.5, 0, 0.999");

  show(makeDefinition(display_, list->factor(1), {list.get(), 1, false}, nullptr));
  for (const char* const kind : {"Constant", "Relation"}) {
    in<QComboBox>("ODistType").setCurrentText(kind);
    does("distType", {"Error:    Can't change to Constant\n or Relation a correlated factor"});
    EXPECT_EQ(in<QComboBox>("ODistType").currentText(), "Normal");
  }
  type(window(), {{"TName", "x1"}});
  does("ok", {"Error: wrong name:    The name of this factor is already in use"});
  type(window(), {{"TName", "x2"}});
  does("ok");  // its own
}

TEST_F(PrepDefinition, ARelationIsCheckedWhereItIsWrong) {
  const auto list = normals(3);
  const std::string title = "Error in expression:  ", empty = title + "Empty relation field not admitted.";
  const std::string unknown = title + "Error in expression, unknown factor or wrong expression name.\n";
  const std::string failed =
      title + "Current expression cannot be evaluated.\n  Error in expression or unknown factor.\n";
  const std::tuple<const char*, Texts, Texts, int> rows[] = {
      // with where the caret is then
      {"x1 + 2 * x2", {}, {}, 0},
      {"", {empty}, {empty}, 0},
      {"x1 + y9 * 2", {unknown + "'y9' is no..."}, {failed + "'y9'..."}, 5},
      {"x1 + * x2", {unknown + "..."}, {failed + "..."}, 5},
      {"x1 / x2", {"Error in expression: The expression can't be kept: with every name at 0 it fails...."}, {}, 0},
      // A comment ends with its line, although a file has but one.
      {"x1 // flow\n+ /* // */ x2", {}, {}, 0},
  };
  for (const auto& [text, ok, apply, caret] : rows) {
    open("Relation", list.get());
    in<QPlainTextEdit>("TeRelation").setPlainText(text);
    does("apply", apply);
    does("ok", ok);
    EXPECT_EQ(in<QPlainTextEdit>("TeRelation").textCursor().position(), caret) << text;
    ASSERT_EQ(panel_->result() == PDefinition::kAccepted, ok.empty());
    if (!ok.empty()) continue;
    EXPECT_EQ(factorFields(*panel_->takeFactor()), QString(text).replace("// flow\n", "        ").toStdString());
  }
  // Put together by clicks.
  open("Relation", list.get());
  in<QListWidget>("SlFactors").setCurrentRow(1);
  for (const char* const button : {"BOpenPar", "B4", "B2", "BDot", "B5", "BMultiply"}) click(window(), button);
  does("addFactor");
  for (const char* const button : {"BClosePar", "BPower", "B3", "BMinus"}) click(window(), button);
  in<QComboBox>("OFunctions").setCurrentText("exp");
  does("selFunction");
  click(window(), "B1");
  EXPECT_EQ(in<QPlainTextEdit>("TeRelation").toPlainText(), "(42.5*x2)**3-exp(1)");
  EXPECT_FALSE(in<ChartView>("boundGraph").figure().charts.empty());
}

TEST_F(PrepDefinition, InspectorsTellOfTheKind) {
  for (const std::string& kind : factorKinds()) {
    const std::unique_ptr<Factor> factor = makeFactor(kind);
    factor->note = "a note";
    PInspector inspector(display_, *factor, nullptr);
    EXPECT_EQ(inspector.problems(), QStringList()) << kind;
    EXPECT_EQ(inspector.window()->windowTitle().toStdString() + label(inspector, "LaFactorType"),
              "Inspector: " + kind + kind);
    EXPECT_EQ(inspector.gadget<QPlainTextEdit>("TeNote")->toPlainText(), "a note");
  }
}

}  // namespace
}  // namespace tarvex
