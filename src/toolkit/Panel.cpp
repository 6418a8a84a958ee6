#include "toolkit/Panel.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QAction>
#include <QCloseEvent>
#include <QEventLoop>
#include <QGuiApplication>
#include <QIcon>
#include <QLabel>
#include <QPushButton>
#include <QScreen>
#include <QSettings>
#include <QShortcut>
#include <QWidget>
#include <algorithm>

#include "toolkit/Dialogs.h"
#include "toolkit/Display.h"
#include "toolkit/PanelFile.h"
#include "toolkit/gadgetSignals.h"
#include "toolkit/oneLine.h"
#include "toolkit/print.h"

namespace tarvex {
namespace {

constexpr int kMostTold = 8;  // problems of a panel: a file that is missing has all gadgets missing

}  // namespace

Panel::Panel(const Display& display, const QString& file, const QString& name, const QString& title, QWidget* parent)
    : display_(display), file_(file), name_(name) {
  QString problem;
  window_ = loadPanelFile(display, file, parent, problem);
  if (window_ == nullptr) {
    missing(problem);
    window_ = new QWidget(parent);
  }
  window_->setObjectName(name);
  if (parent != nullptr) window_->setWindowFlag(Qt::Window, true);
  setTitle(title);
  restorePlace();
  window_->installEventFilter(this);
}

Panel::~Panel() {
  if (window_->isVisible()) keepPlace();
  window_->removeEventFilter(this);
  delete window_;
}

void Panel::setTitle(const QString& title) {
  window_->setWindowTitle(title);
}

QObject* Panel::findGadget(const char* gadgetName) const {
  return window_->findChild<QObject*>(QLatin1String(gadgetName));
}

void Panel::restorePlace() {
  if (display_.kept() != nullptr)
    placed_ = window_->restoreGeometry(display_.kept()->value("geometry/" + name_).toByteArray());
}

void Panel::keepPlace() const {
  if (display_.kept() != nullptr) display_.kept()->setValue("geometry/" + name_, window_->saveGeometry());
}

void Panel::missing(const QString& what) {
  if (!problems_.contains(what)) problems_.append(what);
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
  showBitmaps();
  for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Enter}) bindKey(key, [this] { enter(); });
  bindHelp();
}

void Panel::bindHelp() {
  // A key that stands in a menu too would reach neither.
  for (const auto* const item : window_->findChildren<QAction*>())
    if (item->shortcut() == QKeySequence(Qt::Key_F1)) return;
  bindKey(QKeySequence(Qt::Key_F1), [this] { display_.showHelp(HelpCommand::Topic, helpTopic()); });
}

// Qt's default button works in dialogs alone.
void Panel::enter() {
  QWidget* const focus = window_->focusWidget();
  if (auto* const button = qobject_cast<QPushButton*>(focus)) return button->click();
  // In a cell's editor Enter takes what was typed.
  for (QWidget* above = focus != nullptr ? focus->parentWidget() : nullptr; above != nullptr;
       above = above->parentWidget())
    if (auto* const view = qobject_cast<QAbstractItemView*>(above)) return view->setFocus();
  const QString twice = focus != nullptr ? focus->property("doubleCallback").toString() : QString();
  if (!twice.isEmpty()) return call(twice);
  pressDefault(*window_);
}

void Panel::connectGadgets() {
  for (QObject* const gadget : window_->findChildren<QObject*>()) {
    const QString callback = gadget->property("callback").toString();
    if (!callback.isEmpty() && !connectGadget(gadget, this, [this, callback] { call(callback); }))
      missing("gadget " + gadget->objectName() + " can't have a callback");
    const QString twice = gadget->property("doubleCallback").toString();
    if (!twice.isEmpty() && !connectDoubleClick(gadget, this, [this, twice] { call(twice); }))
      missing("gadget " + gadget->objectName() + " can't have a double click");
    const QStringList drag = gadget->property("dragCallbacks").toString().split(' ', Qt::SkipEmptyParts);
    const auto part = [this, drag](int i) { return [this, callback = drag.value(i)] { call(callback); }; };
    if (!drag.isEmpty() && (drag.size() != 3 || !connectDrag(gadget, this, part(0), part(1), part(2))))
      missing("gadget " + gadget->objectName() + " can't be dragged from");
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
                               "The panel " + name_ + " can't be shown.\n" + problems_.mid(0, kMostTold).join('\n') +
                                   (problems_.size() > kMostTold ? "\n..." : ""),
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
  if (placed_) return;
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
  window_->setWindowModality(window_->parentWidget() != nullptr ? Qt::WindowModal : Qt::ApplicationModal);
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
  if (watched == window_ && event->type() == QEvent::Hide && !event->spontaneous()) keepPlace();
  if (watched != window_ || event->type() != QEvent::Close) return QObject::eventFilter(watched, event);
  if (!closing()) {
    event->ignore();
    return true;
  }
  return false;
}

}  // namespace tarvex
