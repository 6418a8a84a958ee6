#include "panels/PrepFixture.h"
#include "panels/prep/PInspector.h"
#include "panels/prep/editFactor.h"
#include "plots/Figure.h"
#include "toolkit/ChartView.h"

namespace tarvex {
namespace {

using test::Texts;
using Fields = std::vector<std::pair<const char*, const char*>>;
using Rows = std::vector<std::vector<const char*>>;

class PrepDefinition : public test::PrepTest {
 protected:
  std::unique_ptr<PDefinition> panelOf(const std::string& kind, const DefinitionContext& context = {}) {
    const std::unique_ptr<Factor> factor = makeFactor(kind);
    return makeDefinition(display_, *factor, context, nullptr);
  }
  static void setRows(PDefinition& panel, const Rows& rows) {
    auto& model = *panel.gadget<TableView>("MaValues")->model();
    while (model.rowCount() < static_cast<int>(rows.size())) panel.call("add");
    for (int row = 0; const std::vector<const char*>& texts : rows) {
      for (int column = 0; const char* const text : texts) model.setData(model.index(row, column++), text);
      ++row;
    }
    panel.call("edited");
  }
};

constexpr const char* kWrong =
    "Error: Wrong factor name, The name must begin with a letter and can contain only numbers and letters.";

// clang-format off
TEST_F(PrepDefinition, EveryFieldThatHoldsNoNumberIsRefusedInItsWords) {
  const struct {
    const char* kind;
    Fields words;
  } rows[] = {
      {"Normal", {{"NMean", "Mean value out of range!"}, {"NStdDeviation", "Standard deviation value out of range!"},
                  {"NLeftTrunc", "Left Truncation value out of range!"},
                  {"NRightTrunc", "Right Truncation value out of range!"}}},
      {"LogNormal", {{"NMean", "Mean value out of range!"}, {"NStdDeviation", "Standard deviation value out of range!"},
                     {"NLeftTrunc", "Left Truncation value out of range!"},
                     {"NRightTrunc", "Right Truncation value out of range!"}}},
      {"Beta", {{"NAlfa", "Alfa value out of range!"}, {"NBeta", "Beta value out of range!"},
                {"NLeftBound", "Left bound value out of range!"}, {"NRightBound", "Right bound value out of range!"}}},
      {"Exponential", {{"NLambda", "Lambda value out of range!"}, {"NB", "b value out of range!"},
                       {"NRightTrunc", "Right Truncation bound out of range!"}}},
      {"Gamma", {{"NR", "R value out of range!"}, {"NLambda", "Lambda out of range!"}, {"NB", "B value out of range!"},
                 {"NRightTrunc", "Right truncation bound out of range!"}}},
      {"Triangular", {{"NAlfa", "Alfa value out of range!"}, {"NBeta", "Beta value out of range!"},
                      {"NGamma", "Gamma value out of range!"}}},
      {"Weibull", {{"NBeta", "Beta value out of range!"}, {"NB", "B value out of range!"},
                   {"NN", "N value out of range!"}, {"NRightTrunc", "Right truncation value out of range!"}}},
  };
  for (const auto& [kind, words] : rows)
    for (const auto& [field, text] : words) {
      const std::unique_ptr<PDefinition> panel = panelOf(kind);
      type(*panel->window(), {{field, field[1] == 'L' ? "" : "1,5"}});
      EXPECT_TRUE(panel->gadget<QLabel>("MlMessage")->text().startsWith(text)) << kind << ' ' << field;
      EXPECT_EQ(shownBy(*panel, "ok").front().rfind(std::string("Error: ") + text, 0), 0U) << kind << ' ' << field;
    }
}

TEST_F(PrepDefinition, FieldsAreReadInTheirOrderAndJudgedTogether) {
  const struct {
    const char* kind;
    Fields fields;
    const char* outcome;  // what is said, or the parameters of the factor
  } rows[] = {
      {"Normal", {{"TName", "  a1 "}, {"NMean", "10"}, {"NStdDeviation", "2"}}, "10, 2, 0.001, 0.999"},
      {"Normal", {{"TName", ""}}, "Error: Invalid name:    Empty name field not admitted."},
      {"Normal", {{"TName", "1a"}, {"NMean", "x"}}, kWrong},
      {"Normal", {{"TName", "a_b"}}, kWrong},
      {"Normal", {{"NMean", "x"}, {"NStdDeviation", "-1"}}, "Error: Mean value out of range!"},
      {"Normal", {{"NStdDeviation", "-1"}, {"NLeftTrunc", "x"}}, "Error: Error: Standard deviation must be >= 0"},
      {"Normal", {{"NRightTrunc", "inf"}}, "Error: Right Truncation value out of range!"},
      {"Normal", {{"NLeftTrunc", "0.5"}, {"NRightTrunc", "0.4"}},
       "Error: Error: Left Truncation must be less than right truncation"},
      {"LogNormal", {{"NLeftTrunc", "0.9995"}, {"NRightTrunc", "0.9999"}}, "0, 1, 0.9995, 0.9999"},
      {"Beta", {{"NAlfa", "0"}, {"NBeta", "b"}}, "Error: Wrong negative value assigned to Alfa"},
      {"Beta", {{"NBeta", "-1"}, {"NRightBound", "b"}}, "Error: Wrong negative value assigned to Beta"},
      {"Beta", {{"NLeftBound", "10"}, {"NRightBound", "10"}},
       "Error: Negative or null definition interval: check a and b"},
      {"Exponential", {{"NLambda", "0"}}, "Error: Error: Lambda must be > 0"},
      {"Gamma", {{"NLambda", "0"}}, "Error: Error: Lambda must be >= 0"},
      {"Weibull", {{"NN", "0"}, {"NB", "x"}}, "Error: B value out of range!"},
      {"Weibull", {{"NN", "0"}, {"NRightTrunc", "x"}}, "Error: Error: n must be > 0"},
      {"Triangular", {{"NBeta", "2"}},
       "Error: Wrong values assigned to the distribution definition interval: check alfa beta and gamma"},
      {"Constant", {{"TName", "1a"}},
       "Error: Invalid name:    Invalid factor name. The name must begin vith a letter and must contain numbers and "
       "letters only"},
      {"Constant", {{"NValue", "3.5"}}, "3.5"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.outcome);
    const std::unique_ptr<PDefinition> panel = panelOf(row.kind);
    ASSERT_EQ(panel->problems(), QStringList());
    type(*panel->window(), row.fields);
    const QString line = panel->gadget<QLabel>("MlMessage")->text();
    const Texts shown = shownBy(*panel, "ok");
    const bool refused = !shown.empty();
    EXPECT_EQ(panel->result(), refused ? PDefinition::kCancelled : PDefinition::kAccepted);
    EXPECT_EQ(refused, !line.isEmpty()) << "the message line tells what ok will say: " << line.toStdString();
    const std::unique_ptr<Factor> factor = panel->takeFactor();
    const std::string outcome = refused ? shown.front() : factorFields(*factor);
    EXPECT_EQ(outcome.substr(0, std::string(row.outcome).size()), row.outcome);
    if (!refused && factor->name != makeFactor(row.kind)->name) {
      EXPECT_EQ(factor->name, "a1");
    }
  }
}
// clang-format on

TEST_F(PrepDefinition, RowsOfIntervalsAndPointsAreJudgedAsAWhole) {
  const struct {
    const char* kind;
    Rows rows;
    const char* outcome;
  } rows[] = {
      {"Uniform", {{"0", "1", "0.5"}, {"1", "2", "0.25"}, {"5", "6", "0.25"}}, "0, 1, 0.5; 1, 2, 0.25; 5, 6, 0.25"},
      {"Uniform", {{"0", "1", "0.5"}, {"1", "2", "0.4"}}, "Error: Error: Sum of weights not equal to 1"},
      {"Uniform",
       {{"0", "2", "0.5"}, {"1", "3", "0.5"}},
       "Error: Row 2: Interval to insert overloads previous intervals stored"},
      {"Uniform", {{"0", "1", ""}}, "Error: Row 1: Weight value error"},
      {"Uniform", {{"0,5", "1", "1"}}, "Error: Row 1: '0,5' is no number"},
      {"Discrete", {{"1", "0.5"}, {"1", "0.5"}}, "Error: Row 2: The new point already exists"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.outcome);
    const std::unique_ptr<PDefinition> panel = panelOf(row.kind);
    setRows(*panel, row.rows);
    const Texts shown = shownBy(*panel, "ok");
    EXPECT_EQ(shown.empty() ? factorFields(*panel->takeFactor()) : shown.front(), row.outcome);
  }
  const std::unique_ptr<PDefinition> panel = panelOf("Discrete");
  auto* const view = panel->gadget<TableView>("MaValues");
  view->clearSelection();
  step(*panel, "del", {"Error: No row selected"});
  view->selectRow(0);
  panel->call("del");
  EXPECT_EQ(view->model()->rowCount(), 1);
  setRows(*panel, {{"7", "1"}});
  step(*panel, "save", {"Save tabulated uniform values file: save *.fac *.*"}, {}, {file("t.fac")});
  EXPECT_EQ(test::readFile(file("t.fac")), "1\n7\t1\n");
  panel->call("reset");
  EXPECT_EQ(view->model()->rowCount(), 2);
  const std::string chooser = "Select tabulated uniform values file: open *.fac *.*";
  step(*panel, "load", {chooser, "Error: Error opening tabulated values file..."}, {}, {file("none.fac")});
  step(*panel, "load", {chooser}, {}, {file("t.fac")});
  EXPECT_EQ(view->model()->rowCount(), 1);
}

TEST_F(PrepDefinition, TheGraphFollowsTheTypingAndDraftsAreNoVetoes) {
  const std::unique_ptr<PDefinition> panel = panelOf("Triangular");
  const auto upper = [&] {
    const Figure& figure = panel->gadget<ChartView>("boundGraph")->figure();
    return figure.charts.empty() ? 0.0 : std::get<XyChart>(figure.charts.front()).x.upper;
  };
  EXPECT_LT(upper(), 3.0);
  type(*panel->window(), {{"NAlfa", "10"}});  // now above the mode
  EXPECT_FALSE(panel->gadget<QLabel>("MlMessage")->text().isEmpty());
  EXPECT_LT(upper(), 3.0);
  type(*panel->window(), {{"NBeta", "15"}, {"NGamma", "20"}});
  EXPECT_EQ(panel->gadget<QLabel>("MlMessage")->text(), "");
  EXPECT_GT(upper(), 19.0);
  EXPECT_EQ(panel->gadget<QLabel>("MlSummary")->text().toStdString(),
            "Sampled: mean 15, deviation 2.041; 5\u00a0% lie below 11.58, 95\u00a0% below 18.42");
  EXPECT_TRUE(takeShown().empty());
  panel->call("reset");
  EXPECT_EQ(panel->gadget<QLineEdit>("NGamma")->text(), "2");
  const std::unique_ptr<PDefinition> normal = panelOf("Normal");
  EXPECT_EQ(normal->gadget<QLabel>("MlTruncation")->text(), "0.001 - 0.999");
  type(*normal->window(), {{"NStdDeviation", "0"}});
  step(*normal, "apply", {"Warning: Warning. Can't display function graph: undeflow error"});
}

TEST_F(PrepDefinition, AnotherKindGoesOnWithMeanDeviationAndTexts) {
  const auto list = normals(2, kDependenceTree);
  ASSERT_TRUE(list->link(1, 0, 0.5));
  const std::unique_ptr<Factor> start = makeFactorOf("Normal", {10.0, 2.0});
  whenShown("Normal Distribution", [](QWidget& window) {
    type(window, {{"TName", "flow"}, {"TNote", "m3 a s"}});
    auto* const kinds = window.findChild<QComboBox*>("ODistType");
    kinds->setCurrentText("Gamma");
    Q_EMIT kinds->activated(kinds->currentIndex());
  });
  whenShown("Gamma Distribution", [](QWidget& window) { click(window, "BOk"); });
  const std::unique_ptr<Factor> gamma = editFactor(display_, *start, {list.get(), -1, false}, nullptr);
  ASSERT_NE(gamma, nullptr);
  EXPECT_EQ(gamma->name + ' ' + gamma->note + ' ' + factorFields(*gamma), "flow m3 a s 25, 2.5, 0, 0.999");

  const std::unique_ptr<PDefinition> correlated =
      makeDefinition(display_, list->factor(1), {list.get(), 1, false}, nullptr);
  auto* const kinds = correlated->gadget<QComboBox>("ODistType");
  for (const char* const kind : {"Constant", "Relation"}) {
    kinds->setCurrentText(kind);
    step(*correlated, "distType", {"Error:    Can't change to Constant\n or Relation a correlated factor"});
    EXPECT_EQ(kinds->currentText(), "Normal");
  }
  type(*correlated->window(), {{"TName", "x1"}});
  step(*correlated, "ok", {"Error: wrong name:    The name of this factor is already in use"});
  type(*correlated->window(), {{"TName", "x2"}});
  step(*correlated, "ok", {});  // its own
}

TEST_F(PrepDefinition, ARelationIsCheckedWhereItIsWrong) {
  const auto list = normals(3);
  const std::string title = "Error in expression:  ";
  const std::string empty = title + "Empty relation field not admitted.";
  const std::string unknown = title + "Error in expression, unknown factor or wrong expression name.\n";
  const std::string failed =
      title + "Current expression cannot be evaluated.\n  Error in expression or unknown factor.\n";
  const struct {
    const char* text;
    Texts ok, apply;
    int caret = -1;  // after ok; -1: not looked at
  } rows[] = {
      {"x1 + 2 * x2", {}, {}},
      {"", {empty}, {empty}},
      {"x1 + y9 * 2", {unknown + "'y9' is no..."}, {failed + "'y9'..."}, 5},
      {"x1 + * x2", {unknown + "..."}, {failed + "..."}, 5},
      {"x1 / x2", {"Error in expression: The expression can't be kept: with every name at 0 it fails...."}, {}},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.text);
    const std::unique_ptr<PDefinition> panel = panelOf("Relation", {list.get(), -1, false});
    auto* const field = panel->gadget<QPlainTextEdit>("TeRelation");
    field->setPlainText(row.text);
    step(*panel, "apply", row.apply);
    step(*panel, "ok", row.ok);
    EXPECT_TRUE(row.caret < 0 || field->textCursor().position() == row.caret) << field->textCursor().position();
    ASSERT_EQ(panel->result() == PDefinition::kAccepted, row.ok.empty());
    if (row.ok.empty()) {
      EXPECT_EQ(factorFields(*panel->takeFactor()), row.text);
    }
  }
  // A comment ends with its line, although a file has but one.
  const std::unique_ptr<PDefinition> lines = panelOf("Relation", {list.get(), -1, false});
  lines->gadget<QPlainTextEdit>("TeRelation")->setPlainText("x1 // flow\n+ /* // */ x2");
  lines->call("ok");
  EXPECT_EQ(factorFields(*lines->takeFactor()), "x1         + /* // */ x2");
  // Put together by clicks.
  const std::unique_ptr<PDefinition> panel = panelOf("Relation", {list.get(), -1, false});
  panel->gadget<QListWidget>("SlFactors")->setCurrentRow(1);
  for (const char* const button : {"BOpenPar", "B4", "B2", "BDot", "B5", "BMultiply"}) click(*panel->window(), button);
  panel->call("addFactor");
  for (const char* const button : {"BClosePar", "BPower", "B3", "BMinus"}) click(*panel->window(), button);
  panel->gadget<QComboBox>("OFunctions")->setCurrentText("exp");
  panel->call("selFunction");
  click(*panel->window(), "B1");
  EXPECT_EQ(panel->gadget<QPlainTextEdit>("TeRelation")->toPlainText(), "(42.5*x2)**3-exp(1)");
  EXPECT_FALSE(panel->gadget<ChartView>("boundGraph")->figure().charts.empty());
}

TEST_F(PrepDefinition, InspectorsAndFormulasTellOfTheKind) {
  for (const std::string& kind : factorKinds()) {
    SCOPED_TRACE(kind);
    std::unique_ptr<Factor> factor = makeFactor(kind);
    factor->note = "a note";
    PInspector inspector(display_, *factor, nullptr);
    EXPECT_EQ(inspector.problems(), QStringList());
    EXPECT_EQ(inspector.window()->windowTitle().toStdString(), "Inspector: " + kind);
    EXPECT_EQ(inspector.gadget<QLabel>("LaFactorType")->text().toStdString(), kind);
    EXPECT_EQ(inspector.gadget<QPlainTextEdit>("TeNote")->toPlainText(), "a note");
  }
  for (const char* const kind : {"LogNormal", "LogUniform"}) {
    const std::unique_ptr<PDefinition> panel = panelOf(kind);
    EXPECT_EQ(panel->gadget<QPushButton>("BFormula")->text().toStdString(), std::string("&") + kind);
    EXPECT_EQ(shownBy(*panel, "formula").front().rfind(std::string(kind) + " distribution: f(x) = ", 0), 0U);
  }
}

}  // namespace
}  // namespace tarvex
