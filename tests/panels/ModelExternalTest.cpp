#include <QHeaderView>
#include <QTextBlock>

#include "app/ModelTrial.h"
#include "panels/MainPanelFixture.h"
#include "panels/ModelFixture.h"
#include "panels/model/PExternal.h"
#include "panels/model/PTryRun.h"

namespace tarvex {
namespace {

using test::Texts;

// How the switches stand, and what can't be used then.
struct Switches {
  int model;
  bool execute, workbook;
  std::string insensitive;
};

const std::string kOfEquations = "TIntModelFile BInternalModel BCreateNewIntModel BModifyInternalModel ";
const Switches kProgram{0, true, false, "MaCells " + kOfEquations};
const Switches kFile{0, false, false, "CModel TModelName BModel MaCells " + kOfEquations};
const Switches kBook{0, true, true, "BModel " + kOfEquations};
const Switches kReadBook{0, false, true, "CModel TModelName BModel MaCells " + kOfEquations};
const Switches kEquations{
    1, true, false, "CModel TModelName BModel TOutput BOutputFile TModelExe TExcel MaCells BModifyInternalModel "};

class ModelExternal : public test::ModelTest {
 protected:
  ModelExternal() {
    test::writeScript(file("model"), "");
    test::writeFile(file("data"), "");
    test::writeFile(file("y.out"), "1\ny\ntime = no\n1\n5\n");
    test::writeFile(file("a.imd"), "name\n1\nx1\n0\n1\ny\nx1\n1\n0\nnofile\n");
    test::writeFile(file("none.imd"), "name\n1\nx1\n0\n1\ny\nx1\n0\n0\nnofile\n");
  }
  static void fill(PExternal& panel, const Switches& switches, const std::string& program, const std::string& output) {
    panel.gadget<QComboBox>("SeSwitchModel")->setCurrentIndex(switches.model);
    panel.gadget<QCheckBox>("TModelExe")->setChecked(switches.execute);
    panel.gadget<QCheckBox>("TExcel")->setChecked(switches.workbook);
    for (const char* const callback : {"switchModel", "switchExternalExe", "switchExcel"}) panel.call(callback);
    if (!switches.workbook) panel.gadget<QLineEdit>("CModel")->setText(QString::fromStdString(program));
    panel.gadget<QLineEdit>("TOutput")->setText(QString::fromStdString(output));
    panel.call("edited");
    std::string insensitive;
    for (const char* const name :
         {"CModel", "TModelName", "BModel", "TOutput", "BOutputFile", "TModelExe", "TExcel", "MaCells", "TIntModelFile",
          "BInternalModel", "BCreateNewIntModel", "BModifyInternalModel"})
      if (!panel.gadget<QWidget>(name)->isEnabled()) insensitive += std::string(name) + ' ';
    EXPECT_EQ(insensitive, switches.insensitive);
    EXPECT_EQ(panel.helpTopic(), switches.model == 1 ? "PExternal#internal" : "PExternal");
  }
};

TEST_F(ModelExternal, OkTakesAModelOrRefusesInItsWords) {
  const std::string program = file("model");
  const std::string output = file("y.out");
  const std::string place = directory_.path();
  const std::string empty = "Error: Empty field:    ";
  const std::string noProgram = "Error: No executable file:    ";
  const std::string noOutput = "Error: Wrong output file:    ";
  const struct {
    const Switches& switches;
    std::string program, output;
    std::string title = {};  // of the refusal; nothing: it is taken
    std::string text = {};   // stands under the fields, too
  } rows[] = {
      {kProgram, program, file("new.out")},
      {kProgram, file("data"), output, "", file("data") + " isn't marked as a program that can be run."},
      {kProgram, "", output, empty, "Empty fields not admitted"},
      {kProgram, program, "", empty, "Empty fields not admitted"},
      {kProgram, file("gone"), output, noProgram,
       "Error checking model executable\n" + file("gone") + ": No such file or directory"},
      {kProgram, place, output, noProgram, "Error checking model executable\n" + place + ": Is a directory"},
      {kProgram, program, program, noOutput, "No output model file\n" + program + ": this is the program itself"},
      {kProgram, std::string(300, 'a'), output,
       "Error: Path too long: ", "the path of the model has 300 characters, more than 254"},
      {kFile, "", output},
      {kFile, "", file("gone"), noOutput, "No output model file\n" + file("gone") + ": No such file or directory"},
      {kFile, program, "", empty, "Empty fields not admitted"},
      {kFile, "", place, noOutput, "No output model file\n" + place + ": Is a directory"},
      {kBook, "Excel Application", file("book.ods")},
      {kReadBook, "Excel Application", output},
      {kEquations, "", "", "Error: No model loaded:    ", "No internal model loaded"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.program + ' ' + row.output);
    const auto panel = shown<PExternal>(ModelChoice());
    fill(*panel, row.switches, row.program, row.output);
    EXPECT_EQ(label(*panel, "MlMessage"), row.text);
    const bool isTaken = row.title.empty();
    step(*panel, "ok", isTaken ? Texts() : Texts{row.title + row.text});
    if (!isTaken) panel->call("cancel");
    EXPECT_EQ(panel->accepted(), isTaken);
    EXPECT_EQ(panel->choice().kind, isTaken && row.switches.execute ? kExternalExecutable : kNoModelToStart);
    EXPECT_EQ(panel->choice().spreadsheet, isTaken && row.switches.workbook ? 1 : 0);
    EXPECT_EQ(panel->choice().executable, isTaken ? row.program : "");
    EXPECT_EQ(panel->choice().outputFile, isTaken ? row.output : "");
  }
}

TEST_F(ModelExternal, FilesAndEquationsAreChosen) {
  const auto panel = shown<PExternal>(ModelChoice());
  const std::string loads = "Select the internal model to load: open *.imd *.*";
  auto* const field = panel->gadget<QLineEdit>("TIntModelFile");
  auto* const modify = panel->gadget<QWidget>("BModifyInternalModel");
  step(*panel, "modelSelect", {"Select model to execute: open *.*"}, {}, {file("model")});
  step(*panel, "outputSelect", {"Select output model file: open *.*"}, {}, {file("y.out")});
  EXPECT_EQ(label(*panel, "MlMessage"), "");
  fill(*panel, kEquations, "", "");
  step(*panel, "loadIntModel", {loads, "Error opening file: Error reading the internal model file\n..."}, {},
       {file("y.out")});
  step(*panel, "loadIntModel", {loads}, {}, {file("none.imd")});
  step(*panel, "ok", {"Error: Empty model:    Model produces no result"});
  EXPECT_EQ(field->text().toStdString(), file("none.imd"));
  EXPECT_TRUE(modify->isEnabled());
  // A path that is typed isn't the model in hand before it is loaded.
  field->setText(QString::fromStdString(file("gone.imd")));
  panel->call("changeIntModelFile");
  EXPECT_FALSE(modify->isEnabled());
  step(*panel, "ok", {"..."});
  EXPECT_FALSE(panel->accepted());
  field->setText(QString::fromStdString(file("a.imd")));
  panel->call("ok");
  EXPECT_TRUE(panel->accepted());
  EXPECT_EQ(panel->choice().kind, kInternalModel);
  EXPECT_EQ(panel->choice().internalModel()->numOutputs(), 1);
  // New ones, of the factors.
  panel->window()->show();
  step(*panel, "NewIntModel", {test::kDiscards});
  for (const char* const button : {"BExit", "BOk"}) {
    EXPECT_EQ(field->text().toStdString(), file("a.imd"));
    whenShown("PIntModel", [button](QWidget& window) {
      EXPECT_EQ(window.findChild<QComboBox*>("OInFactors")->count(), 3);
      click(window, button);
    });
    step(*panel, "NewIntModel", {test::kDiscards}, {true});
  }
  EXPECT_EQ(field->text(), "Internal Model loaded");
  whenShown("Help", [](QWidget& window) {
    EXPECT_EQ(window.windowTitle(), "File Format");
    EXPECT_EQ(said(window, "MlTitle"), "Format for the model output file");
    EXPECT_EQ(std::ranges::count(said(window, "TText"), '\n'), 18);
    window.close();
  });
  panel->call("formatHelp");
}

TEST_F(ModelExternal, CellsAreWrittenAsDraftsAndJudgedTogether) {
  ModelChoice book;
  book.setExternal("Excel Application", file("book.ods"), 1);
  book.kind = kExternalExecutable;
  book.cells = {{{"x2", "One", 2, 1}, {"gone", "One", 3, 1}}, {{"y", "My sheet", 0, 0}}};
  const auto panel = shown<PExternal>(book);
  EXPECT_EQ(cells(panel->gadget<TableView>("MaCells")->tableModel()),
            "factor x1 |factor x2 One!B3|factor x3 |factor gone One!B4|output y 'My sheet'!A1|output  |");
  const struct {
    int row, column;
    const char* text;
    std::string message = {};
  } rows[] = {
      {0, 2, "here", "x1: expected a cell such as Model!B3, found 'here'"},
      {0, 2, "$Two.$C$7"},
      {2, 2, "b3", "One!B3 stands for both x2 and x3."},
      {2, 2, "B4", "One!B4 stands for both x3 and gone."},
      {3, 2, ""},
      {5, 1, "z", "z: this output has no cell."},
      {5, 2, "A1", "'My sheet'!A1 stands for both y and z."},
      {5, 2, "A2"},
      {6, 2, "A3", "'My sheet'!A3: this output has no name."},
      {6, 1, "a-b", "'a-b' can't be the name of an output: a_b can."},
      {6, 1, "y", "y has two cells: 'My sheet'!A1 and 'My sheet'!A3."},
      {6, 1, "", "'My sheet'!A3: this output has no name."},
      {6, 2, ""},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.text);
    EXPECT_TRUE(put(*panel, "MaCells", row.row, row.column, row.text));
    EXPECT_EQ(label(*panel, "MlMessage"), row.message);
    auto* const cellTable = panel->gadget<TableView>("MaCells");
    EXPECT_EQ(cellTable->verticalHeader()->count(), cellTable->tableModel().rowCount()) << "rows that came or went";
    if (!row.message.empty()) step(*panel, "ok", {"Error: Cells of the workbook: " + row.message});
    EXPECT_FALSE(panel->accepted());
  }
  EXPECT_EQ(panel->gadget<TableView>("MaCells")->tableModel().rowCount(), 7);
  EXPECT_FALSE(put(*panel, "MaCells", 0, 1, "other"));
  panel->call("ok");
  EXPECT_EQ(panel->choice().cells.text(),
            "input x1=Two!C7\tinput x2=One!B3\tinput x3=One!B4\toutput y='My sheet'!A1\toutput z='My sheet'!A2");
}

using ModelSelection = test::MainPanelTest;

TEST_F(ModelSelection, IsOpenedByTheMainPanelTriedAndCanBeTakenBack) {
  panel_->call("monteCarlo");
  source(1);
  choose("oldGeneration", test::goldenPath("ishigami.sam"));
  test::writeScript(file("model"),
                    "echo hello\n(echo 1; echo y; echo time = no; echo 1; echo oops) > \"$TARVEX_OUTPUT\"\n");
  const auto press = [](QWidget& window, const char* name) { window.findChild<QPushButton*>(name)->click(); };
  QString marked;
  test::whenShown(panel_->window(), "External", [&](QWidget& selection) {
    selection.findChild<QLineEdit*>("CModel")->setText(QString::fromStdString(file("model")));
    selection.findChild<QLineEdit*>("TOutput")->setText(QString::fromStdString(file("y.out")));
    test::whenShown(panel_->window(), "PTryRun", [&](QWidget& trial) {
      press(trial, "BRun");
      EXPECT_EQ(trial.findChild<QPlainTextEdit*>("TePrinted")->toPlainText(), "hello\n");
      for (const auto& mark : trial.findChild<QPlainTextEdit*>("TeOutput")->extraSelections())
        marked += mark.cursor.block().text();
      EXPECT_EQ(marked, "   5  oops");
      EXPECT_EQ(trial.findChild<QLabel*>("MlMessage")->text().toStdString(),
                "Error reading model output file\n" + file("y.out") +
                    ":5: expected a number, found 'oops' (run 0, output y)");
      press(trial, "BClose");
    });
    press(selection, "BTry");
    press(selection, "BOk");
  });
  panel_->call("selectInput");
  EXPECT_FALSE(std::filesystem::exists(file("y.out")));
  EXPECT_EQ(controller().project().model.choice.executable, file("model"));
  EXPECT_EQ(text("MlPrepVels"), "External model selection");
  panel_->call("undo");
  EXPECT_FALSE(controller().project().hasModel);
  ModelChoice none;
  none.kind = kInternalModel;
  ASSERT_EQ(controller().acceptModel(none), Outcome::Done);
  takeShown();
  panel_->call("start");
  EXPECT_EQ(takeShown(), Texts{"Error: Error starting internal model execution"});
}

}  // namespace
}  // namespace tarvex
