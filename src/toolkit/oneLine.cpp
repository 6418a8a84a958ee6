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

std::string oneLineOf(const QPlainTextEdit& field) {
  QString text = field.toPlainText();
  for (qsizetype at = 0; at < text.size(); ++at) {
    const QStringView rest = QStringView(text).mid(at);
    if (rest.startsWith(u"/*")) {
      const qsizetype end = text.indexOf("*/", at + 2);
      at = end < 0 ? text.size() : end + 1;
    } else if (rest.startsWith(u"//")) {
      const qsizetype end = text.indexOf('\n', at);
      if (end < 0) break;
      text.replace(at, end - at, QString(end - at, ' '));
      at = end;
    }
  }
  std::string line = text.replace('\n', ' ').toStdString();
  line.erase(line.find_last_not_of(' ') + 1);
  return line;
}

void pressDefault(const QWidget& window) {
  for (auto* const button : window.findChildren<QPushButton*>())
    if (button->isDefault()) return button->click();
}

}  // namespace tarvex
