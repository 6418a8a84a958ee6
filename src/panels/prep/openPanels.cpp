#include "panels/prep/openPanels.h"

#include <QString>

#include "panels/prep/PCorrelation.h"
#include "panels/sampling/makeMethodPanel.h"
#include "sampling/Sampler.h"
#include "toolkit/Dialogs.h"

namespace tarvex {

bool correlateFactors(const Display& display, FactorList& list, bool demo, QWidget* parent) {
  PCorrelation panel(display, list, demo, parent);
  panel.centre();
  if (!panel.runModal() || !panel.accepted() || !panel.modified()) return false;
  std::string message;
  if (panel.draft().applyTo(list, message)) return true;
  Dialogs::current().message(DialogKind::Error, "Error", QString::fromStdString(message), parent);
  return false;
}

bool specifyMethod(const Display& display, std::int32_t methodId, const FactorList& factors,
                   std::unique_ptr<Sampler>& sampler, bool demo, QWidget* parent) {
  const bool isCurrent = sampler && sampler->methodId == methodId;
  const std::unique_ptr<PMethod> panel =
      makeMethodPanel(display, methodId, {&factors, isCurrent ? sampler.get() : nullptr, demo}, parent);
  if (!panel) return false;
  panel->centre();
  if (!panel->runModal() || !panel->accepted()) return false;
  sampler = panel->takeSampler();
  return true;
}

}  // namespace tarvex
