// Runs in parts at the desktop, driven by the real program.

#include <QApplication>
#include <QElapsedTimer>
#include <QSpinBox>
#include <csignal>

#include "model/ModelRequest.h"
#include "model/OfficeApplication.h"
#include "panels/MainPanelFixture.h"
#include "panels/parts/PPartsRun.h"
#include "parts/Ledger.h"
#include "support/Processes.h"
#include "toolkit/SquareField.h"
#include "toolkit/TableView.h"

namespace tarvex {
namespace {

// A study whose model sums up rows and looks into `behaviour` first.
class PartsPanels : public test::MainPanelTest {
 protected:
  PartsPanels() {
    test::writeScript(file("model"),
                      ". '" + file("behaviour") +
                          "'\nawk 'NR == 2 { n = $1 } NR > 4 && NR <= 4 + n { v[NR - 5] = $1 + $2 + $3 }\n"
                          "END { printf \"1\\ny\\ntime = no\\n%d\\n\", n; for (i = 0; i < n; i++) printf \"%.9g\\n\", "
                          "v[i] }' \"$1\" > model.out\n");
    behave(":");
    std::filesystem::copy(test::goldenPath("ishigami.sam"), file("s.sam"));
    EXPECT_EQ(controller().loadSampleFile(file("s.sam")), Outcome::Done);
    EXPECT_EQ(controller().enterMonteCarlo(), Outcome::Done);
    ModelRequest request;
    request.executable = file("model");
    request.outputFile = file("model.out");
    ModelChoice model;
    EXPECT_FALSE(acceptModelRequest(request, model));
    EXPECT_EQ(controller().acceptModel(std::move(model)), Outcome::Done);
  }
  ~PartsPanels() override {
    if (PPartsRun* const open = run()) open->call("stop");
    panel_.reset();
    EXPECT_TRUE(test::livingProcesses(file("pids")).empty());
  }

  void behave(const std::string& commands) { test::writeFile(file("behaviour"), commands + "\n"); }
  PPartsRun* run() { return panel_ ? panel_->partsRun() : nullptr; }
  std::string runPath(const char* name = "") const { return file("s.sam.run") + name; }
  std::string said(const char* label) { return run()->gadget<QLabel>(label)->text().toStdString(); }
  // Begins a run of so many parts with the other fields as they are, or with the policy of that row.
  void begin(int policy = 0, int parts = 6) {
    auto* const timer = new QTimer(panel_->window());
    QObject::connect(timer, &QTimer::timeout, timer, [=] {
      for (QWidget* const top : QApplication::topLevelWidgets()) {
        if (top->objectName() != "PParts" || !top->isVisible()) continue;
        timer->stop();
        timer->deleteLater();
        top->findChild<QSpinBox*>("NParts")->setValue(parts);
        top->findChild<QComboBox*>("OFailure")->setCurrentIndex(policy);
        top->findChild<QPushButton*>("BStart")->click();
        if (top->isVisible()) top->findChild<QPushButton*>("BCancel")->click();  // it was refused, as was shown
        return;
      }
    });
    timer->start(1);
    panel_->call("runParts");
  }
  template <class Holds>
  bool eventually(const Holds& holds, qint64 most = 20'000) {
    QElapsedTimer since;
    for (since.start(); !holds() && !since.hasExpired(most);) QTest::qWait(20);
    return holds();
  }
  std::size_t count(PartState::Stage stage) { return run()->run().states().count(stage); }
  std::string results() {
    EXPECT_EQ(controller().saveResultsFile(file("r.spc")), Outcome::Done);
    return test::readFile(file("r.spc"));
  }
};

TEST_F(PartsPanels, resultsAreThoseOfASingleProcess) {
  ASSERT_EQ(controller().runModel(RunController::SampleUse::Existing), Outcome::Done);
  const std::string single = results();
  // The first three parts are done while the others wait.
  behave("echo $$ >> " + file("pids") + "; case $TARVEX_PART in *:[3-5]:*) while [ ! -e " + file("go") +
         " ]; do sleep 0.05; done;; esac");
  begin();
  ASSERT_NE(run(), nullptr) << testing::PrintToString(takeShown());
  ASSERT_TRUE(eventually([this] { return count(PartState::Done) == 3 && !run()->run().holder().empty(); }))
      << said("MlState") << said("MlDriver");
  EXPECT_NE(said("MlDriver").find("driven by host "), std::string::npos) << said("MlDriver");
  EXPECT_FALSE(controller().whyNot(Step::Generate).empty());
  EXPECT_FALSE(panel_->gadget<QPushButton>("BStart")->isEnabled());

  // What is there can be looked at, and is no result of the project.
  run()->call("soFar");
  EXPECT_NE(said("MlSoFar").find("Partial: "), std::string::npos) << said("MlSoFar");
  EXPECT_TRUE(run()
                  ->gadget<TableView>("MaSoFar")
                  ->tableModel()
                  .headerData(0, Qt::Horizontal, Qt::DisplayRole)
                  .toString()
                  .startsWith("Partial"));
  EXPECT_EQ(controller().project().model.results.runCount(), controller().project().prep.samples.rows());
  EXPECT_EQ(results(), single);
  run()->gadget<SquareField>("FdParts")->select(0);
  run()->gadget<QTabWidget>("NoPart")->setCurrentIndex(1);
  EXPECT_FALSE(run()->gadget<QPlainTextEdit>("TeRows")->toPlainText().isEmpty());

  // A second program is refused, in the words of a shell.
  takeShown();
  run()->call("goOn");
  const std::vector<std::string> shown = takeShown();
  ASSERT_EQ(shown.size(), 1U);
  EXPECT_NE(shown[0].find("The run is driven already: " + run()->run().holder()), std::string::npos) << shown[0];

  test::writeFile(file("go"), "");
  EXPECT_TRUE(eventually([this] { return said("MlDriver") == "The project has the results."; })) << said("MlDriver");
  EXPECT_EQ(results(), single);
  EXPECT_EQ(takeShown(), std::vector<std::string>());
}

TEST_F(PartsPanels, whatFailedIsRepeatedOneByOneOrAll) {
  behave("case $TARVEX_PART in *:[14]:*) echo no licence >&2; exit 3;; esac");
  begin(1);
  ASSERT_NE(run(), nullptr) << testing::PrintToString(takeShown());
  ASSERT_TRUE(
      eventually([this] { return run()->run().states().ending() == "failed" && run()->run().holder().empty(); }));
  run()->look();
  EXPECT_EQ(count(PartState::Failed), 2U);
  EXPECT_NE(said("MlDriver").find("2 of 6 parts failed."), std::string::npos) << said("MlDriver");
  run()->gadget<SquareField>("FdParts")->select(4);
  EXPECT_NE(said("MlPart").find(": code 3: no licence"), std::string::npos) << said("MlPart");
  EXPECT_EQ(controller().project().model.results.runCount(), 0);

  behave(":");
  run()->call("retry");
  ASSERT_TRUE(eventually([this] { return count(PartState::Done) == 5 && run()->run().holder().empty(); }));
  EXPECT_EQ(count(PartState::Failed), 1U);
  run()->call("retryAll");
  EXPECT_TRUE(eventually([this] { return said("MlDriver") == "The project has the results."; })) << said("MlDriver");
}

TEST_F(PartsPanels, isFoundAgainAndGoesOnAfterAKill) {
  ASSERT_EQ(controller().saveProjectAs(file("study.psc")), Outcome::Done);
  behave("echo $$ >> " + file("pids") + "; while [ ! -e " + file("go") + " ]; do sleep 0.05; done");
  begin();
  ASSERT_NE(run(), nullptr) << testing::PrintToString(takeShown());
  ASSERT_TRUE(eventually([this] { return !run()->run().holder().empty(); }));
  const std::string holder = run()->run().holder();
  ASSERT_TRUE(test::waitForLines(file("pids"), 1));
  // The desktop goes and comes, the run goes on.
  panel_.reset();
  panel_ = make();
  dialogs_.answers = {true};
  panel_->openFile(QString::fromStdString(file("study.psc")));
  ASSERT_NE(run(), nullptr) << testing::PrintToString(takeShown());
  EXPECT_EQ(run()->run().holder(), holder);
  ::kill(std::stoi(holder.substr(holder.rfind(' '))), SIGKILL);
  ASSERT_TRUE(eventually([this] { return said("MlDriver").starts_with("nobody drives it"); })) << said("MlDriver");
  // A sample that was changed meanwhile: the words of the shell, and the run as it was.
  const std::string sample = test::readFile(file("s.sam"));
  test::writeFile(file("s.sam"), sample + "\n");
  takeShown();
  run()->call("goOn");
  const std::vector<std::string> shown = takeShown();
  ASSERT_EQ(shown.size(), 1U);
  EXPECT_NE(shown[0].find("The sample isn't the one that the run was begun with"), std::string::npos) << shown[0];
  test::writeFile(file("s.sam"), sample);
  test::writeFile(file("go"), "");
  run()->call("goOn");
  EXPECT_TRUE(eventually([this] { return said("MlDriver") == "The project has the results."; })) << said("MlDriver");

  // A run that is gone is told of, and found no more.
  std::filesystem::remove_all(runPath());
  run()->look();
  EXPECT_NE(said("MlDriver").find(runPath("/run.json")), std::string::npos) << said("MlDriver");
  run()->call("detach");
  dialogs_.answers = {true};  // what isn't saved is given up
  panel_->openFile(QString::fromStdString(file("study.psc")));
  EXPECT_FALSE(run()->isVisible());
  EXPECT_EQ(takeShown().size(), 1U);
}

TEST_F(PartsPanels, stopsAndGoesOn) {
  behave("trap '' TERM; echo $$ >> " + file("pids") + "; sleep 60; sleep 60");
  begin();
  ASSERT_NE(run(), nullptr) << testing::PrintToString(takeShown());
  ASSERT_TRUE(test::waitForLines(file("pids"), 1));
  run()->call("stop");
  EXPECT_TRUE(test::livingProcesses(file("pids")).empty());
  EXPECT_TRUE(run()->run().holder().empty());
  EXPECT_EQ(takeShown(), std::vector<std::string>());
  behave(":");
  run()->call("goOn");
  EXPECT_TRUE(eventually([this] { return said("MlDriver") == "The project has the results."; })) << said("MlDriver");
}

TEST_F(PartsPanels, aWorkbookIsComputedInCopies) {
  constexpr std::string_view kHelper = TARVEX_SHEET_PROGRAM;
  if (kHelper.empty()) GTEST_SKIP() << "tarvex-sheet is not built";
  const std::string book = file("rows.ods");
  std::filesystem::copy_file(TARVEX_EXAMPLES "/workbook/ishigami.ods", book);
  const std::string before = test::readFile(book);
  ModelChoice model;
  ASSERT_FALSE(acceptModelRequest({.spreadsheet = true, .executable = "Excel Application", .outputFile = book}, model));
  ASSERT_EQ(controller().acceptModel(std::move(model)), Outcome::Done);
  controller().userAtWorkbook = false;
  controller().makeSpreadsheetApplication = [](std::function<bool()> serve) {
    return std::make_unique<OfficeApplication>(std::move(serve), std::string(TARVEX_SHEET_PROGRAM));
  };
  ASSERT_EQ(controller().runModel(RunController::SampleUse::Existing), Outcome::Done)
      << testing::PrintToString(takeShown());
  const std::string single = results();
  test::writeFile(book, before);
  takeShown();
  begin(0, 2);
  ASSERT_NE(run(), nullptr) << testing::PrintToString(takeShown());
  EXPECT_TRUE(eventually([this] { return said("MlDriver") == "The project has the results."; }, 120'000))
      << said("MlDriver");
  EXPECT_EQ(results(), single);
  EXPECT_EQ(test::readFile(book), before);
  EXPECT_EQ(takeShown(), std::vector<std::string>());
}

long residentKilobytes() {
  for (const std::string& line : test::readLines("/proc/self/status"))
    if (line.starts_with("VmRSS:")) return std::stol(line.substr(line.find_first_of("0123456789")));
  return 0;
}

// A thousand parts and ten thousand, while they come to an end one by one. What it takes is told, not judged: how long
// that is depends on the machine.
TEST_F(PartsPanels, manyPartsCanBeToldApart) {
  constexpr std::int32_t kSteps = 20;
  for (const std::int32_t count : {1000, 10'000}) {
    const RunDirectory run(file(std::to_string(count)));
    RunRecord record;
    record.parts = splitRows(100'000, count);
    std::string message;
    Ledger ledger;
    std::vector<LedgerEntry> none;
    ASSERT_TRUE(makeDirectories(run.path(), message) && record.save(run.record(), message) &&
                ledger.open(run.ledger(), none, message));
    std::vector<LedgerEntry> past;
    for (std::int32_t part = 0; part < count - kSteps; ++part)
      for (const char* const event : {"sent", "done"}) past.push_back({event, {part}, 1, "4711", "n1"});
    ASSERT_TRUE(ledger.append(past, message));
    past.clear();
    const long before = residentKilobytes();
    PPartsRun panel(display_, controller(), run.path(), {}, nullptr);
    panel.window()->show();
    auto* const field = panel.gadget<SquareField>("FdParts");
    double frame = 0.0;
    for (std::int32_t part = count - kSteps; part < count - 1; ++part) {
      ASSERT_TRUE(ledger.append({{"failed", {part}, 1}}, message));
      QElapsedTimer since;
      since.start();
      panel.look();
      field->viewport()->repaint();
      frame = std::max(frame, static_cast<double>(since.nsecsElapsed()) / 1e6);
    }
    const long grown = residentKilobytes() - before;
    std::printf("%d parts: %.1f ms a look at most, %ld kB more, squares of %d\n", count, frame, grown,
                field->squareSize());
    // The last one is reached by the keyboard, whether the field scrolls or not, and can still be seen.
    EXPECT_GE(field->squareSize(), 6);
    QTest::keyClick(field, Qt::Key_End);
    EXPECT_EQ(field->selected(), count - 1);
    EXPECT_EQ(field->accessibleDescription(),
              QString("waiting 1, sent 0, running 0, done %1, failed 19, missing 0").arg(count - kSteps));
  }
}

}  // namespace
}  // namespace tarvex
