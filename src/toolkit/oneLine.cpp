#include "toolkit/oneLine.h"

#include <QKeyEvent>
#include <QPlainTextEdit>
#include <QPushButton>

namespace tarvex {
namespace {

class EnterFilter : public QObject {
 public:
  using QObject::QObject;

 protected:
  // The field takes a key before a shortcut does only where it says so first.
  bool eventFilter(QObject* watched, QEvent* event) override {
    if (event->type() != QEvent::ShortcutOverride && event->type() != QEvent::KeyPress)
      return QObject::eventFilter(watched, event);
    const int key = static_cast<QKeyEvent*>(event)->key();
    return key == Qt::Key_Return || key == Qt::Key_Enter;
  }
};

}  // namespace

void keepOneLine(QPlainTextEdit& field) {
  field.installEventFilter(new EnterFilter(&field));  // which owns it
}

void pressDefault(const QWidget& window) {
  for (auto* const button : window.findChildren<QPushButton*>())
    if (button->isDefault()) return button->click();
}

}  // namespace tarvex
