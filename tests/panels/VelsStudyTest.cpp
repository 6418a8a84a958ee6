// The post-processor over the real main panel: from results to tables, by mouse and keys, in whatever order.

#include <QListWidget>
#include <QTabWidget>

#include "app/Analysis.h"
#include "panels/MainPanelFixture.h"
#include "postproc/PostProcessorFile.h"
#include "report/TableFiles.h"
#include "toolkit/ChartView.h"
#include "toolkit/TableView.h"

namespace tarvex {
namespace {

using test::goldenPath;
using Texts = std::vector<std::string>;

class VelsStudy : public test::MainPanelTest {
 protected:
  VelsStudy() { window_ = panel_->window(); }

  // The window of that name that was opened last, from now on the one that is worked with.
  void turnTo(const char* window) {
    QWidget* found = nullptr;
    for (auto* const child : panel_->window()->findChildren<QWidget*>(window))
      if (child->isVisible() && child->isWindow()) found = child;
    ASSERT_NE(found, nullptr) << window;
    window_ = found;
  }
  void openResults(const char* golden) {
    panel_->openFile(QString::fromStdString(goldenPath(golden)));
    ASSERT_EQ(takeShown(), Texts());
    panel_->call("analyse");
    turnTo("VelsMain");
  }
  template <class Gadget>
  Gadget* in(const char* name) {
    auto* const found = window_->findChild<Gadget*>(name);
    EXPECT_NE(found, nullptr) << name;
    return found;
  }
  void click(const char* button) {
    ASSERT_TRUE(in<QAbstractButton>(button)->isEnabled())
        << button << ": " << in<QAbstractButton>(button)->toolTip().toStdString();
    QTest::mouseClick(in<QAbstractButton>(button), Qt::LeftButton);
  }
  void mark(const char* table, int row) { in<TableView>(table)->selectRow(row); }
  std::string column(const char* table, int column) {
    const auto& model = in<TableView>(table)->tableModel();
    std::string text;
    for (int row = 0; row < model.rowCount(); ++row)
      text += (row == 0 ? "" : " | ") + model.data(model.index(row, column), Qt::DisplayRole).toString().toStdString();
    return text;
  }
  std::string said() { return in<QLabel>("MlMessage")->text().toStdString(); }
  void type(const char* gadget, const QString& text) {
    auto* const field = in<QWidget>(gadget);
    QTest::keyClick(field, Qt::Key_A, Qt::ControlModifier);
    QTest::keyClick(field, Qt::Key_Delete);
    QTest::keyClicks(field, text);
  }
  // Works in the panel that the click opens over this window.
  void inPanel(const char* button, const char* panel, std::function<void(QWidget&)> act) {
    auto* const timer = new QTimer(&waiting_);
    QObject::connect(timer, &QTimer::timeout, timer, [this, timer, panel, act] {
      for (QWidget* const top : QApplication::topLevelWidgets()) {
        if (top->objectName() != panel || !top->isVisible() || top == window_) continue;
        timer->stop();
        timer->deleteLater();
        return act(*top);
      }
    });
    timer->start(1);
    click(button);
  }
  static void choose(QWidget& panel, const char* box, int index) {
    auto* const found = panel.findChild<QComboBox*>(box);
    found->setCurrentIndex(index);
    Q_EMIT found->activated(index);
  }

  QWidget* window_;
  QObject waiting_;
};

TEST_F(VelsStudy, SavedTablesAreThoseOfAShellToTheLastByte) {
  openResults("plain-run.spc");
  click("BAddAll");
  const Texts variables = controller().project().vels.selectedVariables();
  ASSERT_FALSE(variables.empty());
  // What the shell makes of the same file.
  ProjectConfiguration project;
  std::string message;
  ASSERT_TRUE(loadPostProcessorFile(goldenPath("plain-run.spc"), project.prep, project.model, project.vels, message));
  PostProcessor shell(project);
  AnalysisRequest request;
  request.variables = variables;
  request.sensitivity = false;
  ASSERT_TRUE(shell.compute(request, {}, message)) << message;
  ASSERT_TRUE(writeTableFiles(project.prep, project.vels, file("shell"), kLinearScale, message)) << message;
  QWidget* const vels = window_;
  for (std::size_t v = 0; v < variables.size(); ++v) {
    SCOPED_TRACE(variables[v]);
    window_ = vels;
    mark("MaSelected", static_cast<int>(v));
    click("BUa");  // the one click of mean, variance and histogram
    turnTo("SelVar");
    EXPECT_EQ(in<QComboBox>("OVariable")->currentText().toStdString(), variables[v]);
    EXPECT_EQ(column("MaStatistics", 0).substr(0, 21), "Mean | Variance | Sta");
    EXPECT_TRUE(in<QWidget>("TBackground")->isVisible());
    in<QTabWidget>("NoVariable")->setCurrentIndex(1);
    dialogs_.files = {file("panel.txt")};
    click("BSaveTable");
    std::string written;
    for (const auto& entry : std::filesystem::directory_iterator(file("shell")))
      if (test::readFile(entry.path().string()).starts_with("Uncertainty analysis for var " + variables[v] + '\n'))
        written = test::readFile(entry.path().string());
    ASSERT_NE(written, "");
    EXPECT_EQ(test::readFile(file("panel.txt")), written);
  }
  EXPECT_EQ(takeShown().size(), variables.size()) << "the choosers alone";
}

// Windows of results stay what they are, the post-processor follows the project.
TEST_F(VelsStudy, WhateverBecomesOfTheProjectTheWindowsAreRight) {
  openResults("plain-run.spc");
  QWidget* const vels = window_;
  click("BAddAll");
  click("BUa");
  turnTo("SelVar");
  QWidget* const results = window_;
  const std::string statistics = column("MaStatistics", 1);
  EXPECT_EQ(said(), "");

  window_ = vels;
  mark("MaSelected", 0);
  click("BRemove");
  window_ = results;
  EXPECT_EQ(said(), "") << "another selection of the same results";
  inPanel("BSettings", "SetWin", [](QWidget& panel) {
    choose(panel, "OTcheby", 3);
    panel.findChild<QPushButton*>("BOk")->click();
  });
  EXPECT_NE(column("MaStatistics", 0).find("t-test bound, 0.975"), std::string::npos);
  const auto before = controller().project().vels.selectedVariables();

  dialogs_.answers = {true};
  panel_->openFile(QString::fromStdString(goldenPath("times-run.spc")));
  EXPECT_NE(said(), "");
  EXPECT_EQ(window_->windowTitle().toStdString(), "Uncertainty analysis, of earlier results");
  EXPECT_EQ(column("MaStatistics", 1).substr(0, 20), statistics.substr(0, 20));
  inPanel("BSettings", "SetWin", [](QWidget& panel) {
    choose(panel, "OTcheby", 1);
    panel.findChild<QPushButton*>("BOk")->click();
  });
  EXPECT_TRUE(controller().project().vels.selectedVariables().empty()) << "of the other project";

  window_ = vels;
  EXPECT_EQ(column("MaVariables", 0), "dose | rate");
  EXPECT_EQ(column("MaSelected", 0), "");
  EXPECT_FALSE(in<QPushButton>("BUa")->isEnabled());
  panel_->call("analyse");
  EXPECT_EQ(panel_->window()->findChildren<QWidget*>("VelsMain").size(), 1) << "brought to the front";
  panel_->call("resetConfiguration");
  EXPECT_EQ(column("MaVariables", 0), "");
  for (const char* const button : {"BAdd", "BAddAll", "BUa", "BSa", "BRemoveAll"})
    EXPECT_FALSE(in<QPushButton>(button)->isEnabled()) << button;
  window_->close();
  panel_->openFile(QString::fromStdString(goldenPath("plain-run.spc")));
  panel_->call("analyse");
  turnTo("VelsMain");
  EXPECT_TRUE(in<QPushButton>("BAddAll")->isEnabled());
}

TEST_F(VelsStudy, OutputsAreTakenAtTheirTimes) {
  openResults("times-run.spc");
  const struct {
    int position;
    std::vector<std::pair<const char*, const char*>> fields;
    const char* button;
    const char* problem;   // what is shown, first line
    const char* selected;  // afterwards
  } rows[] = {
      {0, {}, "BNewVar", "", "dose[max]"},
      {1, {{"ScTimesAvail", "2.5"}}, "BNewVar", "Error: Wrong value", "dose[max]"},
      {1, {{"ScTimesAvail", "0.75"}}, "BNewVar", "", "dose[max] | dose[0.75]"},
      {2,
       {{"NLower", "0"}, {"NUpper", "1"}, {"NNumPoints", "0"}},
       "BNewVar",
       "Error: Wrong interval value",
       "dose[max] | dose[0.75]"},
      {2,
       {{"NLower", "1"}, {"NUpper", "0"}, {"NNumPoints", "1"}},
       "BNewVar",
       "Error: Wrong bound value",
       "dose[max] | dose[0.75]"},
      {2,
       {{"NLower", "0"}, {"NUpper", "1"}, {"NNumPoints", "0.25"}},
       "BNewVar",
       "",
       "dose[max] | dose[0.75] | dose[0] | dose[0.25] | dose[0.5]"},
      {0, {}, "BNewVar", "", "dose[max] | dose[0.75] | dose[0] | dose[0.25] | dose[0.5]"},
      {1, {{"ScTimesAvail", "1"}}, "BNewExpr", "", "dose[max] | dose[0.75] | dose[0] | dose[0.25] | dose[0.5]"}};
  mark("MaVariables", 0);
  for (const auto& row : rows) {
    inPanel("BAdd", "SelVar", [&row](QWidget& panel) {
      choose(panel, "SelTime", row.position);
      for (const auto& [gadget, text] : row.fields) {
        if (auto* const box = panel.findChild<QComboBox*>(gadget))
          box->setCurrentText(text);
        else
          panel.findChild<QLineEdit*>(gadget)->setText(text);
      }
      EXPECT_EQ(panel.findChild<QPushButton*>("BNewExpr")->isEnabled(), row.position == 1);
      panel.findChild<QPushButton*>(row.button)->click();
      if (panel.isVisible()) panel.findChild<QPushButton*>("BCancel")->click();
    });
    const Texts shown = takeShown();
    EXPECT_EQ(shown.empty() ? "" : shown.front().substr(0, shown.front().find('\n')), row.problem);
    EXPECT_EQ(column("MaSelected", 0), row.selected);
  }
  EXPECT_EQ(in<QPlainTextEdit>("TExpression")->toPlainText(), "dose[1]");
  dialogs_.answers = {false, true};
  click("BRemoveAll");
  EXPECT_NE(column("MaSelected", 0), "");
  click("BRemoveAll");
  EXPECT_EQ(column("MaSelected", 0), "");
  EXPECT_EQ(takeShown(), Texts(2, "Warning:    Deleting all items.\n  Are you sure? [^Yes/^No]"));
}

TEST_F(VelsStudy, AnExpressionIsJudgedWhileItIsWritten) {
  openResults("times-run.spc");
  auto* const field = in<QPlainTextEdit>("TExpression");
  EXPECT_FALSE(in<QPushButton>("BAddExpr")->isEnabled());
  type("TExpression", "dose[max] / ");
  click("BOpenPar");
  QTest::keyClicks(field, "1 + rate");
  EXPECT_EQ(said(), "Unexpected end of text at character 22");
  field->moveCursor(QTextCursor::Start);
  click("BAddExpr");
  EXPECT_EQ(takeShown(), Texts{"Error:    Expression can't be evaluated.\n\nUnexpected end of text at character 22"});
  EXPECT_EQ(field->textCursor().position(), 21);
  EXPECT_EQ(field->toPlainText(), "dose[max] / (1 + rate") << "stays";
  field->moveCursor(QTextCursor::End);
  click("BClosedPar");
  EXPECT_EQ(said(), "");
  click("BAddExpr");
  EXPECT_EQ(column("MaSelected", 0), "dose[max] / (1 + rate)");
  EXPECT_EQ(field->toPlainText(), "");
  choose(*window_, "OFunctions", in<QComboBox>("OFunctions")->findText("sqrt"));
  QTest::keyClicks(field, "dose");
  click("BPower");
  EXPECT_EQ(field->toPlainText(), "sqrt(dose**)");
  click("BAbortExpr");
  EXPECT_EQ(field->toPlainText(), "");
  EXPECT_FALSE(in<QPushButton>("BAbortExpr")->isEnabled());
}

TEST_F(VelsStudy, WeightsAreKeptAndNegativeOnesAreNot) {
  openResults("times-run.spc");
  auto& model = in<TableView>("MaVariables")->tableModel();
  const struct {
    const char* typed;
    const char* said;
    float kept;
  } rows[] = {{"2.5", "", 2.5F},
              {"-1", "A weight is not negative.", 2.5F},
              {"x", "A weight is a number.", 2.5F},
              {"0", "", 0.0F}};
  for (const auto& row : rows) {
    EXPECT_EQ(model.setData(model.index(1, 1), row.typed, Qt::EditRole), *row.said == '\0');
    if (*row.said != '\0') {
      EXPECT_EQ(said(), row.said);
    }
    EXPECT_EQ(controller().project().vels.outputs()[1].weight, row.kept);
  }
}

TEST_F(VelsStudy, QuantilesAndIntervalsFollowWhatIsTyped) {
  openResults("ishigami-run.spc");
  click("BAddAll");
  click("BUa");
  turnTo("SelVar");
  type("NLower", "0");
  type("NUpper", "100");
  EXPECT_NE(in<QLabel>("NValue")->text().toDouble(), 0.0);
  type("NUpper", "-");
  EXPECT_EQ(in<QLabel>("NValue")->text(), "two numbers are needed");
  in<QTabWidget>("NoVariable")->setCurrentIndex(2);
  type("TShares", "50 97.5");
  type("TThresholds", "1000");
  EXPECT_EQ(column("MaQuantiles", 0), "50 % | 97.5 % | P(above 1000)");
  // None of 200: 1 - 0.025^(1/200)
  EXPECT_TRUE(column("MaQuantiles", 3).ends_with("| 0.018275")) << column("MaQuantiles", 3);
  type("TShares", "101");
  EXPECT_EQ(said(), "A quantile lies between 0 and 100 percent: 101 %");
}

}  // namespace
}  // namespace tarvex
