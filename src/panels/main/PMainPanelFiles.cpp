// Files of all kinds: by menu, argument, drop, launch request and demonstration case.

#include <QDir>
#include <QDragEnterEvent>
#include <QFileInfo>
#include <QLineEdit>
#include <QMimeData>
#include <QPlainTextEdit>
#include <QUrl>

#include "app/DemoCases.h"
#include "app/RunController.h"
#include "base/RememberedDirectories.h"
#include "factors/FactorFiles.h"
#include "model/InternalModel.h"
#include "panels/help/PHelp.h"
#include "panels/main/PMainPanel.h"
#include "panels/main/openedKind.h"
#include "toolkit/Dialogs.h"

namespace tarvex {
namespace {

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

const FileFilter kAllFiles{"*", "all files"};

}  // namespace

void PMainPanel::oldGeneration() {
  say("Load saved sample file");
  const QString path =
      choose("Open preprocessed file", {{"*.sam", "sample files"}, kAllFiles}, RememberedDirectories::Prep, window());
  if (!path.isEmpty()) loadSample(path);
}

void PMainPanel::loadSample(const QString& path) {
  if (controller_->loadSampleFile(path.toStdString()) != Outcome::Done) return;
  sampleOpened(PrepOrigin::SavedSample, "TOldGeneration", path);
  say("Saved sample file loaded");
}

void PMainPanel::importGeneration() {
  say("Load external sample file");
  const QString path = choose("Open external file", {kAllFiles}, RememberedDirectories::Prep, window());
  if (!path.isEmpty()) importSample(path);
}

void PMainPanel::importSample(const QString& path) {
  if (controller_->importSampleFile(path.toStdString()) != Outcome::Done) return;
  sampleOpened(PrepOrigin::External, "TImportFile", path);
  say("External samples file loaded");
}

// Its field alone names a file.
void PMainPanel::sampleOpened(PrepOrigin origin, const char* field, const QString& path) {
  describePrep(origin);
  clearFileFields();
  gadget<QLineEdit>(field)->setText(path);
  fileOpened(path);
}

void PMainPanel::clearFileFields() {
  for (const char* const name : {"TOldGeneration", "TImportFile", "TVelsFile"}) gadget<QLineEdit>(name)->clear();
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
  fileOpened(path);
  offerParts();
}

void PMainPanel::loadCfg() {
  if (controller_->mayDiscard(Discard::ForProject) != Outcome::Done) return;
  const QString path = choose("Open Tarvex configuration", {{"*.psc", "project's files"}, kAllFiles},
                              RememberedDirectories::Prep, window());
  if (!path.isEmpty()) loadProject(path);
}

void PMainPanel::loadProject(const QString& path) {
  if (!guard_->mayOpen(path) || controller_->loadProject(path.toStdString()) != Outcome::Done) return;
  fileOpened(path);
  showProject();
  offerParts();
}

// The project in hand, after all of it was replaced.
void PMainPanel::showProject() {
  const ProjectConfiguration& project = controller_->project();
  if (project.fileName != ProjectConfiguration::kNoFile)
    title_ = "PrepVels - " + QString::fromStdString(project.fileName);
  if (project.hasPrep)
    describePrep(PrepOrigin::Saved);
  else
    gadget<QPlainTextEdit>("TeConfiguration")->setPlainText("No configuration loaded");
  for (const char* const name : {"TOldGeneration", "TImportFile"}) gadget<QLineEdit>(name)->clear();
  if (project.hasModel)
    describeModel();
  else
    gadget<QPlainTextEdit>("TeExternalConf")->clear();
  refresh();
}

// Another file's content is in hand: what was changed before can't be had back.
void PMainPanel::fileOpened(const QString& path) {
  forgetChanges();
  recent_->add(path);
  refresh();
}

void PMainPanel::saveCfg() {
  const QString path = choose("Save current configuration", {{"*.psc", "project's files"}, kAllFiles},
                              RememberedDirectories::Prep, window(), FileChoice::Purpose::Save, "psc");
  if (path.isEmpty()) return;
  guard_->beginSave();
  const Outcome saved = controller_->saveProjectAs(path.toStdString());
  guard_->endSave(saved == Outcome::Done);
  if (saved != Outcome::Done) return;
  title_ = "Tarvex - " + path;
  recent_->add(path);
  refresh();
}

void PMainPanel::quickSave() {
  guard_->beginSave();
  guard_->endSave(controller_->quickSave() == Outcome::Done);  // the messages have been shown
}

void PMainPanel::resetConfiguration() {
  if (controller_->mayDiscard(Discard::ForReset) != Outcome::Done) return;
  resetPanel();
  abortMonteCarlo();
  say("Welcome to Tarvex software");
}

void PMainPanel::resetPanel() {
  static_cast<void>(controller_->clearAll());  // refused only while busy
  forgetChanges();
  configured_ = false;
  title_ = "Tarvex";
  gadget<QPlainTextEdit>("TeConfiguration")->setPlainText("No data available");
  gadget<QPlainTextEdit>("TeExternalConf")->clear();
  clearFileFields();
  refresh();
}

void PMainPanel::demo(const char* caseName) {
  if (controller_->openDemo(caseName) != Outcome::Done) return;
  forgetChanges();
  title_ = QString("Tarvex (Demo mode - %1)").arg(caseName);
  monteCarlo();
  describePrep(PrepOrigin::Demo);
  describeModel();
  gadget<QLineEdit>("TOldGeneration")->clear();
  gadget<QLineEdit>("TVelsFile")->clear();
  refresh();
  const DemoCase* const known = findDemoCase(caseName);
  if (known == nullptr || !known->canRun) return;
  PHelp description(display(), QString("Help - ") + caseName, QString(caseName) + " model description",
                    QString("../help/") + caseName + ".bmp", QString("cases#") + caseName, window());
  description.centre();
  static_cast<void>(description.runModal());  // where its file is missing, that has been said
}

void PMainPanel::loadModel(const QString& path) {
  auto model = std::make_unique<InternalModel>();
  std::string problem;
  if (!loadModelFile(path.toStdString(), *model, problem)) {
    Dialogs::current().message(DialogKind::Error, "Error", QString::fromStdString(problem), window());
    return;
  }
  ModelChoice choice;
  choice.setInternalModel(std::move(model));
  static_cast<void>(acceptModel(choice, "model " + QFileInfo(path).fileName()));  // the message has been shown
}

// In the place of the factors in hand; the rest of the configuration stays.
void PMainPanel::loadFactors(const QString& path) {
  const DefaultTruncations before;
  FactorList factors;
  std::string message;
  if (!loadFactorFile(path.toStdString(), factors, message))
    return Dialogs::current().message(DialogKind::Error, "Error", QString::fromStdString(message), window());
  const QString against = why(Step::ConfigurePrep);
  const ProjectConfiguration& project = controller_->project();
  PrepSettings settings;
  std::string problem;
  if (!against.isEmpty() || controller_->mayEditPrep() != Outcome::Done ||
      (project.hasPrep && !settings.copyFrom(project.prep, problem))) {
    before.restore();
    const QString reason = against + QString::fromStdString(problem);
    if (!reason.isEmpty()) say(reason);
    return;
  }
  settings.factors = std::move(factors);
  const QFileInfo file(path);
  if (settings.sampleFile.empty())
    settings.sampleFile = QDir(file.absolutePath()).filePath(file.completeBaseName() + ".sam").toStdString();
  if (!acceptPrep(std::move(settings), "factors of " + file.fileName(), path, before)) return before.restore();
  say("Factors of " + path + " loaded");
  if (!message.empty())
    Dialogs::current().message(DialogKind::Warning, "Warning", QString::fromStdString(message), window());
}

void PMainPanel::openFile(const QString& path) {
  if (controller_->busy()) return say("Stop what is in progress before you open " + path + '.');
  const OpenedKind kind = openedKind(path);
  if (kind == OpenedKind::Factors) return loadFactors(path);
  if (kind == OpenedKind::Model) return loadModel(path);
  // The others take the place of all that is in hand.
  if (controller_->mayDiscard(Discard::ForProject) != Outcome::Done) return;
  if (kind == OpenedKind::Sample) return loadSample(path);
  if (kind == OpenedKind::Results) return loadResults(path);
  if (kind == OpenedKind::ExternalSample) return importSample(path);
  loadProject(path);
}

void PMainPanel::offerRecovery() {
  guard_->offerRecovery();
  for (const QString& path : recent_->paths())
    if (!controller_->modified() && QFileInfo::exists(SafeCopy::copyOf(path)) && SafeCopy::holder(path).isEmpty())
      return loadProject(path);
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

bool PMainPanel::eventFilter(QObject* watched, QEvent* event) {
  if (watched == window() && event->type() == QEvent::DragEnter) {
    auto* const drag = static_cast<QDragEnterEvent*>(event);
    if (drag->mimeData()->hasUrls()) drag->acceptProposedAction();
    return true;
  }
  if (watched == window() && event->type() == QEvent::PaletteChange && guard_) refresh();
  if (watched == window() && event->type() == QEvent::Drop) {
    const QList<QUrl> urls = static_cast<QDropEvent*>(event)->mimeData()->urls();
    // What was dropped is opened when the other program has its answer.
    for (const QUrl& url : urls)
      QMetaObject::invokeMethod(
          this, [this, path = url.toLocalFile()] { openFile(path); }, Qt::QueuedConnection);
    return true;
  }
  return Panel::eventFilter(watched, event);
}

}  // namespace tarvex
