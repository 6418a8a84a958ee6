#include "toolkit/Panel.h"

#include <QAbstractButton>
#include <QCloseEvent>
#include <QEventLoop>
#include <QGuiApplication>
#include <QIcon>
#include <QLabel>
#include <QScreen>
#include <QShortcut>
#include <QWidget>
#include <algorithm>

#include "toolkit/Dialogs.h"
#include "toolkit/Display.h"
#include "toolkit/PanelFile.h"
#include "toolkit/gadgetSignals.h"
#include "toolkit/print.h"

namespace tarvex {

Panel::Panel(const Display& display, const QString& file, const QString& name, const QString& title, QWidget* parent)
    : display_(display), name_(name) {
  QString problem;
  window_ = loadPanelFile(display, file, parent, problem);
  if (window_ == nullptr) {
    missing(problem);
    window_ = new QWidget(parent);
  }
  window_->setObjectName(name);
  if (parent != nullptr) window_->setWindowFlag(Qt::Window, true);
  setTitle(title);
  window_->installEventFilter(this);
  showBitmaps();
}

Panel::~Panel() {
  window_->removeEventFilter(this);
  delete window_;
}

void Panel::setTitle(const QString& title) {
  window_->setWindowTitle(title);
}

QObject* Panel::findGadget(const char* gadgetName) const {
  return window_->findChild<QObject*>(QLatin1String(gadgetName));
}

void Panel::missing(const QString& what) {
  problems_.append(what);
}

QWidget* Panel::hiddenParent() {
  if (hidden_ == nullptr) {
    hidden_ = new QWidget(window_);
    hidden_->hide();
  }
  return hidden_;
}

void Panel::registerCallbacks(std::vector<PanelCallback> table) {
  for (PanelCallback& callback : table) callbacks_[QLatin1String(callback.name)] = std::move(callback.run);
  connectGadgets();
}

void Panel::connectGadgets() {
  for (QObject* const gadget : window_->findChildren<QObject*>()) {
    const QString callback = gadget->property("callback").toString();
    if (!callback.isEmpty() && !connectGadget(gadget, this, [this, callback] { call(callback); }))
      missing("gadget " + gadget->objectName() + " can't have a callback");
    const QString twice = gadget->property("doubleCallback").toString();
    if (!twice.isEmpty() && !connectDoubleClick(gadget, this, [this, twice] { call(twice); }))
      missing("gadget " + gadget->objectName() + " can't have a double click");
  }
}

void Panel::showBitmaps() {
  constexpr int kLabelSize = 24;
  for (QWidget* const gadget : window_->findChildren<QWidget*>()) {
    const QString bitmap = gadget->property("bitmap").toString();
    if (bitmap.isEmpty()) continue;
    const QIcon icon = display_.icon(bitmap);
    if (auto* const button = qobject_cast<QAbstractButton*>(gadget)) button->setIcon(icon);
    const int size = std::max(kLabelSize, std::min(gadget->minimumWidth(), gadget->minimumHeight()));
    if (auto* const label = qobject_cast<QLabel*>(gadget)) label->setPixmap(icon.pixmap(size, size));
  }
}

void Panel::call(const QString& callbackName) {
  const auto found = callbacks_.find(callbackName);
  if (found != callbacks_.end())
    found->second();
  else
    print(' ' + name_ + " : " + callbackName + " method ...");
}

void Panel::bindKey(const QKeySequence& key, std::function<void()> run) {
  auto* const shortcut = new QShortcut(key, window_);
  connect(shortcut, &QShortcut::activated, this, std::move(run));
}

bool Panel::show() {
  if (!problems_.isEmpty()) {
    Dialogs::current().message(DialogKind::Error, "Error",
                               "The panel " + name_ + " can't be shown.\n" + problems_.join('\n'),
                               window_->parentWidget());
    return false;
  }
  window_->show();
  window_->raise();
  window_->activateWindow();
  return true;
}

void Panel::hide() {
  window_->hide();
}

bool Panel::isVisible() const {
  return window_->isVisible();
}

void Panel::centre() {
  const QWidget* const parent = window_->parentWidget();
  const QRect area = parent != nullptr && parent->isVisible() ? parent->window()->frameGeometry()
                                                              : QGuiApplication::primaryScreen()->availableGeometry();
  window_->adjustSize();
  QRect frame = window_->frameGeometry();
  frame.moveCenter(area.center());
  window_->move(frame.topLeft());
}

bool Panel::runModal() {
  accepted_ = false;
  window_->setWindowModality(Qt::ApplicationModal);
  if (!show()) return false;
  QEventLoop loop;
  loop_ = &loop;
  loop.exec();
  loop_ = nullptr;
  return true;
}

void Panel::end(bool accept) {
  accepted_ = accept;
  window_->hide();
  if (loop_ != nullptr) loop_->quit();
}

bool Panel::closing() {
  end(false);
  return true;
}

bool Panel::eventFilter(QObject* watched, QEvent* event) {
  if (watched == window_ && event->type() == QEvent::PaletteChange) showBitmaps();
  if (watched != window_ || event->type() != QEvent::Close) return QObject::eventFilter(watched, event);
  if (!closing()) {
    event->ignore();
    return true;
  }
  return false;
}

}  // namespace tarvex
