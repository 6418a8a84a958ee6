#include "panels/plots/openPlots.h"

#include <QWidget>

#include "app/RunController.h"
#include "app/Selection.h"
#include "panels/plots/PPlots.h"
#include "panels/vels/ResultDesk.h"
#include "toolkit/Dialogs.h"

namespace tarvex {

void openPlots(ResultDesk& desk) {
  const std::string why = desk.controller().whyNot(Step::Visualize);
  if (!why.empty())
    return Dialogs::current().message(DialogKind::Warning, "Warning", QString::fromStdString(why), desk.parent());
  const std::shared_ptr<Selection> selection = desk.selection();
  if (!selection) return;
  for (Panel* const panel : desk.panels()) {
    const auto* const plots = dynamic_cast<PPlots*>(panel);
    if (plots == nullptr || plots->isPast()) continue;
    panel->window()->raise();
    panel->window()->activateWindow();
    return;
  }
  desk.open(std::make_unique<PPlots>(desk, selection));
}

}  // namespace tarvex
