#include <QTextBlock>

#include "app/ModelTrial.h"
#include "panels/MainPanelFixture.h"
#include "panels/ModelFixture.h"
#include "panels/model/PExternal.h"
#include "panels/model/PTryRun.h"

namespace tarvex {
namespace {

using test::Texts;

class ModelExternal : public test::ModelTest {
 protected:
  ModelExternal() {
    test::writeFile(file("model"), "#!/bin/sh\n");
    std::filesystem::permissions(file("model"), std::filesystem::perms::owner_all);
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
    for (const char* const name : {"CModel", "TModelName", "BModel", "TOutput", "BOutputFile", "TModelExe", "TExcel",
                                   "TIntModelFile", "BInternalModel", "BCreateNewIntModel", "BModifyInternalModel"})
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
      {"workbook", 0, true, true, "", file("book.ods"), "", 1},
      {"workbook to read", 0, false, true, "", output, "", 2},
      {"too long", 0, true, false, std::string(300, 'a'), output, "Error: Path too long: ", 0},
      {"no equations", 1, true, false, "", "", "Error: No model loaded:    No internal model loaded", 0},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    const auto panel = open();
    fill(*panel, row.model, row.execute, row.workbook, row.program, row.output);
    panel->call("ok");
    const Texts shown = takeShown();
    EXPECT_EQ(panel->accepted(), row.shown.empty());
    EXPECT_EQ(shown.size(), row.shown.empty() ? 0U : 1U);
    if (!shown.empty()) {
      EXPECT_EQ(shown[0].substr(0, row.shown.size()), row.shown);
      EXPECT_EQ(panel->choice().kind, kNoModelToStart);
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
      {0, true, false, equations},
      {0, false, false, "CModel TModelName BModel " + equations},
      {0, true, true, "BModel " + equations},
      {0, false, true, "CModel TModelName BModel " + equations},
      {1, true, false, "CModel TModelName BModel TOutput BOutputFile TModelExe TExcel BModifyInternalModel "},
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
  dialogs_.files = {file("model"), file("y.out"), file("y.out"), file("none.imd")};
  panel->call("modelSelect");
  panel->call("outputSelect");
  EXPECT_EQ(takeShown(), (Texts{"Select model to execute: open *.*", "Select output model file: open *.*"}));
  EXPECT_EQ(label(*panel, "MlMessage"), "");
  fill(*panel, 1, true, false, "", "");
  panel->call("loadIntModel");
  panel->call("loadIntModel");
  const Texts shown = takeShown();
  ASSERT_EQ(shown.size(), 3U);
  EXPECT_EQ(shown[0], "Select the internal model to load: open *.imd *.*");
  EXPECT_EQ(shown[1].rfind("Error opening file: Error reading the internal model file\n", 0), 0U);
  EXPECT_EQ(shownBy(*panel, "ok"), Texts{"Error: Empty model:    Model produces no result"});
  auto* const field = panel->gadget<QLineEdit>("TIntModelFile");
  EXPECT_EQ(field->text().toStdString(), file("none.imd"));
  EXPECT_TRUE(panel->gadget<QWidget>("BModifyInternalModel")->isEnabled());
  // A path that is typed isn't the model in hand before it is loaded.
  field->setText(QString::fromStdString(file("gone.imd")));
  panel->call("changeIntModelFile");
  EXPECT_FALSE(panel->gadget<QWidget>("BModifyInternalModel")->isEnabled());
  EXPECT_EQ(shownBy(*panel, "ok").size(), 1U);
  EXPECT_FALSE(panel->accepted());
  field->setText(QString::fromStdString(file("a.imd")));
  panel->call("ok");
  EXPECT_TRUE(panel->accepted());
  EXPECT_EQ(panel->choice().internalModel()->numOutputs(), 1);
  // New ones, of the factors.
  panel->window()->show();
  EXPECT_EQ(shownBy(*panel, "NewIntModel"),
            Texts{"Warning: existing configuration: An internal model is already loaded.\n Do you wish to discard it? "
                  "[^Proceed/^Cancel]"});
  dialogs_.answers = {true};
  whenShown("PIntModel", [](QWidget& window) {
    EXPECT_EQ(window.findChild<QComboBox*>("OInFactors")->count(), 3);
    click(window, "BOk");
  });
  panel->call("NewIntModel");
  EXPECT_EQ(field->text(), "Internal Model loaded");
  whenShown("Help", [](QWidget& window) {
    EXPECT_EQ(window.windowTitle(), "File Format");
    EXPECT_EQ(window.findChild<QLabel*>("MlTitle")->text(), "Format for the model output file");
    EXPECT_EQ(window.findChild<QLabel*>("TText")->text().count('\n'), 18);
    window.close();
  });
  panel->call("formatHelp");
}

class ModelSelection : public test::MainPanelTest {
 protected:
  void whenShown(const QString& window, std::function<void(QWidget&)> act) {
    auto* const timer = new QTimer(panel_->window());
    QObject::connect(timer, &QTimer::timeout, timer, [=] {
      for (QWidget* const top : QApplication::topLevelWidgets()) {
        if (top->objectName() != window || !top->isActiveWindow()) continue;
        timer->deleteLater();
        timer->stop();
        return act(*top);
      }
    });
    timer->start(1);
  }
};

TEST_F(ModelSelection, IsOpenedByTheMainPanelTriedAndCanBeTakenBack) {
  test::writeFile(file("model"),
                  "#!/bin/sh\necho hello\n(echo 1; echo y; echo time = no; echo 1; echo oops) > \"$TARVEX_OUTPUT\"\n");
  std::filesystem::permissions(file("model"), std::filesystem::perms::owner_all);
  panel_->call("monteCarlo");
  source(1);
  choose("oldGeneration", test::goldenPath("ishigami.sam"));
  takeShown();
  std::string printed, output, message;
  const auto press = [](QWidget& window, const char* name) { window.findChild<QPushButton*>(name)->click(); };
  whenShown("External", [&](QWidget& selection) {
    selection.findChild<QLineEdit*>("CModel")->setText(QString::fromStdString(file("model")));
    selection.findChild<QLineEdit*>("TOutput")->setText(QString::fromStdString(file("y.out")));
    whenShown("PTryRun", [&](QWidget& trial) {
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
