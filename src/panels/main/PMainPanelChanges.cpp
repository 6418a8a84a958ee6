// What panels edited, and undo.

#include <QLineEdit>
#include <utility>

#include "app/RunController.h"
#include "panels/main/PMainPanel.h"

namespace tarvex {

bool PMainPanel::acceptPrep(PrepSettings settings, const QString& name, const QString& factorFile,
                            const DefaultTruncations& defaults) {
  const ProjectConfiguration& project = controller_->project();
  const bool had = project.hasPrep && project.prep.external != 1;
  const auto before = std::make_shared<PrepSettings>();
  const auto after = std::make_shared<PrepSettings>();
  std::string problem;
  const bool copied = (!had || before->copyFrom(project.prep, problem)) && after->copyFrom(settings, problem);
  const bool fromNothing = !project.hasPrep;
  if (controller_->acceptPrep(std::move(settings)) != Outcome::Done) return false;
  configured_ = true;
  const QString fileBefore = std::exchange(factorFile_, factorFile);
  describePrep(PrepOrigin::Configured);
  for (const char* const field : {"TOldGeneration", "TImportFile"}) gadget<QLineEdit>(field)->clear();
  refresh();
  if (!copied || (!had && !fromNothing)) {
    changes_.clear();  // what was there can't be had back
    if (!copied) say("This change can't be undone: " + QString::fromStdString(problem));
  } else {
    const auto withdraw = [this] {
      if (controller_->withdrawPrep() != Outcome::Done) return false;
      showProject();
      return true;
    };
    // A file of the project holds the default truncations, too.
    const auto go = [this](bool gone, const QString& file, const DefaultTruncations& truncations) {
      if (!gone) return false;
      factorFile_ = file;
      truncations.restore();
      return true;
    };
    changes_.push(
        name, [=, this] { return go(fromNothing ? withdraw() : applyPrep(*before), fileBefore, defaults); },
        [=, this, now = DefaultTruncations()] { return go(applyPrep(*after), factorFile, now); });
  }
  refreshUndo();
  return true;
}

bool PMainPanel::acceptModel(const ModelChoice& choice, const QString& name) {
  const bool had = controller_->project().hasModel;
  const ModelChoice before = had ? controller_->project().model.choice : ModelChoice();
  if (!applyModel(choice)) return false;
  const auto withdraw = [this] {
    if (controller_->withdrawModel() != Outcome::Done) return false;
    showProject();
    return true;
  };
  changes_.push(
      name, [=, this] { return had ? applyModel(before) : withdraw(); }, [=, this] { return applyModel(choice); });
  refreshUndo();
  return true;
}

bool PMainPanel::applyPrep(const PrepSettings& settings) {
  PrepSettings copy;
  std::string problem;
  if (!copy.copyFrom(settings, problem)) {
    say(QString::fromStdString(problem));
    return false;
  }
  if (controller_->acceptPrep(std::move(copy)) != Outcome::Done) return false;
  describePrep(PrepOrigin::Configured);
  return true;
}

bool PMainPanel::applyModel(const ModelChoice& choice) {
  if (controller_->acceptModel(choice) != Outcome::Done) return false;
  describeModel();
  say(QString::fromStdString(modelSelectionText(controller_->project().model)));
  return true;
}

void PMainPanel::undo() {
  const QString name = changes_.undoName();
  if (!controller_->busy() && changes_.undo()) say("Undone: " + name);
  refreshUndo();
}

void PMainPanel::redo() {
  const QString name = changes_.redoName();
  if (!controller_->busy() && changes_.redo()) say("Done again: " + name);
  refreshUndo();
}

void PMainPanel::forgetChanges() {
  changes_.clear();
  factorFile_.clear();
}

}  // namespace tarvex
