#include "qt/ScriptedDialogs.h"

#include <QFileInfo>

namespace tarvex::test {

void ScriptedDialogs::message(DialogKind, const QString& title, const QString& text, QWidget*) {
  shown.push_back((title + ": " + text).toStdString());
}

bool ScriptedDialogs::question(const QString& title, const QString& text, const QString& yes, const QString& no,
                               QWidget*) {
  shown.push_back((title + ": " + text + " [" + yes + '/' + no + ']').toStdString());
  if (answers.empty()) return false;
  const bool answer = answers.front();
  answers.pop_front();
  return answer;
}

std::optional<QString> ScriptedDialogs::askText(const QString& title, const QString& label, QWidget*) {
  shown.push_back((title + ": " + label + " [?]").toStdString());
  if (texts.empty()) return std::nullopt;
  const QString text = QString::fromStdString(texts.front());
  texts.pop_front();
  return text;
}

std::optional<ChosenFile> ScriptedDialogs::chooseFile(const FileChoice& choice, QWidget*) {
  QString line = choice.title + (choice.purpose == FileChoice::Purpose::Save ? ": save" : ": open");
  for (const FileFilter& filter : choice.filters) line += ' ' + filter.pattern;
  shown.push_back(line.toStdString());
  if (files.empty()) return std::nullopt;
  const QString path = QString::fromStdString(files.front());
  files.pop_front();
  if (path.isEmpty()) return std::nullopt;
  return ChosenFile{path, QFileInfo(path).absolutePath()};
}

}  // namespace tarvex::test
