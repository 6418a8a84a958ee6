#pragma once

#include <QString>
#include <functional>
#include <vector>

namespace tarvex {

// The changes that a user can take back and make again, each with a name. A change knows how to set what it changed to
// what was before and to what was after; where that fails, it stays where it is in the stack.
class UndoStack {
 public:
  using Set = std::function<bool()>;

  // A change that has been made. Those that were taken back can't be made again any more.
  void push(const QString& name, Set before, Set after);
  void clear();

  // The name of the change that would be taken back or made again; empty when there is none.
  QString undoName() const { return made_ > 0 ? changes_[made_ - 1].name : QString(); }
  QString redoName() const { return made_ < changes_.size() ? changes_[made_].name : QString(); }
  // False when there is none, or it failed.
  [[nodiscard]] bool undo();
  [[nodiscard]] bool redo();

 private:
  struct Change {
    QString name;
    Set before;
    Set after;
  };
  std::vector<Change> changes_;
  std::size_t made_ = 0;  // of changes_; the rest was taken back
};

}  // namespace tarvex
