#include "panels/vels/openSensitivity.h"

#include "app/RunController.h"
#include "panels/vels/PSaRandom.h"
#include "panels/vels/ResultDesk.h"
#include "panels/vels/saKinds.h"
#include "toolkit/Dialogs.h"

namespace tarvex {
namespace {

void refuse(ResultDesk& desk, const QString& text) {
  Dialogs::current().message(DialogKind::Error, "Error", text, desk.parent());
}

bool provideMeasures(ResultDesk& desk) {
  RunController& controller = desk.controller();
  if (const std::string why = controller.whyNot(Step::Analyse); !why.empty()) {
    refuse(desk, QString::fromStdString(why));
    return false;
  }
  const std::shared_ptr<const AnalysisSnapshot> present = controller.analysis();
  if (present->variables.empty()) {
    refuse(desk, "   No variable selected.");
    return false;
  }
  if (present->sensitivity) return true;
  AnalysisRequest request;
  request.variables = present->variables;
  request.uncertainty = false;
  return controller.analyse(request) == Outcome::Done;
}

}  // namespace

void openSensitivity(ResultDesk& desk) {
  if (!provideMeasures(desk)) return;
  const std::shared_ptr<const AnalysisSnapshot> snapshot = desk.controller().analysis();
  const SensitivityStats* const stats = snapshot->sensitivity.get();
  if (stats == nullptr || stats->records.empty())
    return refuse(desk, "This sample's design has no measures: its runs can't be told apart by factor and level.");
  const SaKind& kind = saKindOf(*stats, desk.controller().project().prep);
  if (stats->typeId() == SensitivityStats::kRegression)
    desk.open(std::make_unique<PSaRandom>(desk, kind));
  else
    desk.open(std::make_unique<PSaResult>(desk, kind));
}

}  // namespace tarvex
