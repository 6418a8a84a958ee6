#include "panels/MainPanelFixture.h"
#include "support/ScriptedApplication.h"

namespace tarvex {
namespace {

using test::goldenPath;
using Texts = std::vector<std::string>;

class MainPanelState : public test::MainPanelTest {
 protected:
  // The gadgets of the state table that can be used, in this order. What can't be used says why.
  std::string usable() {
    static constexpr const char* kGadgets[] = {
        "BMonteCarlo", "BAbortMonteCarlo", "SelSamplesSource", "BConfigure",     "BGenerate", "BOld",
        "BImport",     "BVisualize",       "BSelectInput",     "TeExternalConf", "BStart",    "BSeeLog",
        "BAnalyse",    "BVelsFile",        "AQuickSave",       "ALeaveDemo"};
    std::string names;
    for (const char* const name : kGadgets) {
      auto* const gadget = panel_->gadget<QObject>(name);
      if (gadget->property("enabled").toBool()) {
        names += (names.empty() ? "" : " ") + std::string(name);
      } else {
        EXPECT_TRUE(gadget->property("toolTip").toString().contains('\n')) << name << " doesn't say why";
        auto* const widget = qobject_cast<QWidget*>(gadget);
        EXPECT_FALSE(widget != nullptr && widget->accessibleDescription().isEmpty()) << name;
      }
    }
    return names;
  }
  PrepSettings settings() {
    PrepSettings copy;
    std::string message;
    EXPECT_TRUE(copy.copyFrom(controller().project().prep, message)) << message;
    copy.sampleFile = file("new.sam");
    return copy;
  }
  void modelOf(const std::string& executable) {
    ModelChoice choice;
    choice.setExternal(executable, file("model.out"), 0);
    choice.kind = executable.empty() ? kNoModelToStart : kExternalExecutable;
    ASSERT_TRUE(panel_->acceptModel(choice, "model"));
  }
};

TEST_F(MainPanelState, EveryTransitionLeavesWhatTheTableSays) {
  const struct {
    const char* what;
    std::function<void()> act;
    const char* usable;
    const char* line;
  } steps[] = {
      {"start", [] {}, "BMonteCarlo SelSamplesSource BConfigure BVelsFile", "Welcome to Tarvex software."},
      {"monteCarlo", [&] { panel_->call("monteCarlo"); },
       "BAbortMonteCarlo SelSamplesSource BConfigure BSelectInput TeExternalConf",
       "New configuration for a Monte Carlo analysis. Select samples generation and model configuration"},
      {"abort", [&] { panel_->call("abortMonteCarlo"); }, "BMonteCarlo SelSamplesSource BConfigure BVelsFile",
       "Monte Carlo generation aborted"},
      {"source 1", [&] { source(1); }, "BMonteCarlo SelSamplesSource BOld BVelsFile", "Monte Carlo generation aborted"},
      {"source 0", [&] { source(0); }, "BMonteCarlo SelSamplesSource BImport BVelsFile",
       "Monte Carlo generation aborted"},
      {"saved sample",
       [&] {
         source(1);
         choose("oldGeneration", goldenPath("ishigami.sam"));
       },
       "BMonteCarlo SelSamplesSource BOld BVisualize BVelsFile", "Saved sample file loaded"},
      {"no model yet", [&] { panel_->call("monteCarlo"); },
       "BAbortMonteCarlo SelSamplesSource BOld BVisualize BSelectInput TeExternalConf",
       "New configuration for a Monte Carlo analysis. Select samples generation and model configuration"},
      {"ready",
       [&] {
         choose("oldGeneration", goldenPath("ishigami.sam"));
         panel_->openFile(QString::fromStdString(goldenPath("ishigami.imd")));
       },
       "BAbortMonteCarlo SelSamplesSource BOld BVisualize BSelectInput TeExternalConf BStart",
       "Internal model selection"},
      {"executed",
       [&] {
         clickWhenShown("PLinkFactors", "ok");
         panel_->call("start");
       },
       "BAbortMonteCarlo SelSamplesSource BOld BVisualize BSelectInput TeExternalConf BStart BSeeLog BAnalyse",
       "Monte Carlo execution"},
      {"a sample drops the results", [&] { choose("oldGeneration", goldenPath("ishigami.sam")); },
       "BAbortMonteCarlo SelSamplesSource BOld BVisualize BSelectInput TeExternalConf BStart BSeeLog",
       "Saved sample file loaded"},
      {"saved", [&] { choose("saveCfg", file("a.psc")); },
       "BAbortMonteCarlo SelSamplesSource BOld BVisualize BSelectInput TeExternalConf BStart BSeeLog AQuickSave",
       "Saved sample file loaded"},
      {"a project leaves the stage", [&] { choose("loadCfg", file("a.psc")); },
       "BMonteCarlo SelSamplesSource BOld BVisualize BSeeLog BVelsFile AQuickSave", "Saved sample file loaded"},
      {"reset", [&] { panel_->call("resetConfiguration"); }, "BMonteCarlo SelSamplesSource BOld BVelsFile",
       "Welcome to Tarvex software"},
      {"results", [&] { choose("velsFile", goldenPath("ishigami-run.spc")); },
       "BMonteCarlo SelSamplesSource BOld BVisualize BAnalyse BVelsFile", "Saved configuration for UA/SA analysis"},
      {"demo LevelE", [&] { panel_->call("levelE"); },
       "BAbortMonteCarlo BOld BVisualize TeExternalConf BAnalyse ALeaveDemo",
       "New configuration for a Monte Carlo analysis. Select samples generation and model configuration"},
      {"demo Ishigami",
       [&] {
         clickWhenShown("Help", "dismiss");
         panel_->call("ishigami");
       },
       "BAbortMonteCarlo BOld BVisualize TeExternalConf BStart BAnalyse ALeaveDemo",
       "New configuration for a Monte Carlo analysis. Select samples generation and model configuration"},
      {"exit demo", [&] { panel_->call("abortMonteCarlo"); }, "BMonteCarlo SelSamplesSource BOld BVelsFile",
       "Monte Carlo generation aborted"},
      {"external sample",
       [&] {
         source(0);
         choose("importGeneration", file("rows.txt"));
       },
       "BMonteCarlo SelSamplesSource BImport BVisualize BVelsFile", "External samples file loaded"},
  };
  test::writeFile(file("rows.txt"), "3\n2\na\nb\n1.5 10\n2.5 20\n4 15\n");
  for (const auto& [what, act, expected, line] : steps) {
    SCOPED_TRACE(what);
    act();
    EXPECT_EQ(usable(), expected);
    EXPECT_EQ(text("MlPrepVels").toStdString(), line);
    const bool stage = controller().monteCarloMode();
    EXPECT_EQ(panel_->gadget<QLabel>("IcArrow1")->isHidden(), !stage);
    EXPECT_EQ(panel_->gadget<QPushButton>("BGenerate")->isHidden(), stage);
    EXPECT_EQ(panel_->gadget<QPushButton>("BAbortMonteCarlo")->text().remove('&'),
              controller().demoMode() ? "Exit demo mode" : "Abort");
    for (const std::string& shown : takeShown())
      EXPECT_NE(shown.find(" *.psc *") + shown.find(": open"), 2 * std::string::npos) << shown;
  }
  EXPECT_EQ(description("TeConfiguration").substr(0, 22), "External Configuration");
}

TEST_F(MainPanelState, WhatWasAcceptedIsUndoneAndMadeAgain) {
  choose("oldGeneration", goldenPath("ishigami.sam"));
  auto* const undo = panel_->gadget<QAction>("AUndo");
  auto* const redo = panel_->gadget<QAction>("ARedo");
  EXPECT_FALSE(undo->isEnabled() || redo->isEnabled());
  EXPECT_TRUE(undo->toolTip().contains("There is no change to be undone."));
  ASSERT_TRUE(panel_->acceptPrep(settings(), "sample file"));
  modelOf("/bin/true");
  EXPECT_EQ(undo->text(), "&Undo model");
  undo->trigger();
  EXPECT_FALSE(controller().project().hasModel);
  EXPECT_EQ(description("TeExternalConf"), "");
  EXPECT_EQ(redo->text(), "&Redo model");
  undo->trigger();
  EXPECT_NE(controller().project().prep.sampleFile, file("new.sam"));
  redo->trigger();
  redo->trigger();
  EXPECT_EQ(controller().project().prep.sampleFile, file("new.sam"));
  EXPECT_EQ(controller().project().model.choice.executable, "/bin/true");
  EXPECT_FALSE(redo->isEnabled());
  choose("oldGeneration", goldenPath("ishigami.sam"));
  EXPECT_FALSE(undo->isEnabled());
}

// Stops each kind of work by the button of its panel; while it goes on, nothing else can be started.
TEST_F(MainPanelState, WorkIsStoppedByItsPanelAndTwiceIsNeverStarted) {
  test::writeScript(file("slow"), "sleep 20");
  choose("oldGeneration", goldenPath("ishigami.sam"));
  const struct {
    const char* what;
    const char* window;
    const char* line;
    Texts shown;
    std::function<void()> act;
  } works[] = {
      {"generation",
       "generation",
       "Stopped. There is no sample and no results.",
       {},
       [&] {
         PrepSettings large = settings();
         large.sampler->numSamples = 400'000;
         large.sampleFile = file("large.sam");
         ASSERT_TRUE(panel_->acceptPrep(std::move(large), "runs"));
         panel_->call("generate");
       }},
      {"equations",
       "model execution",
       "Stopped. The sample is kept; there are no results.",
       {},
       [&] {
         PrepSettings many = settings();
         many.sampler->numSamples = 100'000;
         ASSERT_TRUE(panel_->acceptPrep(std::move(many), "runs"));
         ASSERT_EQ(controller().generateSample(), Outcome::Done);
         panel_->openFile(QString::fromStdString(goldenPath("ishigami.imd")));
         source(1);
         panel_->call("monteCarlo");
         clickWhenShown("PLinkFactors", "ok");
         panel_->call("start");
       }},
      {"workbook",
       "external model execution",
       "Stopped. The sample is kept; there are no results.",
       {"Error: Error in the Excel model execution"},
       [&] {
         controller().makeSpreadsheetApplication = [](const std::function<bool()>& serve) {
           auto application = std::make_unique<test::ScriptedApplication>();
           application->sheets = {{"Outputs"}};
           application->user = [serve] {
             while (serve()) continue;
             return false;
           };
           return application;
         };
         test::writeFile(file("book.ods"), "a book");
         ModelChoice choice;
         choice.setExternal("Excel Application", file("book.ods"), 1);
         choice.kind = kExternalExecutable;
         ASSERT_TRUE(panel_->acceptModel(choice, "model"));
         panel_->call("start");
       }},
      {"executable",
       "external model execution",
       "Stopped. The sample is kept; there are no results.",
       {"Open preprocessed file: open *.sam *"},
       [&] {
         choose("oldGeneration", goldenPath("ishigami.sam"));
         source(1);
         panel_->call("monteCarlo");
         modelOf(file("slow"));
         panel_->call("start");
       }},
  };
  for (const auto& work : works) {
    const std::string what = work.what;
    const char* const window = work.window;
    SCOPED_TRACE(what);
    takeShown();
    bool twice = false;
    QTimer again;
    QObject::connect(&again, &QTimer::timeout, &again, [&] {
      if (!controller().busy() || twice) return;
      twice = true;
      for (const char* const callback :
           {"generate", "start", "ishigami", "quickSave", "resetConfiguration", "terminate"})
        panel_->call(callback);
      EXPECT_FALSE(panel_->gadget<QPushButton>("BStart")->isEnabled());
      panel_->openFile("other.psc");
      EXPECT_EQ(text("MlPrepVels").toStdString(), "Stop what is in progress before you open other.psc.");
      clickWhenShown(window, "stop");
    });
    again.start(1);
    QElapsedTimer clock;
    clock.start();
    work.act();
    EXPECT_TRUE(twice);
    EXPECT_LT(clock.elapsed(), 10'000);
    EXPECT_FALSE(controller().busy());
    EXPECT_EQ(text("MlPrepVels").toStdString(), work.line);
    EXPECT_FALSE(panel_->gadget<QPushButton>("BAnalyse")->isEnabled());
    EXPECT_EQ(takeShown(), work.shown);
  }
  EXPECT_EQ(controller().project().model.results.runCount(), 0);
}

}  // namespace
}  // namespace tarvex
