#include "panels/main/PHelp.h"

#include <QKeySequence>
#include <QLabel>

#include "toolkit/Display.h"

namespace tarvex {

PHelp::PHelp(const Display& display, const QString& title, const QString& heading, const QString& bitmap,
             QWidget* parent)
    : Panel(display, "PHelp", "Help", title, parent) {
  gadget<QLabel>("MlTitle")->setText(heading);
  gadget<QLabel>("IcText")->setPixmap(display.bitmap(bitmap));
  gadget<QLabel>("TText")->hide();
  registerCallbacks({{"dismiss", [this] { end(true); }}});
  bindKey(QKeySequence(Qt::Key_Escape), [this] { end(true); });
  window()->adjustSize();
}

}  // namespace tarvex
