#include "panels/main/PMainPanel.h"

#include <QAction>
#include <QComboBox>
#include <QDragEnterEvent>
#include <QFileInfo>
#include <QKeySequence>
#include <QLabel>
#include <QLineEdit>
#include <QMenuBar>
#include <QMimeData>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QUrl>

#include "app/DemoCases.h"
#include "app/RunController.h"
#include "base/RememberedDirectories.h"
#include "panels/main/PAbout.h"
#include "panels/main/PHelp.h"
#include "panels/main/PLogFile.h"
#include "toolkit/Application.h"
#include "toolkit/Dialogs.h"
#include "toolkit/Display.h"
#include "toolkit/menuItem.h"

namespace tarvex {
namespace {

constexpr int kWidth = 730;
constexpr int kHeight = 480;
constexpr int kLeaveDemoItem = 5;  // of the second menu

QString remembered(RememberedDirectories::Kind kind) {
  return QString::fromStdString(RememberedDirectories::get(kind));
}

// A file of the user's choice, from the directory that is remembered for its kind; empty when he cancelled.
QString choose(const QString& title, std::vector<FileFilter> filters, RememberedDirectories::Kind kind, QWidget* parent,
               FileChoice::Purpose purpose = FileChoice::Purpose::Open, const QString& suffix = {}) {
  const auto chosen =
      Dialogs::current().chooseFile({title, std::move(filters), remembered(kind), purpose, suffix}, parent);
  if (!chosen) return {};
  // A directory that is gone by now leaves the old one.
  static_cast<void>(RememberedDirectories::set(kind, chosen->directory.toStdString()));
  return chosen->path;
}

QString lines(const std::vector<std::string>& texts) {
  QStringList list;
  for (const std::string& line : texts) list << QString::fromStdString(line);
  return list.join('\n');
}

// "1 run", "8192 runs".
QString counted(std::size_t count, const char* what) {
  return QString::number(count) + ' ' + what + (count == 1 ? "" : "s");
}

const FileFilter kAllFiles{"*", "all files"};

}  // namespace

PMainPanel::PMainPanel(const Display& display, const QString& name, const QString& title,
                       const std::string& mainDirectory)
    : Panel(display, "PMainPanel", name, title),
      frontEnd_(display),
      controller_(std::make_unique<RunController>(frontEnd_, mainDirectory, RunController::CurrentDirectory::Follows)),
      title_(title) {
  window()->resize(kWidth, kHeight);
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
                     {"sobol0", [this] { demo("SobolG0"); }},
                     {"saveCfg", [this] { saveCfg(); }},
                     {"importGeneration", [this] { importGeneration(); }},
                     {"sobol2", [this] { demo("SobolG2"); }},
                     {"abortMonteCarlo", [this] { abortMonteCarlo(); }},
                     {"terminate", [this] { terminate(); }}});
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

void PMainPanel::notYet(const QString& what) {
  Dialogs::current().message(DialogKind::Information, "Tarvex",
                             what + " has no panel yet; tarvex-batch does the same work from a shell.", window());
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
  if (controller_->mayEditPrep() != Outcome::Done) return;
  say("New configuration for sample set creation");
  notYet("The pre-processor");
}

void PMainPanel::generate() {
  static_cast<void>(controller_->generateSample());  // the messages have been shown
}

void PMainPanel::visualize() {
  say("Visualize the samples created");
  notYet("The plots of samples");
}

void PMainPanel::oldGeneration() {
  say("Load saved sample file");
  const QString path =
      choose("Open preprocessed file", {{"*.sam", "sample files"}, kAllFiles}, RememberedDirectories::Prep, window());
  if (!path.isEmpty()) loadSample(path);
}

void PMainPanel::loadSample(const QString& path) {
  if (controller_->loadSampleFile(path.toStdString()) != Outcome::Done) return;
  describePrep(PrepOrigin::SavedSample);
  gadget<QLineEdit>("TOldGeneration")->setText(path);
  gadget<QLineEdit>("TVelsFile")->clear();
  gadget<QLineEdit>("TImportFile")->clear();
  say("Saved sample file loaded");
}

void PMainPanel::importGeneration() {
  say("Load external sample file");
  const QString path = choose("Open external file", {kAllFiles}, RememberedDirectories::Prep, window());
  if (!path.isEmpty()) importSample(path);
}

void PMainPanel::importSample(const QString& path) {
  if (controller_->importSampleFile(path.toStdString()) != Outcome::Done) return;
  describePrep(PrepOrigin::External);
  gadget<QLineEdit>("TImportFile")->setText(path);
  gadget<QLineEdit>("TVelsFile")->clear();
  gadget<QLineEdit>("TOldGeneration")->clear();
  say("External samples file loaded");
}

void PMainPanel::selectInput() {
  notYet("The model selection");
}

void PMainPanel::start() {
  say("Monte Carlo execution");
  logOffered_ = true;
  const auto use =
      source() == kNewConfiguration ? RunController::SampleUse::Generated : RunController::SampleUse::Existing;
  static_cast<void>(controller_->runModel(use));  // the messages have been shown
  refresh();
}

void PMainPanel::analyse() {
  notYet("The post-processor");
}

void PMainPanel::abortMonteCarlo() {
  if (controller_->busy()) return;
  if (controller_->demoMode()) resetPanel();
  say("Monte Carlo generation aborted");
  logOffered_ = false;
  static_cast<void>(controller_->leaveMonteCarlo());  // refused only while busy
  refresh();
}

// Files.

void PMainPanel::velsFile() {
  say("Saved configuration for UA/SA analysis");
  const QString path = choose("Open file for postprocessing", {{"*.spc", "vels's files"}, kAllFiles},
                              RememberedDirectories::Vels, window());
  if (!path.isEmpty()) loadResults(path);
}

void PMainPanel::loadResults(const QString& path) {
  if (controller_->loadResultsFile(path.toStdString()) != Outcome::Done) return;
  describePrep(PrepOrigin::Saved);
  describeModel();
  gadget<QLineEdit>("TOldGeneration")->clear();
  gadget<QLineEdit>("TVelsFile")->setText(path);
}

void PMainPanel::loadCfg() {
  if (controller_->mayDiscard(Discard::ForProject) != Outcome::Done) return;
  const QString path = choose("Open Tarvex configuration", {{"*.psc", "project's files"}, kAllFiles},
                              RememberedDirectories::Prep, window());
  if (!path.isEmpty()) loadProject(path);
}

void PMainPanel::loadProject(const QString& path) {
  if (controller_->loadProject(path.toStdString()) != Outcome::Done) return;
  const ProjectConfiguration& project = controller_->project();
  title_ = "PrepVels - " + QString::fromStdString(project.fileName);
  if (project.hasPrep) {
    describePrep(PrepOrigin::Saved);
    gadget<QLineEdit>("TOldGeneration")->clear();
    gadget<QLineEdit>("TImportFile")->clear();
  }
  if (project.hasModel) describeModel();
  refresh();
}

void PMainPanel::saveCfg() {
  const QString path = choose("Save current configuration", {{"*.psc", "project's files"}, kAllFiles},
                              RememberedDirectories::Prep, window(), FileChoice::Purpose::Save, "psc");
  if (path.isEmpty() || controller_->saveProjectAs(path.toStdString()) != Outcome::Done) return;
  title_ = "Tarvex - " + path;
  refresh();
}

void PMainPanel::quickSave() {
  static_cast<void>(controller_->quickSave());  // the messages have been shown
}

void PMainPanel::resetConfiguration() {
  if (controller_->mayDiscard(Discard::ForReset) != Outcome::Done) return;
  resetPanel();
  abortMonteCarlo();
  say("Welcome to Tarvex software");
}

void PMainPanel::resetPanel() {
  static_cast<void>(controller_->clearAll());  // refused only while busy
  demoCase_.clear();
  configured_ = false;
  title_ = "Tarvex";
  gadget<QPlainTextEdit>("TeConfiguration")->setPlainText("No data available");
  gadget<QPlainTextEdit>("TeExternalConf")->clear();
  for (const char* const name : {"TOldGeneration", "TImportFile", "TVelsFile"}) gadget<QLineEdit>(name)->clear();
  refresh();
}

void PMainPanel::demo(const char* caseName) {
  if (controller_->openDemo(caseName) != Outcome::Done) return;
  demoCase_ = caseName;
  title_ = QString("Tarvex (Demo mode - %1)").arg(caseName);
  monteCarlo();
  describePrep(PrepOrigin::Demo);
  describeModel();
  gadget<QLineEdit>("TOldGeneration")->clear();
  gadget<QLineEdit>("TVelsFile")->clear();
  refresh();
  const DemoCase* const known = findDemoCase(caseName);
  if (known == nullptr || !known->canRun) return;
  PHelp description(display(), "Help - " + demoCase_, demoCase_ + " model description", "../help/" + demoCase_ + ".bmp",
                    window());
  description.centre();
  static_cast<void>(description.runModal());  // where its file is missing, that has been said
}

void PMainPanel::openFile(const QString& path) {
  const QString suffix = QFileInfo(path).suffix().toLower();
  if (suffix == "sam") return loadSample(path);
  if (suffix == "spc") return loadResults(path);
  if (controller_->mayDiscard(Discard::ForProject) == Outcome::Done) loadProject(path);
}

void PMainPanel::readLaunchRequest() {
  const LaunchRequest request = LaunchRequest::read(controller_->mainDirectory());
  for (const LaunchRequest::File& file : request.files()) {
    const QString path = QString::fromStdString(file.path);
    switch (file.kind) {
      case LaunchRequest::FileKind::SavedSample:
        loadSample(path);
        break;
      case LaunchRequest::FileKind::ExternalSample:
        importSample(path);
        break;
      case LaunchRequest::FileKind::Results:
        loadResults(path);
        break;
    }
  }
  if (!request.applyModel(*controller_)) return;
  describeModel();
  say(QString::fromStdString(modelSelectionText(controller_->project().model)));
  refresh();
}

// Help and the end.

void PMainPanel::seeLog() {
  PLogFile panel(display(), window());
  panel.centre();
  static_cast<void>(panel.runModal());  // where its file is missing, that has been said
}

void PMainPanel::help() {
  notYet("The help viewer");
}

void PMainPanel::helpSearch() {
  notYet("The help viewer");
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
  Application::exit(0);
  return true;
}

bool PMainPanel::eventFilter(QObject* watched, QEvent* event) {
  if (watched == window() && event->type() == QEvent::DragEnter) {
    auto* const drag = static_cast<QDragEnterEvent*>(event);
    if (drag->mimeData()->hasUrls()) drag->acceptProposedAction();
    return true;
  }
  if (watched == window() && event->type() == QEvent::Drop) {
    const QList<QUrl> urls = static_cast<QDropEvent*>(event)->mimeData()->urls();
    if (!urls.isEmpty()) openFile(urls.constFirst().toLocalFile());
    return true;
  }
  return Panel::eventFilter(watched, event);
}

// What the gadgets show.

void PMainPanel::allow(const char* gadgetName, bool sensitive, const QString& reason) {
  auto* const widget = gadget<QWidget>(gadgetName);
  widget->setEnabled(sensitive);
  if (!widget->property("usualToolTip").isValid()) widget->setProperty("usualToolTip", widget->toolTip());
  const QString usual = widget->property("usualToolTip").toString();
  const bool explained = !sensitive && !reason.isEmpty();
  widget->setToolTip(explained ? usual + '\n' + reason : usual);
  widget->setAccessibleDescription(explained ? reason : QString());
}

void PMainPanel::allow(const char* gadgetName, Step step, bool also) {
  const QString reason = QString::fromStdString(controller_->whyNot(step));
  allow(gadgetName, also && reason.isEmpty(), reason);
}

void PMainPanel::refresh() {
  const bool stage = controller_->monteCarloMode();
  const bool demo = controller_->demoMode();
  const Source from = source();
  const QString otherSource = "Another source of the sample is chosen.";
  const QString enterFirst = "Enter the Monte Carlo analysis first.";
  const QString leaveFirst = "Leave the Monte Carlo analysis first.";

  allow("BMonteCarlo", Step::EnterMonteCarlo);
  allow("BAbortMonteCarlo", Step::LeaveMonteCarlo);
  allow("SelSamplesSource", !demo, "A demonstration case keeps its sample.");
  allow("BConfigure", Step::ConfigurePrep, from == kNewConfiguration);
  allow("BGenerate", Step::Generate, from == kNewConfiguration && configured_);
  for (const char* const name : {"BOld", "TOldGeneration"}) allow(name, from == kSavedFile, otherSource);
  for (const char* const name : {"BImport", "TImportFile"}) allow(name, from == kExternalFile, otherSource);
  allow("BVisualize", Step::Visualize);
  gadget<QPushButton>("BGenerate")->setVisible(!stage);
  gadget<QPushButton>("BVisualize")->setVisible(!stage);
  allow("BSelectInput", Step::SelectModel, stage && !demo);
  allow("TeExternalConf", stage, enterFirst);
  allow("BStart", Step::Run, demoCase_ != "LevelE");
  allow("BSeeLog", logOffered_, "Nothing has been run yet.");
  allow("BAnalyse", Step::Analyse);
  for (const char* const name : {"BVelsFile", "TVelsFile"}) allow(name, !stage, leaveFirst);
  for (const char* const name : {"IcArrow1", "IcArrow2"}) gadget<QLabel>(name)->setVisible(stage);
  gadget<QPushButton>("BAbortMonteCarlo")->setText(demo ? "Exit demo mode" : "Abort");
  for (const char* const name : {"BVelsFile", "BOld", "BImport"}) {
    auto* const button = gadget<QPushButton>(name);
    button->setIcon(display().icon(button->isEnabled() ? "../bitmaps/oleagg.gif" : "../bitmaps/oleaggInv.gif"));
  }
  if (QAction* const item = menuItem(*gadget<QMenuBar>("MnMenu"), 0, 2))
    item->setEnabled(controller_->whyNot(Step::QuickSave).empty());
  if (QAction* const item = menuItem(*gadget<QMenuBar>("MnMenu"), 1, kLeaveDemoItem)) item->setEnabled(demo);
  const struct {
    const char* item;
    const char* button;
  } twins[] = {{"AConfigure", "BConfigure"}, {"AGenerate", "BGenerate"}, {"ASelectInput", "BSelectInput"},
               {"AStart", "BStart"},         {"AAnalyse", "BAnalyse"},   {"AVelsFile", "BVelsFile"}};
  for (const auto& [item, button] : twins) gadget<QAction>(item)->setEnabled(gadget<QPushButton>(button)->isEnabled());
  refreshStages();
  refreshTitle();
}

void PMainPanel::refreshTitle() {
  setTitle(title_ + "[*]");
  window()->setWindowModified(controller_->modified());
}

void PMainPanel::showStage(const char* stage, const QString& word, const QString& bitmap, const QString& reason) {
  const QByteArray name(stage);
  gadget<QLabel>(("Ml" + name + "State").constData())->setText(word);
  gadget<QLabel>(("Ml" + name + "Reason").constData())->setText(reason);
  gadget<QLabel>(("Ic" + name + "State").constData())->setPixmap(display().icon(bitmap).pixmap(16, 16));
}

void PMainPanel::refreshStages() {
  static constexpr const char* kDone = "../bitmaps/done.svg";
  static constexpr const char* kReady = "../bitmaps/ready.svg";
  static constexpr const char* kStale = "../bitmaps/stale.svg";
  static constexpr const char* kWaiting = "../bitmaps/waiting.svg";
  const ProjectConfiguration& project = controller_->project();
  const auto reason = [this](Step step) { return QString::fromStdString(controller_->whyNot(step)); };
  const auto show = [&](const char* stage, Step step, bool done, bool stale, const QString& doneText) {
    const QString why = reason(step);
    if (stale)
      showStage(stage, "stale", kStale, "The settings changed after this was made.");
    else if (done)
      showStage(stage, "done", kDone, doneText);
    else if (why.isEmpty())
      showStage(stage, "ready", kReady, {});
    else
      showStage(stage, "waiting", kWaiting, why);
  };
  const int rows = project.prep.samples.rows();
  const bool sample = project.hasPrep && rows > 0;
  const bool results = reason(Step::Analyse).isEmpty();
  show("Sample", Step::Generate, sample, sample && controller_->sampleStale(),
       counted(static_cast<std::size_t>(rows), "run") + " of " +
           counted(static_cast<std::size_t>(project.prep.factors.factorCount()), "factor"));
  show("Model", Step::Run, results, false, counted(project.vels.outputs().size(), "output") + " computed");
  show("Results", Step::Analyse, results && !project.vels.selectedVariables().empty(), false,
       counted(project.vels.selectedVariables().size(), "variable") + " analysed");
}

}  // namespace tarvex
