#include "panels/main/PExternalModel.h"

#include <QKeySequence>
#include <QLabel>

#include "panels/main/durationText.h"
#include "toolkit/Display.h"

namespace tarvex {

PExternalModel::PExternalModel(const Display& display, const QString& title, const QString& modelName,
                               const QString& fileName, QWidget* parent)
    : Panel(display, "PExternalModel", "external model execution", title, parent) {
  for (int i = 0; i < kFrames; ++i)
    frames_[static_cast<std::size_t>(i)] = display.bitmap(QString("../bitmaps/task%1.bmp").arg(i + 1));
  gadget<QLabel>("MlModelName")->setText(modelName);
  gadget<QLabel>("MlFileName")->setText(fileName);
  registerCallbacks({{"stop", [this] { stop(); }}});
  bindKey(QKeySequence(Qt::Key_Escape), [this] { stop(); });
  since_.start();
  step();
}

void PExternalModel::stop() {
  continueRun = 0;
  hide();
}

bool PExternalModel::closing() {
  stop();
  return true;
}

void PExternalModel::step() {
  if (++counter_ > kFrames) counter_ = 0;
  for (int i = 0; i < kIcons; ++i) {
    const QByteArray name = "icon" + QByteArray::number(i + 1);
    gadget<QLabel>(name.constData())->setPixmap(frames_[static_cast<std::size_t>((counter_ + i) % kFrames)]);
  }
  gadget<QLabel>("MlRate")->setText("Elapsed " + durationText(static_cast<double>(since_.elapsed()) / 1000.0));
}

}  // namespace tarvex
