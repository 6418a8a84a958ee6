#include "panels/prep/openPanels.h"

#include <QString>

#include "panels/sampling/makeMethodPanel.h"
#include "sampling/Sampler.h"
#include "toolkit/Dialogs.h"

namespace tarvex {
namespace {

void tell(const QString& text, QWidget* parent) {
  Dialogs::current().message(DialogKind::Information, "Tarvex", text, parent);
}

}  // namespace

bool correlateFactors(const Display&, FactorList&, bool, QWidget* parent) {
  tell("Correlations have no panel yet; tarvex-batch takes them from a file of factors.", parent);
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
