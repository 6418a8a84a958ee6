#include "panels/prep/openPanels.h"

#include <QString>

#include "sampling/Sampler.h"
#include "sampling/SamplerFactory.h"
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

bool specifyMethod(const Display&, std::int32_t methodId, const FactorList&, std::unique_ptr<Sampler>& sampler, bool,
                   QWidget* parent) {
  if (sampler && sampler->methodId == methodId) return true;
  sampler = makeSampler(methodId);
  if (!sampler) return false;
  tell("The settings of " + QString::fromStdString(sampler->methodName) +
           " have no panel yet; its usual ones are taken: " + QString::number(sampler->numSamples) + " runs.",
       parent);
  return true;
}

}  // namespace tarvex
