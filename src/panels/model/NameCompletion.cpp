#include "panels/model/NameCompletion.h"

#include <QAbstractItemView>
#include <QKeyEvent>
#include <QPlainTextEdit>
#include <QRegularExpression>
#include <QScrollBar>
#include <QTextBlock>

#include "factors/EvaluatorOperations.h"
#include "toolkit/oneLine.h"

namespace tarvex {

NameCompletion::NameCompletion(QPlainTextEdit& field, const QStringList& names)
    : QObject(&field), field_(field), completer_(names) {
  completer_.setWidget(&field);
  completer_.setCompletionMode(QCompleter::PopupCompletion);
  completer_.setCaseSensitivity(Qt::CaseInsensitive);
  completer_.popup()->installEventFilter(this);
  connect(&completer_, QOverload<const QString&>::of(&QCompleter::activated), this,
          [this](const QString& name) { insert(name); });
  connect(&field, &QPlainTextEdit::textChanged, this, [this] { offer(); });
}

// What stands before the caret of a name; empty within a number.
QString NameCompletion::word() const {
  const QTextCursor caret = field_.textCursor();
  const QString before = caret.block().text().left(caret.positionInBlock());
  static const QRegularExpression name("(?<![A-Za-z0-9_.])[A-Za-z_][A-Za-z0-9_]*$");
  constexpr int kLongest = 80;  // no name that is completed is longer
  return name.match(before.right(kLongest)).captured(0);
}

void NameCompletion::offer() {
  if (inserting_ || !field_.hasFocus()) return;
  const QString start = word();
  completer_.setCompletionPrefix(start);
  const bool isWhole = completer_.completionCount() > 0 && completer_.currentCompletion() == start;
  if (start.isEmpty() || isWhole || completer_.completionCount() == 0) return completer_.popup()->hide();
  QAbstractItemView* const popup = completer_.popup();
  QRect place = field_.cursorRect();
  place.setWidth(popup->sizeHintForColumn(0) + popup->verticalScrollBar()->sizeHint().width());
  completer_.complete(place);
  popup->setCurrentIndex({});
}

void NameCompletion::insert(const QString& name) {
  QTextCursor caret = field_.textCursor();
  caret.movePosition(QTextCursor::Left, QTextCursor::KeepAnchor, static_cast<int>(word().size()));
  inserting_ = true;
  caret.insertText(name);
  inserting_ = false;
  field_.setTextCursor(caret);
}

bool NameCompletion::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() != QEvent::KeyPress) return QObject::eventFilter(watched, event);
  QAbstractItemView* const popup = completer_.popup();
  const int key = static_cast<QKeyEvent*>(event)->key();
  const bool isEnter = key == Qt::Key_Return || key == Qt::Key_Enter;
  if (key != Qt::Key_Tab && key != Qt::Key_Escape && !isEnter) return QObject::eventFilter(watched, event);
  const QModelIndex chosen = popup->currentIndex();
  const QString name = chosen.isValid() ? chosen.data().toString() : completer_.currentCompletion();
  popup->hide();
  if (key == Qt::Key_Tab || (isEnter && chosen.isValid()))
    insert(name);
  else if (isEnter)
    pressDefault(*field_.window());
  return true;
}

QStringList functionList() {
  QStringList list;
  for (const std::string_view name : functionNames())
    list << QString::fromLatin1(name.data(), static_cast<qsizetype>(name.size()));
  return list;
}

}  // namespace tarvex
