#include <QTextBlock>

#include "app/ModelTrial.h"
#include "panels/MainPanelFixture.h"
#include "panels/ModelFixture.h"
#include "panels/model/PExternal.h"
#include "panels/model/PTryRun.h"
#include "support/ScriptedApplication.h"

namespace tarvex {
namespace {

using test::Texts;

ModelChoice externalModel(const std::string& executable, const std::string& output) {
  ModelChoice choice;
  choice.setExternal(executable, output, 0);
  choice.kind = kExternalExecutable;
  return choice;
}

ModelChoice workbookModel(const std::string& path, const WorkbookCells& cells = {}) {
  ModelChoice choice = externalModel("Excel Application", path);
  choice.spreadsheet = 1;
  choice.cells = cells;
  return choice;
}

class ModelExternal : public test::ModelTest {
 protected:
  ModelExternal() {
    test::writeScript(file("model"), "");
    test::writeFile(file("y.out"), "1\ny\ntime = no\n1\n5\n");
    test::writeFile(file("a.imd"), "name\n1\nx1\n0\n1\ny\nx1\n1\n0\nnofile\n");
    test::writeFile(file("none.imd"), "name\n1\nx1\n0\n1\ny\nx1\n0\n0\nnofile\n");
  }
  std::unique_ptr<PExternal> open(const ModelChoice& choice = {}) {
    auto panel = std::make_unique<PExternal>(display_, choice, study(), nullptr);
    EXPECT_EQ(panel->problems(), QStringList());
    panel->window()->show();
    return panel;
  }
  static void fill(PExternal& panel, int model, bool execute, bool workbook, const std::string& program,
                   const std::string& output) {
    panel.gadget<QComboBox>("SeSwitchModel")->setCurrentIndex(model);
    panel.call("switchModel");
    panel.gadget<QCheckBox>("TModelExe")->setChecked(execute);
    panel.call("switchExternalExe");
    panel.gadget<QCheckBox>("TExcel")->setChecked(workbook);
    panel.call("switchExcel");
    if (!workbook) panel.gadget<QLineEdit>("CModel")->setText(QString::fromStdString(program));
    panel.gadget<QLineEdit>("TOutput")->setText(QString::fromStdString(output));
  }
  std::string insensitive(PExternal& panel) {
    std::string names;
    for (const char* const name :
         {"CModel", "TModelName", "BModel", "TOutput", "BOutputFile", "TModelExe", "TExcel", "MaCells", "TIntModelFile",
          "BInternalModel", "BCreateNewIntModel", "BModifyInternalModel"})
      if (!panel.gadget<QWidget>(name)->isEnabled()) names += std::string(name) + ' ';
    return names;
  }
};

TEST_F(ModelExternal, OkTakesAModelOrRefusesInItsWords) {
  const std::string program = file("model");
  const std::string output = file("y.out");
  const struct {
    const char* name;
    int model;
    bool execute, workbook;
    std::string program, output;
    std::string shown;  // what it begins with
    int kind;
  } rows[] = {
      {"program", 0, true, false, program, file("new.out"), "", 1},
      {"no program", 0, true, false, "", output, "Error: Empty field:    Empty fields not admitted", 0},
      {"no output", 0, true, false, program, "", "Error: Empty field:    Empty fields not admitted", 0},
      {"program gone", 0, true, false, file("gone"), output,
       "Error: No executable file:    Error checking model executable\n" + file("gone") + ": No such file", 0},
      {"a directory", 0, true, false, directory_.path(), output,
       "Error: No executable file:    Error checking model executable\n" + directory_.path() + ": Is a directory", 0},
      {"its own program", 0, true, false, program, program,
       "Error: Wrong output file:    No output model file\n" + program + ": this is the program itself", 0},
      {"read only", 0, false, false, "", output, "", 2},
      {"nothing to read", 0, false, false, "", file("gone"),
       "Error: Wrong output file:    No output model file\n" + file("gone") + ": No such file", 0},
      {"no file to read", 0, false, false, program, "", "Error: Empty field:    Empty fields not admitted", 0},
      {"a directory to read", 0, false, false, "", directory_.path(),
       "Error: Wrong output file:    No output model file\n" + directory_.path() + ": Is a directory", 0},
      {"workbook", 0, true, true, "", file("book.ods"), "", 1},
      {"workbook to read", 0, false, true, "", output, "", 2},
      {"too long", 0, true, false, std::string(300, 'a'), output, "Error: Path too long: ", 0},
      {"no equations", 1, true, false, "", "", "Error: No model loaded:    No internal model loaded", 0},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    const auto panel = open();
    fill(*panel, row.model, row.execute, row.workbook, row.program, row.output);
    step(*panel, "ok", row.shown.empty() ? Texts() : Texts{row.shown + "..."});
    EXPECT_EQ(panel->accepted(), row.shown.empty());
    if (!panel->accepted()) {
      EXPECT_EQ(panel->choice().kind, kNoModelToStart);
      EXPECT_EQ(panel->choice().executable + panel->choice().outputFile, "");
      EXPECT_FALSE(label(*panel, "MlMessage").empty() && row.model == 0);
      continue;
    }
    EXPECT_EQ(panel->choice().kind, row.kind);
    EXPECT_EQ(panel->choice().spreadsheet, row.workbook ? 1 : 0);
    EXPECT_EQ(panel->choice().executable, row.workbook ? "Excel Application" : row.program);
    EXPECT_EQ(panel->choice().outputFile, row.output);
  }
}

TEST_F(ModelExternal, GadgetsFollowTheSwitches) {
  const std::string equations = "TIntModelFile BInternalModel BCreateNewIntModel BModifyInternalModel ";
  const struct {
    int model;
    bool execute, workbook;
    std::string insensitive;
  } rows[] = {
      {0, true, false, "MaCells " + equations},
      {0, false, false, "CModel TModelName BModel MaCells " + equations},
      {0, true, true, "BModel " + equations},
      {0, false, true, "CModel TModelName BModel MaCells " + equations},
      {1, true, false, "CModel TModelName BModel TOutput BOutputFile TModelExe TExcel MaCells BModifyInternalModel "},
  };
  for (const auto& row : rows) {
    const auto panel = open();
    fill(*panel, row.model, row.execute, row.workbook, "p", "o");
    EXPECT_EQ(insensitive(*panel), row.insensitive);
    EXPECT_EQ(panel->gadget<QLineEdit>("CModel")->text(), row.workbook ? "Excel Application" : "p");
    EXPECT_EQ(panel->helpTopic(), row.model == 1 ? "PExternal#internal" : "PExternal");
  }
}

TEST_F(ModelExternal, FilesAndEquationsAreChosen) {
  const auto panel = open();
  const std::string loads = "Select the internal model to load: open *.imd *.*";
  step(*panel, "modelSelect", {"Select model to execute: open *.*"}, {}, {file("model")});
  step(*panel, "outputSelect", {"Select output model file: open *.*"}, {}, {file("y.out")});
  EXPECT_EQ(label(*panel, "MlMessage"), "");
  fill(*panel, 1, true, false, "", "");
  step(*panel, "loadIntModel", {loads, "Error opening file: Error reading the internal model file\n..."}, {},
       {file("y.out")});
  step(*panel, "loadIntModel", {loads}, {}, {file("none.imd")});
  step(*panel, "ok", {"Error: Empty model:    Model produces no result"});
  auto* const field = panel->gadget<QLineEdit>("TIntModelFile");
  EXPECT_EQ(field->text().toStdString(), file("none.imd"));
  EXPECT_TRUE(panel->gadget<QWidget>("BModifyInternalModel")->isEnabled());
  // A path that is typed isn't the model in hand before it is loaded.
  field->setText(QString::fromStdString(file("gone.imd")));
  panel->call("changeIntModelFile");
  EXPECT_FALSE(panel->gadget<QWidget>("BModifyInternalModel")->isEnabled());
  step(*panel, "ok", {"..."});
  EXPECT_FALSE(panel->accepted());
  field->setText(QString::fromStdString(file("a.imd")));
  panel->call("ok");
  EXPECT_TRUE(panel->accepted());
  EXPECT_EQ(panel->choice().kind, kInternalModel);
  EXPECT_EQ(panel->choice().internalModel()->numOutputs(), 1);
  // New ones, of the factors.
  panel->window()->show();
  const std::string discards =
      "Warning: existing configuration: An internal model is already loaded.\n Do you wish to discard it? "
      "[^Proceed/^Cancel]";
  step(*panel, "NewIntModel", {discards});
  whenShown("PIntModel", [](QWidget& window) {
    EXPECT_EQ(window.findChild<QComboBox*>("OInFactors")->count(), 3);
    click(window, "BOk");
  });
  step(*panel, "NewIntModel", {discards}, {true});
  EXPECT_EQ(field->text(), "Internal Model loaded");
  whenShown("Help", [](QWidget& window) {
    EXPECT_EQ(window.windowTitle(), "File Format");
    EXPECT_EQ(window.findChild<QLabel*>("MlTitle")->text(), "Format for the model output file");
    EXPECT_EQ(window.findChild<QLabel*>("TText")->text().count('\n'), 18);
    window.close();
  });
  panel->call("formatHelp");
}

TEST_F(ModelExternal, CellsAreWrittenAsDraftsAndJudgedTogether) {
  const WorkbookCells cells{{{"x2", "One", 2, 1}, {"gone", "One", 3, 1}}, {{"y", "My sheet", 0, 0}}};
  const auto panel = open(workbookModel(file("book.ods"), cells));
  auto* const grid = panel->gadget<TableView>("MaCells")->model();
  EXPECT_EQ(column(*panel, "MaCells", 0), "factor factor factor factor output output ");
  EXPECT_EQ(column(*panel, "MaCells", 1), "x1 x2 x3 gone y  ");
  EXPECT_EQ(column(*panel, "MaCells", 2), " One!B3  One!B4 'My sheet'!A1  ");
  const struct {
    int row, column;
    const char* text;
    const char* message;  // what it begins with
  } rows[] = {
      {0, 2, "here", "x1: expected a cell such as Model!B3, found 'here'"},
      {0, 2, "$Two.$C$7", ""},
      {2, 2, "b3", "One!B3 stands for both x2 and x3."},
      {2, 2, "B4", "One!B4 stands for both x3 and gone."},
      {3, 2, "", ""},
      {5, 1, "z", "z: this output has no cell."},
      {5, 2, "A1", "'My sheet'!A1 stands for both y and z."},
      {5, 2, "A2", ""},
      {6, 2, "A3", "'My sheet'!A3: this output has no name."},
      {6, 1, "a-b", "'a-b' can't be the name of an output: a_b can."},
      {6, 1, "y", "y has two cells: 'My sheet'!A1 and 'My sheet'!A3."},
      {6, 1, "", "'My sheet'!A3: this output has no name."},
      {6, 2, "", ""},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.text);
    EXPECT_TRUE(grid->setData(grid->index(row.row, row.column), row.text));
    EXPECT_EQ(label(*panel, "MlMessage"), row.message);
    if (*row.message != '\0') {
      EXPECT_EQ(shownBy(*panel, "ok"), Texts{std::string("Error: Cells of the workbook: ") + row.message});
    }
    EXPECT_FALSE(panel->accepted());
  }
  EXPECT_EQ(grid->rowCount(), 7);
  EXPECT_FALSE(grid->setData(grid->index(0, 1), "other"));
  panel->call("ok");
  EXPECT_EQ(panel->choice().cells.text(),
            "input x1=Two!C7\tinput x2=One!B3\tinput x3=One!B4\toutput y='My sheet'!A1\toutput z='My sheet'!A2");
}

using ModelSelection = test::MainPanelTest;

TEST_F(ModelSelection, ARunFailsInItsWordsWhateverTheModelIs) {
  panel_->call("monteCarlo");
  source(1);
  choose("oldGeneration", test::goldenPath("ishigami.sam"));
  takeShown();
  std::string failing;
  controller().userAtWorkbook = false;
  controller().makeSpreadsheetApplication = [&failing](auto) {
    auto application = std::make_unique<test::ScriptedApplication>();
    application->sheets = {{"Inputs"}};
    application->failing = failing;
    return application;
  };
  const auto program = [this](const std::string& output, const std::string& more = "") {
    test::writeScript(file("model"), "printf '" + output + "' > \"$TARVEX_OUTPUT\"\n" + more);
    return externalModel(file("model"), file("y.out"));
  };
  const auto equations = [](int inputs) {
    auto model = std::make_unique<InternalModel>();
    for (int i = 1; i <= inputs; ++i) EXPECT_TRUE(model->addVariable("x" + std::to_string(i)));
    EXPECT_TRUE(model->addExpression(0, "y", "1 / (x1 - x1)", 1));
    ModelChoice choice;
    choice.setInternalModel(std::move(model));
    return choice;
  };
  const std::string book = file("book.ods");
  test::writeFile(book, "");
  const std::string unread = "Error: Error reading model output file\n" + file("y.out");
  const std::string noWorkbook = "Error: Error in the Excel model execution";
  const auto none = [] {
    ModelChoice choice;
    choice.kind = kInternalModel;
    return choice;
  };
  const WorkbookCells cells{{{"x1", "Inputs", 0, 0}}, {{"y", "Two", 0, 0}}};
  // clang-format off
  const struct {
    std::function<ModelChoice()> model;
    Texts shown;  // what each begins with
    const char* failing = "";
  } rows[] = {
      {none, {"Error: Error starting internal model execution"}},
      {[&] { return equations(1); },
       {"Error: The number of model inputs differs from the number of factors in the generated sample"}},
      {[&] { return equations(3); }, {"Warning: Error evaluating model\nThe equations could not be evaluated in 200 of"}},
      {[&] { return externalModel(file("model.gone"), file("y.out")); },
       {"Error: The model execution process can't be loaded.\nError 2\ncmd: \"" + file("model.gone")}},
      {[&] { return program("", "exit 3\n"); }, {"Error: Model execution returned with error code\nThe code is 3."}},
      {[&] { return program(""); }, {unread + ":1: expected the number of variables"}},
      {[&] { return program("1\\n2a\\n"); }, {"Error: Incorrect model variable name: 2a", unread + ":2: "}},
      {[&] { return program("1\\na-b\\ntime = no\\n1\\n5\\n"); },
       {"Warning: The model variable a-b will be modified in a_b"}},
      {[&] { return workbookModel(book); },
       {"Error: Excel not registered properly", "Information: start failed", noWorkbook}, "start"},
      {[&] { return workbookModel(book); }, {"Error: Model Output variables not found", noWorkbook}},
      {[&] { return workbookModel(book, cells); },
       {"Warning: The workbook has no cell for the factors 'x2', 'x3'.", noWorkbook + '\n' + book}},
  };
  // clang-format on
  for (const auto& row : rows) {
    SCOPED_TRACE(row.shown.back());
    failing = row.failing;
    ASSERT_EQ(controller().acceptModel(row.model()), Outcome::Done);
    if (controller().project().model.choice.kind == kInternalModel) clickWhenShown("PLinkFactors", "ok");
    panel_->call("start");
    const Texts shown = takeShown();
    ASSERT_EQ(shown.size(), row.shown.size()) << testing::PrintToString(shown);
    for (std::size_t i = 0; i < shown.size(); ++i) EXPECT_EQ(shown[i].substr(0, row.shown[i].size()), row.shown[i]);
    EXPECT_EQ(controller().project().hasVels, row.shown.back().starts_with("Warning"));
  }
}

TEST_F(ModelSelection, IsOpenedByTheMainPanelTriedAndCanBeTakenBack) {
  test::writeScript(file("model"),
                    "echo hello\n(echo 1; echo y; echo time = no; echo 1; echo oops) > \"$TARVEX_OUTPUT\"\n");
  panel_->call("monteCarlo");
  source(1);
  choose("oldGeneration", test::goldenPath("ishigami.sam"));
  takeShown();
  std::string printed, output, message;
  const auto press = [](QWidget& window, const char* name) { window.findChild<QPushButton*>(name)->click(); };
  test::whenShown(panel_->window(), "External", [&](QWidget& selection) {
    selection.findChild<QLineEdit*>("CModel")->setText(QString::fromStdString(file("model")));
    selection.findChild<QLineEdit*>("TOutput")->setText(QString::fromStdString(file("y.out")));
    test::whenShown(panel_->window(), "PTryRun", [&](QWidget& trial) {
      press(trial, "BRun");
      printed = trial.findChild<QPlainTextEdit*>("TePrinted")->toPlainText().toStdString();
      const auto marks = trial.findChild<QPlainTextEdit*>("TeOutput")->extraSelections();
      if (!marks.isEmpty()) output = marks.constFirst().cursor.block().text().toStdString();
      message = trial.findChild<QLabel*>("MlMessage")->text().toStdString();
      press(trial, "BClose");
    });
    press(selection, "BTry");
    press(selection, "BOk");
  });
  panel_->call("selectInput");
  EXPECT_EQ(printed, "hello\n");
  EXPECT_EQ(output, "   5  oops");
  EXPECT_EQ(message, "Error reading model output file\n" + file("y.out") +
                         ":5: expected a number, found 'oops' (run 0, output y)");
  EXPECT_FALSE(std::filesystem::exists(file("y.out")));
  EXPECT_EQ(controller().project().model.choice.executable, file("model"));
  EXPECT_EQ(text("MlPrepVels"), "External model selection");
  panel_->call("undo");
  EXPECT_FALSE(controller().project().hasModel);
}

}  // namespace
}  // namespace tarvex
