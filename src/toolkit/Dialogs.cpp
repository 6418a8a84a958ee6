#include "toolkit/Dialogs.h"

#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QInputDialog>
#include <QMessageBox>
#include <QPushButton>
#include <utility>

namespace tarvex {
namespace {

QMessageBox::Icon iconOf(DialogKind kind) {
  switch (kind) {
    case DialogKind::Information:
      return QMessageBox::Information;
    case DialogKind::Warning:
      return QMessageBox::Warning;
    case DialogKind::Error:
      break;
  }
  return QMessageBox::Critical;
}

// Qt shows no title bar text of its own on some desktops; the window's title is what the system's messages are known
// by.
void setUp(QMessageBox& box, const QString& title, const QString& text) {
  box.setObjectName("message");
  box.setWindowTitle(title);
  box.setTextFormat(Qt::PlainText);
  box.setTextInteractionFlags(Qt::TextSelectableByMouse);
  box.setText(text);
}

Dialogs& realDialogs() {
  static Dialogs dialogs;
  return dialogs;
}

Dialogs* currentDialogs = nullptr;

}  // namespace

Dialogs& Dialogs::current() {
  return currentDialogs != nullptr ? *currentDialogs : realDialogs();
}

Dialogs* Dialogs::exchange(Dialogs* dialogs) {
  return std::exchange(currentDialogs, dialogs);
}

QString buttonLabel(const QString& text) {
  return text.startsWith('^') ? '&' + text.mid(1) : text;
}

void Dialogs::message(DialogKind kind, const QString& title, const QString& text, QWidget* parent) {
  QMessageBox box(iconOf(kind), {}, {}, QMessageBox::NoButton, parent);
  setUp(box, title, text);
  box.addButton(QMessageBox::Ok)->setObjectName("apply");
  box.exec();
}

bool Dialogs::question(const QString& title, const QString& text, const QString& yes, const QString& no,
                       QWidget* parent) {
  QMessageBox box(QMessageBox::Question, {}, {}, QMessageBox::NoButton, parent);
  setUp(box, title, text);
  QPushButton* const apply = box.addButton(buttonLabel(yes), QMessageBox::AcceptRole);
  QPushButton* const cancel = box.addButton(buttonLabel(no), QMessageBox::RejectRole);
  apply->setObjectName("apply");
  cancel->setObjectName("cancel");
  box.setDefaultButton(apply);
  box.setEscapeButton(cancel);
  box.exec();
  return box.clickedButton() == apply;
}

std::optional<QString> Dialogs::askText(const QString& title, const QString& label, QWidget* parent) {
  QInputDialog dialog(parent);
  dialog.setObjectName("textInput");
  dialog.setWindowTitle(title);
  dialog.setLabelText(buttonLabel(label));
  if (dialog.exec() != QDialog::Accepted) return std::nullopt;
  return dialog.textValue();
}

std::optional<ChosenFile> Dialogs::chooseFile(const FileChoice& choice, QWidget* parent) {
  const bool saving = choice.purpose == FileChoice::Purpose::Save;
  QFileDialog dialog(parent, choice.title, choice.directory.isEmpty() ? QDir::currentPath() : choice.directory);
  dialog.setObjectName("fileChooser");
  dialog.setAcceptMode(saving ? QFileDialog::AcceptSave : QFileDialog::AcceptOpen);
  dialog.setFileMode(saving ? QFileDialog::AnyFile : QFileDialog::ExistingFile);
  QStringList filters;
  // "All files" are those without a dot, too.
  for (const FileFilter& filter : choice.filters)
    filters << filter.description + " (" + (filter.pattern == "*.*" ? "*" : filter.pattern) + ')';
  dialog.setNameFilters(filters);
  if (saving) dialog.setDefaultSuffix(choice.suffix);
  if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) return std::nullopt;
  const QString path = dialog.selectedFiles().constFirst();
  return ChosenFile{path, QFileInfo(path).absolutePath()};
}

}  // namespace tarvex
