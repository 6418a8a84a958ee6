#pragma once

#include <QApplication>
#include <QTimer>
#include <QWidget>
#include <functional>

namespace tarvex::test {

// Acts on the window as soon as it has the keyboard: once, whatever is modal above it. Until `owner` goes.
inline void whenShown(QObject* owner, const QString& window, std::function<void(QWidget&)> act) {
  auto* const timer = new QTimer(owner);
  QObject::connect(timer, &QTimer::timeout, timer, [=] {
    for (QWidget* const top : QApplication::topLevelWidgets()) {
      if (top->objectName() != window || !top->isActiveWindow()) continue;
      timer->stop();
      timer->deleteLater();
      return act(*top);
    }
  });
  timer->start(1);
}

}  // namespace tarvex::test
