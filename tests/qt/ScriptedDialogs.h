#pragma once

#include <deque>
#include <string>
#include <vector>

#include "toolkit/Dialogs.h"

namespace tarvex::test {

// Answers dialogs by a script and writes down what was shown. A question without an answer left is answered by no, a
// chooser by cancel; both are written down, so that a test sees them.
class ScriptedDialogs : public Dialogs {
 public:
  ScriptedDialogs() : previous_(Dialogs::exchange(this)) {}
  ~ScriptedDialogs() override { Dialogs::exchange(previous_); }
  ScriptedDialogs(const ScriptedDialogs&) = delete;
  ScriptedDialogs& operator=(const ScriptedDialogs&) = delete;

  std::deque<bool> answers;        // of the questions to come
  std::deque<std::string> files;   // paths for the choosers to come; empty: cancel
  std::deque<std::string> texts;   // for the lines that will be asked for; none left: cancel
  std::vector<std::string> shown;  // "title: text", "title: text [yes/no]", "title: open *.psc" in their order

  void message(DialogKind kind, const QString& title, const QString& text, QWidget* parent) override;
  bool question(const QString& title, const QString& text, const QString& yes, const QString& no,
                QWidget* parent) override;
  std::optional<QString> askText(const QString& title, const QString& label, QWidget* parent) override;
  std::optional<ChosenFile> chooseFile(const FileChoice& choice, QWidget* parent) override;

 private:
  Dialogs* previous_;
};

}  // namespace tarvex::test
