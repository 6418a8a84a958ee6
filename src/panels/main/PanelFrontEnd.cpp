#include "panels/main/PanelFrontEnd.h"

#include "panels/main/PLinkFactors.h"
#include "panels/main/PLinkOutputs.h"
#include "toolkit/Application.h"
#include "toolkit/Dialogs.h"

namespace tarvex {
namespace {

DialogKind dialogKind(MessageKind kind) {
  switch (kind) {
    case MessageKind::Information:
      return DialogKind::Information;
    case MessageKind::Warning:
      return DialogKind::Warning;
    case MessageKind::Error:
      break;
  }
  return DialogKind::Error;
}

QString text(const std::string& utf8) {
  return QString::fromStdString(utf8);
}

}  // namespace

template <class Progress>
void PanelFrontEnd::showPanel(Progress& panel) {
  panel.centre();
  // Where its file is missing the operation goes on unseen, after the message that says so.
  static_cast<void>(panel.show());
  Application::drainEvents();
}

void PanelFrontEnd::openProgress(const std::string& title, std::int32_t rows) {
  // The system's own names: "generation", "model execution".
  const QString name = title == "Sample generation" ? "generation" : text(title).toLower();
  generate_ = std::make_unique<PGenerate>(display_, name, text(title), rows, parent_);
  showPanel(*generate_);
}

void PanelFrontEnd::progress(int percent) {
  if (generate_) generate_->setPercentage(percent);
}

void PanelFrontEnd::status(const std::string& line) {
  if (generate_) generate_->setStatus(text(line));
}

void PanelFrontEnd::closeProgress() {
  if (generate_ || external_) panelStopped_ = !continueRun();
  generate_.reset();
  external_.reset();
}

void PanelFrontEnd::openAnimation(const std::string& title, const std::string& modelName, const std::string& fileName) {
  external_ = std::make_unique<PExternalModel>(display_, text(title), text(modelName), text(fileName), parent_);
  showPanel(*external_);
}

void PanelFrontEnd::animate() {
  if (external_) external_->step();
}

void PanelFrontEnd::drainEvents() {
  Application::drainEvents();
}

bool PanelFrontEnd::continueRun() {
  return !stopped_ && (!generate_ || generate_->continueRun != 0) && (!external_ || external_->continueRun != 0);
}

void PanelFrontEnd::message(MessageKind kind, const std::string& title, const std::string& line) {
  Dialogs::current().message(dialogKind(kind), text(title), text(line), parent_);
}

bool PanelFrontEnd::question(const std::string& title, const std::string& line, const std::string& yes,
                             const std::string& no) {
  return Dialogs::current().question(text(title), text(line), text(yes), text(no), parent_);
}

bool PanelFrontEnd::linkFactors(const FactorList& factors, InternalModel& model) {
  PLinkFactors panel(display_, factors, model, parent_);
  panel.centre();
  if (!panel.runModal() || !panel.accepted()) return false;
  model = panel.model();
  return true;
}

bool PanelFrontEnd::linkOutputs(OutputLink& link) {
  PLinkOutputs panel(display_, link, parent_);
  panel.centre();
  if (!panel.runModal() || !panel.accepted()) return false;
  link.names = panel.names();
  return true;
}

}  // namespace tarvex
