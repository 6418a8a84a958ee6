#include "panels/main/PAbout.h"

#include <QKeySequence>
#include <QPlainTextEdit>

#include "report/versions.h"

namespace tarvex {
namespace {

constexpr const char* kSoftwareVersion = "2.2.1";

}  // namespace

PAbout::PAbout(const Display& display, QWidget* parent)
    : Panel(display, "PAbout", "Tarvex about", "Tarvex About Panel", parent) {
  QString text = QString("Software Version: %1\n").arg(kSoftwareVersion);
  for (const auto& [what, version] : versionsInUse())
    text += '\n' + QString::fromStdString(what) + ' ' + QString::fromStdString(version);
  gadget<QPlainTextEdit>("MLText")->setPlainText(text);
  registerCallbacks({{"close", [this] { end(true); }}});
  bindKey(QKeySequence(Qt::Key_Escape), [this] { end(true); });
}

}  // namespace tarvex
