#include "panels/sampling/PSobol.h"

#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>

#include "sampling/SobolSampler.h"
#include "toolkit/allow.h"

namespace tarvex {

PSobol::PSobol(const Display& display, const MethodContext& context, QWidget* parent)
    : PMethod(display, methodKind(kSobol), context, parent, Member()) {
  const auto* const sobol = dynamic_cast<const SobolSampler*>(context.current);
  gadget<QCheckBox>("TOSwitchSel")->setChecked(opened().order.has_value());
  gadget<QCheckBox>("ChCheapDesign")->setChecked(opened().cheap);
  gadget<QLineEdit>("TOrder")->setText(QString::number(sobol != nullptr ? sobol->order() : 1));
  start({{"changeSel", [this] { designChanged(); }}, {"orderIns", [this] { designChanged(); }}, {"minimize", [this] {
                                                                                                   designChanged();
                                                                                                 }}});
}

SamplerSettings PSobol::read(Refusal& refusal) {
  SamplerSettings settings = PMethod::read(refusal);
  if (!gadget<QCheckBox>("TOSwitchSel")->isChecked()) return settings;
  auto* const field = gadget<QLineEdit>("TOrder");
  std::int64_t order = 0;
  if (!isWhole(field->text(), order) && refusal.text.isEmpty())
    refusal = {"The order must be a whole number, not '" + field->text().trimmed() + "'.", field};
  settings.order = order;
  settings.cheap = gadget<QCheckBox>("ChCheapDesign")->isChecked();
  return settings;
}

std::unique_ptr<Sampler> PSobol::make(const SamplerSettings& settings, Refusal& refusal) {
  refusal.where = gadget<QLineEdit>("TOrder");
  return PMethod::make(settings, refusal);
}

// Another design has other sizes: the smallest is chosen.
void PSobol::designChanged() {
  Refusal refusal;
  const SamplerSettings settings = read(refusal);
  fillList(kind().lists.front(), settings, 0);
  edited();
}

void PSobol::showState(const SamplerSettings& settings) {
  const QString single = settings.order ? QString() : QString("It belongs to indices up to an order.");
  allow(*gadget<QLabel>("LUserOrder"), single);
  allow(*gadget<QLineEdit>("TOrder"), single);
  allow(*gadget<QCheckBox>("ChCheapDesign"), single);
}

}  // namespace tarvex
