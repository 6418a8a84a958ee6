// The page over time: mean and quantiles of the runs at each time of the variable's output.

#include <QCheckBox>
#include <QTabWidget>

#include "app/RunController.h"
#include "panels/vels/PUaSingle.h"
#include "panels/vels/ResultDesk.h"
#include "plots/timePlots.h"
#include "postproc/TimedVariables.h"
#include "toolkit/ChartView.h"
#include "toolkit/allow.h"

namespace tarvex {

// False while there is nothing to be shown of it.
bool PUaSingle::readTimes(const std::string& output) {
  auto* const view = gadget<ChartView>("ScTimes");
  const auto refuse = [view](const QString& why) {
    view->setEmptyText(why);
    view->show(Figure());
    return false;
  };
  if (past_) return refuse("The results that these times were of are gone: the project has others by now, or none.");
  if (working_) return false;  // and this page is shown when that is through
  const ProjectConfiguration& project = controller().project();
  TimeBands read;
  working_ = true;
  const Outcome outcome = controller().perform(
      "Runs over time", project.model.results.runCount(), [&](const Progress& progress, std::string& message) {
        return computeTimeBands(project.model, project.vels.outputNames(project.model), output, read, message,
                                progress);
      });
  working_ = false;
  if (outcome == Outcome::Busy) return refuse("Another computation is in progress: turn to this page again after it.");
  if (outcome != Outcome::Done) return refuse("The computation was stopped: turn to this page again to start it anew.");
  times_ = std::move(read);
  return true;
}

void PUaSingle::showTimes() {
  const std::vector<std::string> outputs = outputNamesOf(*analysis_);
  const std::string& variable = analysis_->variables[static_cast<std::size_t>(variable_)];
  const auto output = outputOfVariable(variable, outputs);
  auto* const view = gadget<ChartView>("ScTimes");
  if (!output) {
    view->setEmptyText("An expression has no times of its own: choose an output above the statistics.");
    return view->show(Figure());
  }
  const std::string& name = outputs[*output];
  if ((!times_ || times_->output != name) && !readTimes(name)) return;
  // Another variable may have been chosen while it was computed.
  if (const std::string& now = analysis_->variables[static_cast<std::size_t>(variable_)]; now != variable)
    return showTimes();
  drawTimes();
}

// What was read; where there is none, why is shown already.
void PUaSingle::drawTimes() {
  auto* const box = gadget<QCheckBox>("TLogTime");
  const std::string& variable = analysis_->variables[static_cast<std::size_t>(variable_)];
  const std::vector<std::string> outputs = outputNamesOf(*analysis_);
  const auto output = outputOfVariable(variable, outputs);
  if (!times_ || !output || outputs[*output] != times_->output) return;
  const QString why = QString::fromStdString(tarvex::whyNotLogarithmic(*times_));
  allow(*box, why);
  if (!why.isEmpty()) box->setChecked(false);
  Figure figure = timeBandsPlot({*times_}, timeOfVariable(variable, outputs),
                                box->isChecked() ? AxisScale::Logarithms : AxisScale::Linear);
  auto* const view = gadget<ChartView>("ScTimes");
  view->setEmptyText(QString::fromStdString(figure.emptyText));
  view->show(std::move(figure), true);
}

}  // namespace tarvex
