// Runs in parts of the study: what is started, looked at, and found again.

#include <QFileInfo>
#include <QSettings>
#include <filesystem>

#include "app/PartsRequest.h"
#include "app/RunController.h"
#include "panels/main/PMainPanel.h"
#include "panels/main/PanelWork.h"
#include "panels/parts/PParts.h"
#include "panels/parts/PPartsRun.h"
#include "parts/PartsText.h"
#include "parts/RunDirectory.h"
#include "parts/SiteSettings.h"
#include "toolkit/Dialogs.h"
#include "toolkit/Display.h"

namespace tarvex {
namespace {

constexpr const char* kPartsRuns = "parts/runs";  // directories of runs whose results no project has yet
constexpr int kMostRuns = 32;

// Not only out of reach, as on a file system that isn't mounted now.
bool isGone(const QString& directory) {
  const QFileInfo run(directory);
  return !run.exists() && QFileInfo::exists(run.absolutePath());
}

}  // namespace

QStringList PMainPanel::keptRuns() const {
  return display().kept() != nullptr ? display().kept()->value(kPartsRuns).toStringList() : QStringList();
}

void PMainPanel::keepRuns(const QStringList& runs) const {
  if (display().kept() != nullptr) display().kept()->setValue(kPartsRuns, runs.mid(0, kMostRuns));
}

// The directory of the youngest run that was begun here over the project's sample with its model; empty: none. Those
// that are gone are forgotten.
std::string PMainPanel::unfinishedRun(std::string& told) const {
  const QStringList kept = keptRuns();
  QStringList runs = kept;
  std::string found;
  for (const QString& directory : kept) {
    RunFollower run(directory.toStdString());
    std::string message;
    if (!run.look(message)) {
      if (isGone(directory)) runs.removeAll(directory);
      continue;
    }
    if (!found.empty() || !controller_->recognise(run.record())) continue;
    found = run.directory().path();
    told = partsText(run.states()) + '\n' + driverText(run) + '\n' + found;
  }
  if (runs != kept) keepRuns(runs);
  return found;
}

// Whether a run that was begun was taken up; `otherwise` is what the user can do instead.
bool PMainPanel::takeUpParts(const char* otherwise) {
  std::string told;
  const std::string found = unfinishedRun(told);
  if (found.empty() ||
      !Dialogs::current().question(
          "Run in parts",
          "There is a run in parts of this study whose results it doesn't have.\n" + QString::fromStdString(told),
          "^Take it up", otherwise, window()))
    return false;
  openParts(found, false);
  return true;
}

// After a file was opened.
void PMainPanel::offerParts() {
  if (!partsRun_ || !partsRun_->isVisible()) takeUpParts("^Not now");
}

void PMainPanel::runParts() {
  if (partsRun_ && partsRun_->isVisible()) return static_cast<void>(partsRun_->show());  // to the front
  if (const std::string reason = controller_->whyNotInParts(); !reason.empty())
    return say(QString::fromStdString(reason).trimmed());
  if (!takeUpParts("^Begin another")) startParts();
}

void PMainPanel::startParts() {
  guard_->saveNow();     // it may take its time
  frontEnd_.takeStop();  // of something before
  PartsRequest request;
  request.directory = freeRunDirectory(controller_->samplePath());
  SiteSettings site;
  std::string message;
  if (!site.load(message))
    return Dialogs::current().message(DialogKind::Error, "Error", QString::fromStdString(message), window());
  const std::filesystem::path name = std::filesystem::path(request.directory).filename();
  const std::string there =
      site.directory.empty() ? request.directory : (std::filesystem::path(site.directory) / name).string();
  PParts* shown = nullptr;
  const auto begin = [this, &shown](const PartsRequest& asked, std::string& problem) {
    std::string sample;
    if (controller_->provideSample(sample) != Outcome::Done) return false;  // the message has been shown
    const PanelWork work(display(), "The run in parts begins", shown->window());
    const auto goOn = [&work] { return work.progress().report(0.0); };
    if (!makeDirectories(asked.directory, problem)) return false;
    const bool begun = runBatch(wordsOf(asked, sample, controller_->project().model.choice),
                                controller_->mainDirectory(), goOn, problem);
    if (begun) return true;
    std::error_code error;
    std::filesystem::remove(asked.directory, error);  // unless it holds something
    if (work.stopped()) problem.clear();
    return false;
  };
  PParts panel(display(), request, there, begin, window());
  shown = &panel;
  panel.centre();
  if (!panel.runModal() || !panel.accepted()) return;
  const QString directory = QString::fromStdString(panel.request().directory);
  keepRuns(QStringList(directory) + keptRuns());
  openParts(panel.request().directory, true);
}

void PMainPanel::openParts(const std::string& directory, bool starts) {
  const PPartsRun::Told told = {[this, directory] {
                                  QStringList runs = keptRuns();
                                  runs.removeAll(QString::fromStdString(directory));
                                  keepRuns(runs);
                                  say("The results of the run in parts are there.");
                                  refresh();
                                },
                                [this] { refresh(); }};
  partsRun_ = std::make_unique<PPartsRun>(display(), *controller_, directory, told, window());
  if (starts) partsRun_->expectStart();
  partsRun_->centre();
  static_cast<void>(partsRun_->show());  // where its file is missing, that has been said
  say("The run in parts goes on by itself; its panel can be closed and opened.");
}

}  // namespace tarvex
