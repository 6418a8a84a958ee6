#include "panels/vels/ResultDesk.h"

#include <algorithm>
#include <utility>

#include "app/RunController.h"
#include "app/Selection.h"
#include "postproc/OutputVariables.h"
#include "toolkit/Panel.h"

namespace tarvex {

ResultDesk::ResultDesk(const Display& display, RunController& controller, QWidget* parent)
    : display_(display),
      controller_(controller),
      parent_(parent),
      subscription_(controller.subscribe([this](Changes changes) { forgetRuns(changes); })) {}

ResultDesk::~ResultDesk() = default;

void ResultDesk::open(std::unique_ptr<Panel> panel) {
  forgetClosed();
  if (panel->show()) panels_.push_back(std::move(panel));
}

std::vector<Panel*> ResultDesk::panels() {
  forgetClosed();
  std::vector<Panel*> open;
  for (const auto& panel : panels_)
    if (panel->isVisible()) open.push_back(panel.get());
  return open;
}

void ResultDesk::forgetRuns(Changes changes) {
  if (!selection_) return;
  const bool otherSample = selection_->sample() != controller_.project().sampleMark();
  if (otherSample || changes.contains(Change::Results)) selection_.reset();
}

// As readRunTable() takes them.
std::vector<std::string> ResultDesk::columnNames() {
  const ProjectConfiguration& project = controller_.project();
  std::vector<std::string> names;
  for (std::int32_t i = 0; i < project.prep.factors.factorCount(); ++i)
    if (project.prep.samples.rows() > 0) names.push_back("F - " + project.prep.factors.factor(i).name);
  if (project.model.results.runCount() == 0 || !project.resultsBelong()) return names;
  std::vector<std::string> variables = controller_.analysis()->variables;
  if (variables.empty())
    variables =
        OutputVariables::defaultVariables(project.vels.outputNames(project.model), project.model.results.hasTimeAxis());
  for (const std::string& variable : variables) names.push_back("V - " + variable);
  return names;
}

std::shared_ptr<Selection> ResultDesk::selection() {
  std::vector<std::string> names = columnNames();
  if (!selection_) {
    if (controller_.readRuns(names, selection_) != Outcome::Done) return nullptr;
    return selection_;
  }
  const std::vector<RunColumn>& columns = selection_->table()->columns;
  std::erase_if(names, [&](const std::string& name) {
    return std::ranges::any_of(columns, [&](const RunColumn& column) { return column.label() == name; });
  });
  std::shared_ptr<Selection> more;
  if (!names.empty() && controller_.readRuns(names, more) == Outcome::Done) selection_->addColumns(*more->table());
  return selection_;
}

// A panel may be in a callback of its own while it closes, so it goes only when the next one comes.
// One that was closed in the middle of a computation goes when that is through.
void ResultDesk::forgetClosed() {
  if (controller_.busy()) return;
  std::erase_if(panels_, [](const auto& panel) { return !panel->isVisible(); });
}

}  // namespace tarvex
