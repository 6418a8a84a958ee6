// The model of the study: what the main panel's own panels of it are told and give back.

#include "app/ModelTrial.h"
#include "app/RunController.h"
#include "panels/main/PMainPanel.h"
#include "panels/model/PExternal.h"

namespace tarvex {

void PMainPanel::selectInput() {
  if (const QString against = why(Step::SelectModel); !against.isEmpty()) return say(against);
  const ProjectConfiguration& project = controller_->project();
  ModelContext context;
  for (std::int32_t i = 0; i < project.prep.factors.factorCount(); ++i)
    context.factors.push_back(project.prep.factors.factor(i).name);
  context.rows = project.prep.samples.rows();
  context.trialRow = [this](std::int32_t row, TrialRow& trial, std::string& message) {
    return readTrialRow(controller_->project().prep, row, trial, message);
  };
  context.tryModel = [this](const ModelChoice& choice, std::int32_t row, const std::function<bool()>& serve,
                            TrialReport& report) {
    const auto serveAll = [&] { return serve() && frontEnd_.continueRun(); };  // until the system asks for the end
    if (controller_->tryModel(choice, row, serveAll, report) == Outcome::Busy)
      report.problem = "Stop what is in progress first.";
  };
  PExternal panel(display(), project.hasModel ? project.model.choice : ModelChoice(), std::move(context), window());
  panel.centre();
  if (panel.runModal() && panel.accepted())
    static_cast<void>(acceptModel(panel.choice(), "Select model"));  // the message has been shown
}

}  // namespace tarvex
