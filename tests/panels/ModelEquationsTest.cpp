#include "panels/ModelFixture.h"
#include "panels/model/PIntModFacList.h"
#include "panels/model/PNewExpression.h"
#include "panels/model/PnewFactorName.h"

namespace tarvex {
namespace {

using test::Texts;

// What a user does to a list of the model, and what comes of it.
struct Action {
  const char* callback;
  int row;                         // that is selected; -1: none
  std::vector<const char*> typed;  // name and text of an equation, name of an input
  Texts shown;
  const char* after = "";  // the model then; nothing: as it was
  bool answer = false;     // of the question
};

class ModelEquations : public test::ModelTest {
 protected:
  static constexpr const char* kGrid = "MaExpress";

  // Fills the editor of one equation in, once it is shown, looks at what it says and presses ok; where that is refused,
  // at the caret, and cancels.
  void writeEquation(const char* name, const char* text) {
    whenShown("PNewExpression", [=, this](QWidget& window) {
      auto* const field = window.findChild<QPlainTextEdit*>("TExpr");
      window.findChild<QLineEdit*>("TExprName")->setText(name);
      field->setPlainText(text);
      window.findChild<QComboBox*>("SeOutType")->setCurrentIndex(0);
      said_ = said(window) + '|' + said(window, "MlValue");
      click(window, "BOk");
      caret_ = window.isVisible() ? field->textCursor().position() : -1;
      if (window.isVisible()) click(window, "BCancel");
    });
  }

  std::string said_;  // while an equation was written
  int caret_ = -1;
  const std::string edited_ = "Warning: model edited: The model has been edited.\nDo you want to ";
};

TEST_F(ModelEquations, EachActionRefusesInItsWordsAndOtherwiseDoesIt) {
  const std::string buttons = " [^Proceed/^Cancel]";
  const std::string asked = "Delete expression: Do you really want to delete the expression?";
  const std::string bad = "Error: Current expression cannot be evaluated";
  const Texts none{"Error: No row selected"};
  // clang-format off
  const Action rows[] = {
      {"addExpression", -1, {"", "x1"}, {"Error: Expression name field empty"}},
      {"addExpression", -1, {"z", " "}, {"Error: Expression field empty"}},
      {"addExpression", -1, {"2z", "x1"}, {"Error: Incorrect expression name"}},
      {"addExpression", -1, {"y", "x1"}, {"Error: Expression name already in the list"}},
      {"addExpression", -1, {"z", "x1 +"}, {bad + "\n Syntax error.\nMissing expression at character 5 of 'x1 +'"}},
      {"addExpression", -1, {"z", "x1 + q"}, {bad + ".\n Unknown Variable.\nunknown name 'q'"}},
      {"addExpression", -1, {"z", "y / t"}, {}, "x1 x2 x3 | t := x1 * x2 | y = t + x3 | z := y / t "},
      {"modifyExpression", -1, {}, none},
      {"modifyExpression", 0, {"y", "x1"}, {"Error: Variable already inserted in the list"}},
      {"doubleClick", 0, {"u", "x1"}, {}, "x1 x2 x3 | u := x1 | y = u + x3 "},
      {"deleteExpression", -1, {}, none},
      {"deleteExpression", 1, {}, {asked + buttons}},
      {"deleteExpression", 0, {}, {asked + "\nt is used by y." + buttons,
                                   "Error: The expression is in use, I can't delete it\nt is used by y."}, "", true},
      {"deleteExpression", 1, {}, {asked + buttons}, "x1 x2 x3 | t := x1 * x2 ", true},
      {"moveUp", 1, {}, {}},  // above what it uses
      {"newModel", -1, {}, {test::kDiscards}},
      {"newModel", -1, {}, {test::kDiscards}, "x1 x2 x3 ", true},
      {"open", -1, {}, {"Select the internal model to load: open *.imd", "Error: Error reading the internal model file\n" +
                        file("bad.imd") + ":2: expected the number of variables, found 'x'"}},
  };
  // clang-format on
  test::writeFile(file("bad.imd"), "name\nx\n");
  const InternalModel model = modelOf({{"-t", "x1 * x2"}, {"y", "t + x3"}});
  for (const Action& row : rows) {
    SCOPED_TRACE(row.callback + testing::PrintToString(row.typed));
    const auto panel = shown<PIntModel>(model);
    select(*panel, kGrid, row.row);
    if (!row.typed.empty()) writeEquation(row.typed[0], row.typed[1]);
    step(*panel, row.callback, row.shown, {row.answer}, {file("bad.imd")});
    const bool stays = *row.after == '\0';
    EXPECT_EQ(described(panel->model()), stays ? described(model) : row.after);
    EXPECT_EQ(panel->window()->isWindowModified(), !stays);
    EXPECT_TRUE(panel->window()->isVisible());
    panel->call("undo");
    EXPECT_EQ(described(panel->model()), described(model));
    QApplication::processEvents();
  }
}

TEST_F(ModelEquations, TheGridTakesWhatTheModelTakes) {
  const auto panel = shown<PIntModel>(modelOf({{"-t", "x1 * x2"}, {"y", "t + x3"}}));
  panel->gadget<QLineEdit>("TModelName")->setText("a b");
  step(*panel, "ok", {"Error: the name holds white space"});
  EXPECT_FALSE(put(*panel, kGrid, 1, 1, "t + "));
  EXPECT_FALSE(put(*panel, kGrid, 1, 2, "input"));
  EXPECT_TRUE(put(*panel, kGrid, 1, 1, "t - x3"));
  EXPECT_TRUE(put(*panel, kGrid, 0, 2, "output"));
  paste(*panel->gadget<TableView>(kGrid), 0, 0, "y\tt\nz\tx1 / t\tinternal");
  EXPECT_EQ(described(panel->model()), "x1 x2 x3 | t = x1 * x2 | y = t | z := x1 / t ");
  paste(*panel->gadget<TableView>(kGrid), 0, 0, "t\tx1\nq\tx1 /");  // all of it or nothing
  EXPECT_EQ(label(*panel, "MlMessage").rfind("Current expression cannot be evaluated", 0), 0U);
  EXPECT_EQ(column(*panel, kGrid, 1), "x1 * x2 t x1 / t ");
  step(*panel, "newModel", {edited_ + "save changes? [^Yes/^No]"});
  EXPECT_EQ(described(panel->model()), "x1 x2 x3 ");
}

TEST_F(ModelEquations, ValuesFollowTheTrialRowAndFailuresSayWhy) {
  const auto panel = shown<PIntModel>(modelOf({{"-t", "x1 / x2"}, {"y", "t + x3"}, {"late", "x1"}}));
  EXPECT_EQ(column(*panel, kGrid, 3), "0.5 3.5 1 ");
  panel->gadget<QSpinBox>("NTrialRow")->setValue(2);
  EXPECT_EQ(column(*panel, kGrid, 3), "Divide by Zero t has no value 4 ");
  panel->gadget<QComboBox>("OTrial")->setCurrentIndex(1);
  panel->call("trialRow");
  EXPECT_EQ(column(*panel, kGrid, 3), "2.5 7 2.5 ");
  select(*panel, kGrid, 0);
  EXPECT_EQ(label(*panel, "MlMessage"), "t is used by y.");
  QTest::keyClick(panel->gadget<TableView>(kGrid), Qt::Key_Down, Qt::AltModifier);
  EXPECT_EQ(label(*panel, "MlMessage"), "y uses t and has to stay below it.");
  select(*panel, kGrid, 2);
  const std::pair<const char*, const char*> orders[] = {{"moveUp", "t late y "}, {"moveUp", "late t y "},
                                                        {"undo", "t late y "},   {"undo", "t y late "},
                                                        {"redo", "t late y "},   {"undo", "t y late "}};
  for (const auto& [callback, order] : orders) {
    panel->call(callback);
    EXPECT_EQ(column(*panel, kGrid, 0), order);
    EXPECT_EQ(panel->window()->isWindowModified(), order != std::string("t y late "));
  }
}

TEST_F(ModelEquations, TheEndAsksForChangesAndFilesKeepThem) {
  const std::string saves = "Save the internal model: save *.imd";
  const auto panel = shown<PIntModel>(modelOf({{"y", "x1"}}));
  step(*panel, "exit", {});  // without a change nothing is asked
  panel->window()->show();
  EXPECT_TRUE(put(*panel, kGrid, 0, 1, "x1 + 1"));
  step(*panel, "exit", {edited_ + "lose changes? [^Proceed/^Cancel]"});
  EXPECT_TRUE(panel->isVisible());
  step(*panel, "save", {saves}, {}, {file("a.imd")});
  EXPECT_FALSE(panel->window()->isWindowModified());
  EXPECT_TRUE(put(*panel, kGrid, 0, 1, "x1 + 2"));
  step(*panel, "ok", {edited_ + "save changes in a file? [^Yes/^No]"}, {true});
  EXPECT_TRUE(panel->accepted());
  EXPECT_NE(test::readFile(file("a.imd")).find("\ny\nx1 + 2\n"), std::string::npos);
  std::filesystem::create_directory(file("b.imd"));  // in the file's place
  step(*panel, "saveAs", {saves, "Error: Error writing the internal model file\n..."}, {}, {file("b.imd")});
  EXPECT_TRUE(put(*panel, kGrid, 0, 1, "x1 + 3"));
  step(*panel, "open", {edited_ + "save changes? [^Yes/^No]", "Select the internal model to load: open *.imd"}, {true},
       {file("a.imd")});  // saved, then read
  EXPECT_EQ(described(panel->model()), "x1 x2 x3 | y = x1 + 3 ");
}

TEST_F(ModelEquations, AnEquationIsJudgedMarkedAndComputedWhileItIsTyped) {
  const struct {
    const char* name;
    const char* text;
    const char* said;  // message and value
    int caret;         // after a refusal; -1: it is taken
  } rows[] = {
      {"z", "x1 * y", "|At row 1: 3", -1},
      {"z", "x1 + * x2", "Unexpected '*' at character 6 of 'x1 + * x2'|", 5},
      {"z", "x1 + q9 + 1", "unknown name 'q9', at character 6|", 5},
      {"z", "2 * max(x1, 2)", "unknown function 'max', at character 5|", 4},
      {"z", "1 / (x1 - 1)", "|At row 1: Divide by Zero", -1},
      {"y", "x1", "Expression name already in the list|At row 1: 1", 0},
      {"x1", "x2", "x1 is an input, too: equations below this one read the input.|At row 1: 2", -1},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.text);
    const auto panel = shown<PIntModel>(modelOf({{"y", "x3"}}));
    writeEquation(row.name, row.text);
    panel->call("addExpression");
    EXPECT_EQ(said_, row.said);
    EXPECT_EQ(caret_, row.caret);
    EXPECT_EQ(takeShown().empty(), row.caret == -1);
    EXPECT_EQ(panel->model().numExpressions(), row.caret == -1 ? 2 : 1);
  }
}

TEST_F(ModelEquations, NamesAreOfferedAndPutAtTheCaret) {
  PNewExpression panel(display_, {modelOf({{"yield", "x3"}, {"last", "x1"}}), 1}, nullptr);
  EXPECT_EQ(panel.problems(), QStringList());
  panel.window()->show();
  auto* const field = panel.gadget<QPlainTextEdit>("TExpr");
  field->clear();
  field->setFocus();
  activate(*panel.window());
  QTest::keyClicks(field, "2 * yi");
  QWidget* const popup = QApplication::activePopupWidget();
  ASSERT_NE(popup, nullptr);
  QTest::keyClick(popup, Qt::Key_Tab);
  EXPECT_EQ(field->toPlainText(), "2 * yield");
  panel.gadget<QListWidget>("SlFactors")->setCurrentRow(1);
  panel.gadget<QComboBox>("OFunctions")->setCurrentText("sqrt");
  for (const char* const callback : {"power", "selFactors", "openPar", "selFunction"}) panel.call(callback);
  EXPECT_EQ(field->toPlainText(), "2 * yield**x2(sqrt()");
  EXPECT_EQ(panel.gadget<QListWidget>("SlResults")->count(), 1);  // none of itself and those below
  EXPECT_EQ(label(panel, "MlValue"), "There are no factors to try it with.");
}

TEST_F(ModelEquations, InputsAreAddedRenamedMovedAndDeleted) {
  const std::string one = "Delete: Do you really want to delete the selected factor";
  const std::string inUse = "Error: Factor currently in use, I can't delete it\nx1 is used by y.";
  const std::string buttons = " [^Yes/^No]";
  const Texts none{"Error: No Factor selected"};
  const Action rows[] = {
      {"textEdit", -1, {""}, {"Error: New Factor text field empty"}},
      {"addFactor", -1, {"a b"}, {"Error: Incorrect factor name"}},
      {"textEdit", -1, {"x1"}, {"Error: Factor already inserted in the list"}},
      {"textEdit", -1, {" b "}, {}, "x1 x2 x3 b "},
      {"moveUp", -1, {}, none},
      {"deleteFac", -1, {}, none},
      {"modify", -1, {}, none},
      {"moveUp", 0, {}, {}},
      {"moveDown", 0, {}, {}, "x2 x1 x3 "},
      {"deleteFac", 2, {}, {one + buttons}},
      {"deleteFac", 0, {}, {one + "\nx1 is used by y." + buttons, inUse}, "", true},
      {"deleteFac", 2, {}, {one + buttons}, "x1 x2 ", true},
  };
  const InternalModel model = modelOf({{"x12", "x2"}, {"y", "x1 * x1 + x12"}});
  const std::string equations = "| x12 = x2 | y = x1 * x1 + x12 ";
  for (const Action& row : rows) {
    SCOPED_TRACE(row.callback + testing::PrintToString(row.typed));
    PIntModFacList panel(display_, model, nullptr);
    EXPECT_EQ(panel.problems(), QStringList());
    if (!row.typed.empty()) panel.gadget<QLineEdit>("TeNewFactor")->setText(row.typed[0]);
    select(panel, "MaIntModFactors", row.row);
    step(panel, row.callback, row.shown, {row.answer});
    const bool stays = *row.after == '\0';
    EXPECT_EQ(described(panel.model()), stays ? described(model) : row.after + equations);
    EXPECT_EQ(panel.changed(), !stays);
    step(panel, "cancel", stays ? Texts() : Texts{edited_ + "lose changes? [^Proceed/^Cancel]"});
  }
  PIntModFacList panel(display_, model, nullptr);
  panel.window()->show();
  select(panel, "MaIntModFactors", 2);
  for (int i = 0; i < 2; ++i) panel.call("moveUp");
  step(panel, "delAll", {"Delete: Do you really want to delete all factors" + buttons, inUse}, {true});
  EXPECT_EQ(described(panel.model()), "x1 x2 " + equations);
  select(panel, "MaIntModFactors", 0);
  whenShown("PnewFactorName", [](QWidget& window) {
    EXPECT_EQ(said(window, "MlUses").rfind("x1 is used by y.", 0), 0U);
    for (const char* const name : {"", "x2", "a"}) {
      window.findChild<QLineEdit*>("TeNewName")->setText(name);
      click(window, "BOk");
    }
  });
  step(panel, "modify", {"Error: New Factor text field empty", "Error: Factor already inserted in the list"});
  EXPECT_EQ(described(panel.model()), "a x2 | x12 = x2 | y = a * x1 + x12 ");
  EXPECT_EQ(label(panel, "MlMessage"), "x1 still stands in y, and reads as 0 there.");
  activate(*panel.window());
  QTest::keySequence(panel.window(), QKeySequence::Undo);
  EXPECT_EQ(described(panel.model()), "x1 x2 " + equations);
}

TEST_F(ModelEquations, LargeModelsAreEditedAsSmallOnes) {
  InternalModel model;  // without inputs: a table of the language holds 499 names
  for (int i = 0; i < InternalModel::kMaxExpressions; ++i)
    ASSERT_TRUE(model.addExpression(i, "y" + std::to_string(i), std::to_string(i), 1)) << i;
  const auto panel = shown<PIntModel>(model);
  writeEquation("more", "1");
  step(*panel, "addExpression", {"Error: Too much expressions: max number of expression 500"});
  EXPECT_NE(column(*panel, kGrid, 3).find(" 497 498 "), std::string::npos);
  std::string longOne = "y1";
  while (longOne.size() < 100'000) longOne += " + 2 * 3.5";
  EXPECT_TRUE(put(*panel, kGrid, 2, 1, longOne));
  EXPECT_FALSE(put(*panel, kGrid, 2, 1, longOne + " +"));
  EXPECT_EQ(panel->model().expressions()[2].text, longOne);
}

}  // namespace
}  // namespace tarvex
