#include "panels/ModelFixture.h"
#include "panels/model/PIntModFacList.h"
#include "panels/model/PNewExpression.h"
#include "panels/model/PnewFactorName.h"

namespace tarvex {
namespace {

using test::Texts;

class ModelEquations : public test::ModelTest {
 protected:
  std::unique_ptr<PIntModel> editor(const InternalModel& model) {
    auto panel = std::make_unique<PIntModel>(display_, model, study(), nullptr);
    EXPECT_EQ(panel->problems(), QStringList());
    panel->window()->show();
    return panel;
  }
  // Fills the editor of one equation in, once it is shown, and presses ok, or cancel where that is refused.
  void writeEquation(const char* name, const char* text, int type = 1) {
    whenShown("PNewExpression", [=](QWidget& window) {
      window.findChild<QLineEdit*>("TExprName")->setText(name);
      window.findChild<QPlainTextEdit*>("TExpr")->setPlainText(text);
      window.findChild<QComboBox*>("SeOutType")->setCurrentIndex(type);
      click(window, "BOk");
      if (window.isVisible()) click(window, "BCancel");
    });
  }
};

// clang-format off
TEST_F(ModelEquations, EachActionRefusesInItsWordsAndOtherwiseDoesIt) {
  const std::string buttons = " [^Proceed/^Cancel]";
  const std::string asked = "Delete expression: Do you really want to delete the expression?";
  const std::string discard =
      "Warning: existing configuration: An internal model is already loaded.\n Do you wish to discard it?" + buttons;
  const std::string bad = "Error: Current expression cannot be evaluated";
  const struct {
    const char* callback;
    int row;                            // that is selected; -1: none
    std::vector<const char*> equation;  // name and text, written where an editor opens
    Texts shown;
    const char* after;    // nothing: the model stays
    bool answer = false;  // of the question
  } rows[] = {
      {"addExpression", -1, {"", "x1"}, {"Error: Expression name field empty"}, ""},
      {"addExpression", -1, {"z", " "}, {"Error: Expression field empty"}, ""},
      {"addExpression", -1, {"2z", "x1"}, {"Error: Incorrect expression name"}, ""},
      {"addExpression", -1, {"y", "x1"}, {"Error: Expression name already in the list"}, ""},
      {"addExpression", -1, {"z", "x1 +"}, {bad + "\n Syntax error.\nMissing expression at character 5 of 'x1 +'"}, ""},
      {"addExpression", -1, {"z", "x1 + q"}, {bad + ".\n Unknown Variable.\nunknown name 'q'"}, ""},
      {"addExpression", -1, {"z", "y / t"}, {}, "x1 x2 x3 | t := x1 * x2 | y = t + x3 | z := y / t "},
      {"modifyExpression", -1, {}, {"Error: No row selected"}, ""},
      {"modifyExpression", 0, {"y", "x1"}, {"Error: Variable already inserted in the list"}, ""},
      {"doubleClick", 0, {"u", "x1"}, {}, "x1 x2 x3 | u := x1 | y = u + x3 "},
      {"deleteExpression", -1, {}, {"Error: No row selected"}, ""},
      {"deleteExpression", 1, {}, {asked + buttons}, ""},
      {"deleteExpression", 0, {}, {asked + "\nt is used by y." + buttons,
                                   "Error: The expression is in use, I can't delete it\nt is used by y."}, "", true},
      {"deleteExpression", 1, {}, {asked + buttons}, "x1 x2 x3 | t := x1 * x2 ", true},
      {"moveUp", 1, {}, {}, ""},  // above what it uses
      {"newModel", -1, {}, {discard}, ""},
      {"newModel", -1, {}, {discard}, "x1 x2 x3 ", true},
      {"open", -1, {}, {"Select the internal model to load: open *.imd", "Error: Error reading the internal model file\n" +
                        file("bad.imd") + ":2: expected the number of variables, found 'x'"}, ""},
  };
  // clang-format on
  test::writeFile(file("bad.imd"), "name\nx\n");
  const InternalModel model = modelOf({{"-t", "x1 * x2"}, {"y", "t + x3"}});
  for (const auto& row : rows) {
    SCOPED_TRACE(row.callback + (row.equation.empty() ? std::string() : std::string(" ") + row.equation[1]));
    const auto panel = editor(model);
    select(*panel, "MaExpress", row.row);
    if (!row.equation.empty()) writeEquation(row.equation[0], row.equation[1], 0);
    step(*panel, row.callback, row.shown, {row.answer}, {file("bad.imd")});
    QApplication::processEvents();
    const bool stays = *row.after == '\0';
    EXPECT_EQ(described(panel->model()), stays ? described(model) : row.after);
    EXPECT_EQ(panel->window()->isWindowModified(), !stays);
    EXPECT_TRUE(panel->window()->isVisible());
    if (!stays) panel->call("undo");
    QApplication::processEvents();
  }
  const auto panel = editor(model);
  panel->gadget<QLineEdit>("TModelName")->setText("a b");
  step(*panel, "ok", {"Error: the name holds white space"});
  auto* const grid = panel->gadget<TableView>("MaExpress")->model();
  EXPECT_FALSE(grid->setData(grid->index(1, 1), "t + "));
  EXPECT_FALSE(grid->setData(grid->index(1, 2), "input"));
  EXPECT_TRUE(grid->setData(grid->index(1, 1), "t - x3"));
  EXPECT_TRUE(grid->setData(grid->index(0, 2), "output"));
  EXPECT_EQ(described(panel->model()), "x1 x2 x3 | t = x1 * x2 | y = t - x3 ");
  dialogs_.answers = {false};  // to save it first
  panel->call("newModel");
  EXPECT_EQ(described(panel->model()), "x1 x2 x3 ");
}

TEST_F(ModelEquations, ValuesFollowTheTrialRowAndFailuresSayWhy) {
  const auto panel = editor(modelOf({{"-t", "x1 / x2"}, {"y", "t + x3"}, {"late", "x1"}}));
  EXPECT_EQ(column(*panel, "MaExpress", 3), "0.5 3.5 1 ");
  panel->gadget<QSpinBox>("NTrialRow")->setValue(2);
  EXPECT_EQ(column(*panel, "MaExpress", 3), "Divide by Zero t has no value 4 ");
  panel->gadget<QComboBox>("OTrial")->setCurrentIndex(1);
  panel->call("trialRow");
  EXPECT_EQ(column(*panel, "MaExpress", 3), "2.5 7 2.5 ");
  select(*panel, "MaExpress", 0);
  EXPECT_EQ(label(*panel, "MlMessage"), "t is used by y.");
  QTest::keyClick(panel->gadget<TableView>("MaExpress"), Qt::Key_Down, Qt::AltModifier);
  EXPECT_EQ(label(*panel, "MlMessage"), "y uses t and has to stay below it.");
  select(*panel, "MaExpress", 2);
  panel->call("moveUp");
  panel->call("moveUp");
  EXPECT_EQ(column(*panel, "MaExpress", 0), "late t y ");
  panel->call("undo");
  panel->call("undo");
  EXPECT_EQ(column(*panel, "MaExpress", 0), "t y late ");
  EXPECT_FALSE(panel->window()->isWindowModified());
  panel->call("redo");
  EXPECT_EQ(column(*panel, "MaExpress", 0), "t late y ");
}

TEST_F(ModelEquations, TheEndAsksForChangesAndFilesKeepThem) {
  const std::string asked = "Warning: model edited: The model has been edited.\nDo you want to ";
  const auto panel = editor(modelOf({{"y", "x1"}}));
  step(*panel, "exit", {});  // without a change nothing is asked
  panel->window()->show();
  auto* const grid = panel->gadget<TableView>("MaExpress")->model();
  EXPECT_TRUE(grid->setData(grid->index(0, 1), "x1 + 1"));
  step(*panel, "exit", {asked + "lose changes? [^Proceed/^Cancel]"});
  EXPECT_TRUE(panel->isVisible());
  step(*panel, "save", {"Save the internal model: save *.imd"}, {}, {file("a.imd")});
  EXPECT_FALSE(panel->window()->isWindowModified());
  EXPECT_TRUE(grid->setData(grid->index(0, 1), "x1 + 2"));
  step(*panel, "ok", {asked + "save changes in a file? [^Yes/^No]"}, {true});
  EXPECT_TRUE(panel->accepted());
  InternalModel saved;
  std::string message;
  EXPECT_TRUE(loadModelFile(file("a.imd"), saved, message)) << message;
  EXPECT_EQ(described(saved), "x1 x2 x3 | y = x1 + 2 ");
  // A directory in the file's place.
  std::filesystem::create_directory(file("b.imd"));
  step(*panel, "saveAs", {"Save the internal model: save *.imd", "Error: Error writing the internal model file\n..."},
       {}, {file("b.imd")});
  EXPECT_TRUE(grid->setData(grid->index(0, 1), "x1 + 3"));
  step(*panel, "open", {asked + "save changes? [^Yes/^No]", "Select the internal model to load: open *.imd"}, {true},
       {file("a.imd")});  // saved, then read
  EXPECT_EQ(described(panel->model()), "x1 x2 x3 | y = x1 + 3 ");
}

TEST_F(ModelEquations, AnEquationIsJudgedMarkedAndComputedWhileItIsTyped) {
  const struct {
    const char* name;
    const char* text;
    const char* message;
    int caret;  // after a refusal; -1: not refused
    const char* value;
  } rows[] = {
      {"z", "x1 * y", "", -1, "At row 1: 3"},
      {"z", "x1 + * x2", "Unexpected '*' at character 6 of 'x1 + * x2'", 5, ""},
      {"z", "x1 + q9 + 1", "unknown name 'q9', at character 6", 5, ""},
      {"z", "max(x1, 2)", "unknown function 'max', at character", -2, ""},
      {"z", "1 / (x1 - 1)", "", -1, "At row 1: Divide by Zero"},
      {"y", "x1", "Expression name already in the list", -2, "At row 1: 1"},
      {"x1", "x2", "x1 is an input, too: equations below this one read the input.", -1, "At row 1: 2"},
  };
  const InternalModel model = modelOf({{"y", "x3"}});
  for (const auto& row : rows) {
    SCOPED_TRACE(row.text);
    QString refused = "No";
    PNewExpression panel(display_,
                         {model,
                          1,
                          {1.0, 2.0, 3.0},
                          "row 1",
                          [&](const EquationDraft& draft, QString& problem) {
                            InternalModel copy = model;
                            const bool taken = copy.addExpression(1, draft.name, draft.text, draft.type);
                            refused = taken ? "" : QString::fromStdString(copy.errorText());
                            problem = refused;
                            return taken;
                          }},
                         nullptr);
    EXPECT_EQ(panel.problems(), QStringList());
    panel.gadget<QLineEdit>("TExprName")->setText(row.name);
    panel.gadget<QPlainTextEdit>("TExpr")->setPlainText(row.text);
    panel.call("edited");
    EXPECT_EQ(label(panel, "MlMessage").rfind(row.message, 0), 0U) << label(panel, "MlMessage");
    EXPECT_EQ(label(panel, "MlValue"), row.value);
    panel.call("add");
    EXPECT_EQ(panel.accepted(), row.caret == -1);
    EXPECT_EQ(takeShown().size(), row.caret == -1 ? 0U : 1U);
    if (row.caret >= 0) {
      EXPECT_EQ(panel.gadget<QPlainTextEdit>("TExpr")->textCursor().position(), row.caret);
    }
  }
}

TEST_F(ModelEquations, NamesAreOfferedAndPutAtTheCaret) {
  const InternalModel model = modelOf({{"yield", "x3"}, {"last", "x1"}});
  PNewExpression panel(display_, {model, 1}, nullptr);
  panel.window()->show();
  auto* const field = panel.gadget<QPlainTextEdit>("TExpr");
  field->clear();
  field->setFocus();
  ASSERT_TRUE(QTest::qWaitForWindowActive(panel.window()));
  QTest::keyClicks(field, "2 * yi");
  QWidget* const popup = QApplication::activePopupWidget();
  ASSERT_NE(popup, nullptr);
  QTest::keyClick(popup, Qt::Key_Tab);
  EXPECT_EQ(field->toPlainText(), "2 * yield");
  panel.gadget<QListWidget>("SlFactors")->setCurrentRow(1);
  panel.call("power");
  panel.call("selFactors");
  panel.call("openPar");
  panel.gadget<QComboBox>("OFunctions")->setCurrentText("sqrt");
  panel.call("selFunction");
  EXPECT_EQ(field->toPlainText(), "2 * yield**x2(sqrt()");
  EXPECT_EQ(panel.gadget<QListWidget>("SlResults")->count(), 1);  // none of itself and those below
  EXPECT_EQ(label(panel, "MlValue"), "There are no factors to try it with.");
}

TEST_F(ModelEquations, InputsAreAddedRenamedMovedAndDeleted) {
  const std::string kOne = "Delete: Do you really want to delete the selected factor";
  const std::string kInUse = "Error: Factor currently in use, I can't delete it\nx1 is used by y.";
  const std::string kButtons = " [^Yes/^No]";
  const Texts none{"Error: No Factor selected"};
  const struct {
    const char* callback;
    int row;            // that is selected; -1: none
    const char* typed;  // in the field
    Texts shown;
    const char* after;    // nothing: the inputs stay
    bool answer = false;  // of the question
  } rows[] = {
      {"textEdit", -1, "", {"Error: New Factor text field empty"}, ""},
      {"addFactor", -1, "a b", {"Error: Incorrect factor name"}, ""},
      {"textEdit", -1, "x1", {"Error: Factor already inserted in the list"}, ""},
      {"textEdit", -1, " b ", {}, "x1 x2 x3 b "},
      {"moveUp", -1, "", none, ""},
      {"moveDown", -1, "", none, ""},
      {"deleteFac", -1, "", none, ""},
      {"modify", -1, "", none, ""},
      {"moveUp", 0, "", {}, ""},
      {"moveDown", 0, "", {}, "x2 x1 x3 "},
      {"deleteFac", 2, "", {kOne + kButtons}, ""},
      {"deleteFac", 0, "", {kOne + "\nx1 is used by y." + kButtons, kInUse}, "", true},
      {"deleteFac", 2, "", {kOne + kButtons}, "x1 x2 ", true},
  };
  const InternalModel model = modelOf({{"x12", "x2"}, {"y", "x1 * x1 + x12"}});
  const std::string equations = "| x12 = x2 | y = x1 * x1 + x12 ";
  for (const auto& row : rows) {
    SCOPED_TRACE(row.callback + std::string(" ") + row.typed);
    PIntModFacList panel(display_, model, nullptr);
    EXPECT_EQ(panel.problems(), QStringList());
    panel.gadget<QLineEdit>("TeNewFactor")->setText(row.typed);
    select(panel, "MaIntModFactors", row.row);
    step(panel, row.callback, row.shown, {row.answer});
    dialogs_.answers.clear();
    EXPECT_EQ(described(panel.model()), (*row.after == '\0' ? "x1 x2 x3 " : row.after) + equations);
    EXPECT_EQ(panel.changed(), *row.after != '\0');
    EXPECT_EQ(shownBy(panel, "cancel").size(), panel.changed() ? 1U : 0U);
  }
  PIntModFacList all(display_, model, nullptr);
  select(all, "MaIntModFactors", 2);
  all.call("moveUp");
  all.call("moveUp");
  step(all, "delAll", {"Delete: Do you really want to delete all factors" + kButtons, kInUse}, {true});
  EXPECT_EQ(described(all.model()), "x1 x2 " + equations);
  PIntModFacList panel(display_, model, nullptr);
  panel.window()->show();
  select(panel, "MaIntModFactors", 0);
  whenShown("PnewFactorName", [&](QWidget& window) {
    EXPECT_EQ(window.findChild<QLabel*>("MlUses")->text().toStdString().rfind("x1 is used by y.", 0), 0U);
    for (const char* const name : {"", "x2", "a"}) {
      window.findChild<QLineEdit*>("TeNewName")->setText(name);
      click(window, "BOk");
    }
  });
  step(panel, "modify", {"Error: New Factor text field empty", "Error: Factor already inserted in the list"});
  EXPECT_EQ(described(panel.model()), "a x2 x3 | x12 = x2 | y = a * x1 + x12 ");
  EXPECT_EQ(label(panel, "MlMessage"), "x1 still stands in y, and reads as 0 there.");
  activate(*panel.window());
  QTest::keySequence(panel.window(), QKeySequence::Undo);
  EXPECT_EQ(described(panel.model()), described(model));
}

TEST_F(ModelEquations, LargeModelsAreEditedAsSmallOnes) {
  InternalModel model;  // without inputs: a table of the language holds 499 names
  for (int i = 0; i < InternalModel::kMaxExpressions; ++i)
    ASSERT_TRUE(model.addExpression(i, "y" + std::to_string(i), std::to_string(i), 1)) << i;
  const auto panel = editor(model);
  writeEquation("more", "1");
  step(*panel, "addExpression", {"Error: Too much expressions: max number of expression 500"});
  auto* const grid = panel->gadget<TableView>("MaExpress")->model();
  EXPECT_EQ(grid->data(grid->index(498, 3)).toString(), "498");
  std::string longOne = "y1";
  while (longOne.size() < 100'000) longOne += " + 2 * 3.5";
  EXPECT_TRUE(grid->setData(grid->index(2, 1), QString::fromStdString(longOne)));
  EXPECT_FALSE(grid->setData(grid->index(2, 1), QString::fromStdString(longOne + " +")));
  EXPECT_EQ(panel->model().expressions()[2].text, longOne);
}

}  // namespace
}  // namespace tarvex
