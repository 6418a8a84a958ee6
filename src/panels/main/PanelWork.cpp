#include "panels/main/PanelWork.h"

#include <QApplication>
#include <QKeyEvent>
#include <QWidget>

namespace tarvex {

PanelWork::PanelWork(const Display& display, const std::string& title, QWidget* window)
    : window_(window), frontEnd_(display), operation_(frontEnd_, title, 0) {
  frontEnd_.setParent(window);
  qApp->installEventFilter(this);
}

PanelWork::~PanelWork() {
  qApp->removeEventFilter(this);
}

// What the user does elsewhere, as in the display of the progress, goes its way.
bool PanelWork::eventFilter(QObject* watched, QEvent* event) {
  const auto* const widget = qobject_cast<QWidget*>(watched);
  if (window_ == nullptr) return false;
  const bool isShortcut = event->type() == QEvent::Shortcut && QApplication::activeWindow() == window_;
  if (!isShortcut && (widget == nullptr || widget->window() != window_)) return false;
  switch (event->type()) {
    case QEvent::Close:
      frontEnd_.stop();
      event->ignore();
      return true;
    case QEvent::ShortcutOverride:
    case QEvent::KeyPress:
      if (static_cast<QKeyEvent*>(event)->key() == Qt::Key_Escape) frontEnd_.stop();
      event->accept();  // so that no shortcut comes of it
      return true;
    case QEvent::Shortcut:
    case QEvent::KeyRelease:
    case QEvent::InputMethod:
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick:
    case QEvent::Wheel:
    case QEvent::ContextMenu:
    case QEvent::DragEnter:
    case QEvent::Drop:
      return true;
    default:
      return false;
  }
}

}  // namespace tarvex
