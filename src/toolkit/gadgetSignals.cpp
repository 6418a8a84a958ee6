#include "toolkit/gadgetSignals.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QAbstractSlider>
#include <QAction>
#include <QComboBox>
#include <QDoubleSpinBox>
#include <QItemSelectionModel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QSpinBox>
#include <QTabWidget>
#include <QTextEdit>

#include "toolkit/SquareField.h"
#include "toolkit/Tree.h"

namespace tarvex {
namespace {

// Calls connectTo(gadget, signal) when the gadget is of the kind.
template <class Kind, class Signal>
bool connectKind(QObject* gadget, Signal signal, QObject* context, const std::function<void()>& run) {
  auto* const typed = qobject_cast<Kind*>(gadget);
  if (typed == nullptr) return false;
  QObject::connect(typed, signal, context, [run] { run(); });
  return true;
}

bool connectView(QObject* gadget, QObject* context, const std::function<void()>& run) {
  auto* const view = qobject_cast<QAbstractItemView*>(gadget);
  if (view == nullptr || view->selectionModel() == nullptr) return false;
  if (gadget->property("when").toString() == "pressed")
    return connectKind<QAbstractItemView>(gadget, &QAbstractItemView::pressed, context, run);
  QObject::connect(view->selectionModel(), &QItemSelectionModel::selectionChanged, context, [run] { run(); });
  return true;
}

}  // namespace

bool connectGadget(QObject* gadget, QObject* context, const std::function<void()>& run) {
  const bool whenFinished = gadget->property("when").toString() == "finished";
  return connectKind<QAbstractButton>(gadget, &QAbstractButton::clicked, context, run) ||
         connectKind<QAction>(gadget, &QAction::triggered, context, run) ||
         connectKind<QComboBox>(gadget, &QComboBox::activated, context, run) ||
         (whenFinished && connectKind<QLineEdit>(gadget, &QLineEdit::editingFinished, context, run)) ||
         connectKind<QLineEdit>(gadget, &QLineEdit::textEdited, context, run) ||
         connectKind<QSpinBox>(gadget, &QSpinBox::valueChanged, context, run) ||
         connectKind<QDoubleSpinBox>(gadget, &QDoubleSpinBox::valueChanged, context, run) ||
         connectKind<QAbstractSlider>(gadget, &QAbstractSlider::valueChanged, context, run) ||
         connectKind<QTabWidget>(gadget, &QTabWidget::currentChanged, context, run) ||
         connectKind<QPlainTextEdit>(gadget, &QPlainTextEdit::textChanged, context, run) ||
         connectKind<QTextEdit>(gadget, &QTextEdit::textChanged, context, run) ||
         connectKind<SquareField>(gadget, &SquareField::selectionChanged, context, run) ||
         connectView(gadget, context, run);
}

bool connectDoubleClick(QObject* gadget, QObject* context, const std::function<void()>& run) {
  return connectKind<QLineEdit>(gadget, &QLineEdit::returnPressed, context, run) ||
         connectKind<QAbstractItemView>(gadget, &QAbstractItemView::activated, context, run);
}

bool connectDrag(QObject* gadget, QObject* context, const std::function<void()>& start,
                 const std::function<void()>& during, const std::function<void()>& end) {
  return connectKind<Tree>(gadget, &Tree::dragStarted, context, start) &&
         connectKind<Tree>(gadget, &Tree::dragMoved, context, during) &&
         connectKind<Tree>(gadget, &Tree::dragEnded, context, end);
}

}  // namespace tarvex
