#include "panels/model/PnewFactorName.h"

#include <QKeySequence>
#include <QLabel>
#include <QLineEdit>
#include <utility>

#include "toolkit/Dialogs.h"

namespace tarvex {

PnewFactorName::PnewFactorName(const Display& display, const QString& name, const QString& uses, Rename rename,
                               QWidget* parent)
    : Panel(display, "PnewFactorName", "PnewFactorName", "New name of " + name, parent), rename_(std::move(rename)) {
  auto* const field = gadget<QLineEdit>("TeNewName");
  field->setText(name);
  field->selectAll();
  field->setFocus();
  gadget<QLabel>("MlUses")->setText(uses.isEmpty()
                                        ? name + " is used by no equation."
                                        : uses + " In each of them the first occurrence of the letters is renamed.");
  registerCallbacks({{"cancel", [this] { end(false); }}, {"ok", [this] { ok(); }}});
  bindKey(QKeySequence(Qt::Key_Escape), [this] { end(false); });
}

void PnewFactorName::ok() {
  auto* const field = gadget<QLineEdit>("TeNewName");
  const QString name = field->text().trimmed();
  const QString problem = name.isEmpty() ? QString("New Factor text field empty") : rename_(name);
  if (problem.isEmpty()) return end(true);
  Dialogs::current().message(DialogKind::Error, "Error", problem, window());
  field->setFocus();
}

}  // namespace tarvex
