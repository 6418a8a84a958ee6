#include "panels/prep/PCorrelationValue.h"

#include <QKeySequence>
#include <QLabel>
#include <QLineEdit>

#include "base/NumberText.h"
#include "panels/prep/correlationCells.h"
#include "toolkit/Dialogs.h"

namespace tarvex {

PCorrelationValue::PCorrelationValue(const Display& display, const QString& pair, double value, QWidget* parent)
    : Panel(display, "PCorrelationValue", "CorrVal", "Insert value", parent), value_(value) {
  gadget<QLabel>("MlPair")->setText(pair);
  auto* const field = gadget<QLineEdit>("NValue");
  if (value != 0.0) field->setText(QString::fromStdString(numberText(value)));
  field->selectAll();
  field->setFocus();
  registerCallbacks(
      {{"cancel", [this] { end(false); }}, {"apply", [this] { apply(); }}, {"edited", [this] { edited(); }}});
  bindKey(QKeySequence(Qt::Key_Escape), [this] { end(false); });
}

bool PCorrelationValue::read(QString& why) {
  return readCorrelation(gadget<QLineEdit>("NValue")->text(), value_, why);
}

void PCorrelationValue::edited() {
  QString why;
  static_cast<void>(read(why));  // the reason is shown
  gadget<QLabel>("MlMessage")->setText(why);
}

void PCorrelationValue::apply() {
  QString why;
  if (read(why)) return end(true);
  Dialogs::current().message(DialogKind::Error, "Wrong value",
                             "  Correlation values must fall between -1\n  and 1 and can't be equal to 0\n\n" + why,
                             window());
  gadget<QLineEdit>("NValue")->setFocus();
  gadget<QLineEdit>("NValue")->selectAll();
}

}  // namespace tarvex
