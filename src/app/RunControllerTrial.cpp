#include "app/ModelTrial.h"
#include "app/RunControllerScope.h"

namespace tarvex {

Outcome RunController::tryModel(const ModelChoice& model, std::int32_t row, const std::function<bool()>& serve,
                                TrialReport& report) {
  if (busy_) return Outcome::Busy;
  const Scope scope(*this);
  const BusyScope inProgress(*this);
  report = ModelTrial(model, project_.prep, {modelDirectory, serve, makeSpreadsheetApplication}).run(row);
  return report.isGood ? Outcome::Done : Outcome::Refused;
}

}  // namespace tarvex
