#pragma once

#include <QLockFile>
#include <QString>
#include <memory>

namespace tarvex {

// Where a project's unsaved changes are kept safe, and the lock that says who works on it. Both files stand beside the
// project, hidden; those of a project without a name in a directory of the program's. A copy that nobody locks is what
// a program left that died.
class SafeCopy {
 public:
  // Nothing locked yet; `unnamed` is the directory for projects without a name.
  explicit SafeCopy(QString unnamed) : unnamed_(std::move(unnamed)) {}

  // Locks the project in place of the one before, whose files are left as they are. Empty: one without a name, of
  // which several can be at work, each under a number. False when it can't be: another program has it, see holder(), or
  // the directory can't be written.
  [[nodiscard]] bool claim(const QString& project);
  // Who has the project: "process 12 on host"; empty when it isn't locked by a living program.
  static QString holder(const QString& project);
  // The copy of a project with a name.
  static QString copyOf(const QString& project);

  bool isHeld() const { return lock_ != nullptr; }
  const QString& path() const { return path_; }  // of the copy; empty while nothing is held
  bool exists() const;
  void remove() const;
  // Out of the way of the next copy, under a name that is returned.
  QString putAside() const;
  // The lock goes, the copy stays.
  void release();

 private:
  bool lockStem(const QString& stem);

  QString unnamed_;
  QString path_;
  std::unique_ptr<QLockFile> lock_;
};

}  // namespace tarvex
