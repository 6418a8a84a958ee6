#include "panels/main/PMainPanel.h"

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPlainTextEdit>

#include "app/RunController.h"
#include "panels/main/PAbout.h"
#include "panels/main/PLogFile.h"
#include "panels/parts/PPartsRun.h"
#include "panels/plots/openPlots.h"
#include "panels/prep/PPrepMain.h"
#include "panels/vels/PVelsMain.h"
#include "panels/vels/ResultDesk.h"
#include "toolkit/Application.h"
#include "toolkit/Dialogs.h"
#include "toolkit/Display.h"

namespace tarvex {
namespace {

constexpr int kWidth = 730;
constexpr int kHeight = 480;

QString lines(const std::vector<std::string>& texts) {
  QStringList list;
  for (const std::string& line : texts) list << QString::fromStdString(line);
  return list.join('\n');
}

}  // namespace

PMainPanel::PMainPanel(const Display& display, const QString& name, const QString& title,
                       const std::string& mainDirectory)
    : Panel(display, "PMainPanel", name, title),
      frontEnd_(display),
      controller_(std::make_unique<RunController>(frontEnd_, mainDirectory, RunController::CurrentDirectory::Follows)),
      results_(std::make_unique<ResultDesk>(display, *controller_, window())),
      title_(title) {
  if (!hasPlace()) window()->resize(kWidth, kHeight);
  window()->setAcceptDrops(true);
  frontEnd_.setParent(window());
  gadget<QComboBox>("SelSamplesSource")->setCurrentIndex(kNewConfiguration);
  gadget<QPlainTextEdit>("TeConfiguration")->setPlainText("No configuration loaded");
  say("Welcome to Tarvex software.");
  registerCallbacks({{"ishigami", [this] { demo("Ishigami"); }},
                     {"loadCfg", [this] { loadCfg(); }},
                     {"analyse", [this] { analyse(); }},
                     {"sobol1", [this] { demo("SobolG1"); }},
                     {"AboutTarvex", [this] { showAbout(); }},
                     {"help", [this] { help(); }},
                     {"seeLog", [this] { seeLog(); }},
                     {"visualize", [this] { visualize(); }},
                     {"oldGeneration", [this] { oldGeneration(); }},
                     {"helpSearch", [this] { helpSearch(); }},
                     {"linear", [this] { demo("Linear"); }},
                     {"changeSel", [this] { changeSel(); }},
                     {"selectInput", [this] { selectInput(); }},
                     {"monteCarlo", [this] { monteCarlo(); }},
                     {"configure", [this] { configure(); }},
                     {"quickSave", [this] { quickSave(); }},
                     {"generate", [this] { generate(); }},
                     {"sobol3", [this] { demo("SobolG3"); }},
                     {"levelE", [this] { demo("LevelE"); }},
                     {"resetConfiguration", [this] { resetConfiguration(); }},
                     {"velsFile", [this] { velsFile(); }},
                     {"start", [this] { start(); }},
                     {"runParts", [this] { runParts(); }},
                     {"sobol0", [this] { demo("SobolG0"); }},
                     {"saveCfg", [this] { saveCfg(); }},
                     {"importGeneration", [this] { importGeneration(); }},
                     {"sobol2", [this] { demo("SobolG2"); }},
                     {"abortMonteCarlo", [this] { abortMonteCarlo(); }},
                     {"terminate", [this] { terminate(); }},
                     {"undo", [this] { undo(); }},
                     {"redo", [this] { redo(); }}});
  for (QMenu* const menu : window()->findChildren<QMenu*>()) menu->setToolTipsVisible(true);
  // What comes and goes with the stage keeps its place, so that nothing else moves.
  for (const char* const gadgetName : {"BGenerate", "BVisualize", "IcArrow1", "IcArrow2"}) {
    auto* const passing = gadget<QWidget>(gadgetName);
    QSizePolicy policy = passing->sizePolicy();
    policy.setRetainSizeWhenHidden(true);
    passing->setSizePolicy(policy);
  }
  recent_ = std::make_unique<RecentFiles>(display, *gadget<QMenu>("MnRecent"),
                                          [this](const QString& path) { openFile(path); });
  controller_->whyHeld = [this] { return partsRun_ ? partsRun_->whyHeld() : std::string(); };
  guard_ = std::make_unique<ProjectGuard>(
      *controller_, window(), [this](const QString& text) { say(text); }, [this] { showProject(); });
  subscription_ = controller_->subscribe([this](Changes) { refresh(); });
  refresh();
}

PMainPanel::~PMainPanel() = default;

PMainPanel::Source PMainPanel::source() {
  return static_cast<Source>(gadget<QComboBox>("SelSamplesSource")->currentIndex());
}

void PMainPanel::say(const QString& text) {
  gadget<QLabel>("MlPrepVels")->setText(text);
}

void PMainPanel::describePrep(PrepOrigin origin) {
  gadget<QPlainTextEdit>("TeConfiguration")
      ->setPlainText(lines(tarvex::describePrep(controller_->project().prep, origin)));
}

void PMainPanel::describeModel() {
  const ModelConfiguration& model = controller_->project().model;
  gadget<QPlainTextEdit>("TeExternalConf")->setPlainText(lines(tarvex::describeModel(model)));
}

// The stages.

void PMainPanel::monteCarlo() {
  say("New configuration for a Monte Carlo analysis. Select samples generation and model configuration");
  static_cast<void>(controller_->enterMonteCarlo());  // what it changes is shown by refresh()
}

void PMainPanel::changeSel() {
  configured_ = false;
  refresh();
}

void PMainPanel::configure() {
  const ProjectConfiguration& project = controller_->project();
  const bool isExternal = project.prep.external == 1;
  if (controller_->mayEditPrep() != Outcome::Done) return;
  if (isExternal) showProject();
  say("New configuration for sample set creation");
  PrepSettings settings;
  std::string problem;
  if (project.hasPrep && !settings.copyFrom(project.prep, problem)) return say(QString::fromStdString(problem));
  const DefaultTruncations before;
  PPrepMain panel(display(), std::move(settings), factorFile_, controller_->demoMode(), window());
  panel.centre();
  if (!panel.runModal() || !panel.accepted() || controller_->demoMode()) return;
  const QString from = panel.fromFile();
  if (!acceptPrep(panel.takeSettings(), "Configure sample", from, before)) before.restore();
}

void PMainPanel::generate() {
  guard_->saveNow();                                 // it may take its time
  frontEnd_.takeStop();                              // of something before
  static_cast<void>(controller_->generateSample());  // the messages have been shown
  tellStop();
}

void PMainPanel::visualize() {
  say("Visualize the samples created");
  openPlots(*results_);
}

void PMainPanel::start() {
  guard_->saveNow();     // it may take its time
  frontEnd_.takeStop();  // of something before
  say("Monte Carlo execution");
  logOffered_ = true;
  const auto use =
      source() == kNewConfiguration ? RunController::SampleUse::Generated : RunController::SampleUse::Existing;
  static_cast<void>(controller_->runModel(use));  // the messages have been shown
  tellStop();
  refresh();
}

void PMainPanel::tellStop() {
  if (!frontEnd_.takeStop()) return;
  const bool sample = controller_->project().prep.samples.rows() > 0;
  say(sample ? "Stopped. The sample is kept; there are no results." : "Stopped. There is no sample and no results.");
}

void PMainPanel::analyse() {
  say("Statistical post processor");
  for (Panel* const open : results_->panels())
    if (auto* const vels = dynamic_cast<PVelsMain*>(open)) return static_cast<void>(vels->show());  // to the front
  results_->open(std::make_unique<PVelsMain>(*results_, [this] { velsFile(); }));
}

void PMainPanel::abortMonteCarlo() {
  if (controller_->busy()) return;
  if (controller_->demoMode()) resetPanel();
  say("Monte Carlo generation aborted");
  logOffered_ = false;
  static_cast<void>(controller_->leaveMonteCarlo());  // refused only while busy
  refresh();
}

// Help and the end.

void PMainPanel::seeLog() {
  PLogFile panel(display(), window());
  panel.centre();
  static_cast<void>(panel.runModal());  // where its file is missing, that has been said
}

void PMainPanel::help() {
  display().showHelp(HelpCommand::Contents);
}

void PMainPanel::helpSearch() {
  display().showHelp(HelpCommand::Search);
}

void PMainPanel::showAbout() {
  PAbout panel(display(), window());
  panel.centre();
  static_cast<void>(panel.runModal());  // where its file is missing, that has been said
}

void PMainPanel::terminate() {
  window()->close();
}

bool PMainPanel::closing() {
  if (controller_->busy()) {
    say("Stop what is in progress before you leave.");
    return false;
  }
  if (controller_->mayDiscard(Discard::ForReset) != Outcome::Done) return false;
  guard_->leave(false);
  Application::exit(0);
  return true;
}

void PMainPanel::endBySignal(int signal) {
  constexpr int kSignalled = 128;  // as the shell has it
  endStatus_ = kSignalled + signal;
  frontEnd_.stop();
  if (!controller_->busy()) guard_->leave(true);
  Application::exit(endStatus_);
}

}  // namespace tarvex
