#include "panels/main/PGenerate.h"

#include <QKeySequence>
#include <QLabel>
#include <QProgressBar>

#include "panels/main/durationText.h"
#include "toolkit/chartText.h"

namespace tarvex {

PGenerate::PGenerate(const Display& display, const QString& name, const QString& title, std::int32_t rows,
                     QWidget* parent)
    : Panel(display, "PGenerate", name, title, parent), rows_(rows) {
  registerCallbacks({{"stop", [this] { stop(); }}});
  bindKey(QKeySequence(Qt::Key_Escape), [this] { stop(); });
  since_.start();
  setHeading(title);
}

void PGenerate::stop() {
  continueRun = 0;
  hide();
}

bool PGenerate::closing() {
  stop();
  return true;
}

void PGenerate::setPercentage(double value) {
  if (!(value >= 0.0 && value <= 100.0)) return;
  const int percent = static_cast<int>(value);
  gadget<QLabel>("MlPercentage")->setText(QString::number(percent) + '%');
  gadget<QProgressBar>("RgPercentage")->setValue(percent);
  const double elapsed = static_cast<double>(since_.elapsed()) / 1000.0;
  QString rate = "Elapsed " + durationText(elapsed);
  if (rows_ > 0)
    rate = groupedNumber(static_cast<qint64>(value / 100.0 * rows_)) + " of " + groupedNumber(rows_) +
           " runs, elapsed " + durationText(elapsed);
  if (value > 0.0) rate += ", remaining " + durationText(elapsed * (100.0 - value) / value);
  gadget<QLabel>("MlRate")->setText(rate);
}

void PGenerate::setStatus(const QString& text) {
  gadget<QLabel>("MlFileName")->setText(text);
}

void PGenerate::setHeading(const QString& text) {
  gadget<QLabel>("TeTitle")->setText(text);
}

}  // namespace tarvex
