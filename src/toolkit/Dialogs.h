#pragma once

#include <QString>
#include <optional>
#include <vector>

class QWidget;

namespace tarvex {

enum class DialogKind { Information, Warning, Error };

struct FileFilter {
  QString pattern;      // "*.psc"
  QString description;  // "project's files"
};

// What a file chooser asks for.
struct FileChoice {
  enum class Purpose { Open, Save };
  QString title;
  std::vector<FileFilter> filters;  // the first is the one in force at the start
  QString directory;                // in which it starts; empty: the current one
  Purpose purpose = Purpose::Open;
  QString suffix = {};  // given to a name that has none when saving; without the dot
};

struct ChosenFile {
  QString path;
  QString directory;  // in which the chooser ended
};

// Every dialog that waits for an answer goes through the current object, so that a test can answer by a script.
class Dialogs {
 public:
  virtual ~Dialogs() = default;

  // Waits until the user has read it.
  virtual void message(DialogKind kind, const QString& title, const QString& text, QWidget* parent);
  // True for `yes`, which Enter chooses; Esc chooses `no`. Labels may carry the mark of a message of the system
  // ("^Yes").
  virtual bool question(const QString& title, const QString& text, const QString& yes, const QString& no,
                        QWidget* parent);
  // A line of text that the user writes; nothing when it was cancelled. `label` may carry the mark of a message, too.
  virtual std::optional<QString> askText(const QString& title, const QString& label, QWidget* parent);
  // Nothing when the user cancelled. A file that would be replaced has been asked for.
  virtual std::optional<ChosenFile> chooseFile(const FileChoice& choice, QWidget* parent);

  static Dialogs& current();
  // Makes `dialogs` current and returns the one that was; null restores the real ones. The caller keeps ownership.
  static Dialogs* exchange(Dialogs* dialogs);
};

// "^Yes" as a button shows it: the word with its key.
QString buttonLabel(const QString& text);

}  // namespace tarvex
