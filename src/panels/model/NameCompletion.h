#pragma once

#include <QCompleter>
#include <QObject>
#include <QStringList>

class QPlainTextEdit;

namespace tarvex {

// Offers, while a user types an expression, the names that go on as the word before the caret does. Tab takes the first
// or the chosen one, Enter a chosen one, and else presses the default button; Esc goes on without.
class NameCompletion : public QObject {
 public:
  // The field owns it.
  NameCompletion(QPlainTextEdit& field, const QStringList& names);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  QString word() const;
  void offer();
  void insert(const QString& name);

  QPlainTextEdit& field_;
  QCompleter completer_;
  bool inserting_ = false;
};

// The functions of the calculator language, to be offered beside the names.
QStringList functionList();

}  // namespace tarvex
