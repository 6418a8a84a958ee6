#include "toolkit/UndoStack.h"

#include <utility>

namespace tarvex {
namespace {

constexpr std::size_t kMostChanges = 100;

}  // namespace

void UndoStack::push(const QString& name, Set before, Set after) {
  changes_.resize(made_);
  changes_.push_back({name, std::move(before), std::move(after)});
  if (changes_.size() > kMostChanges) changes_.erase(changes_.begin());
  made_ = changes_.size();
}

void UndoStack::clear() {
  changes_.clear();
  made_ = 0;
}

bool UndoStack::undo() {
  if (made_ == 0 || !changes_[made_ - 1].before()) return false;
  --made_;
  return true;
}

bool UndoStack::redo() {
  if (made_ == changes_.size() || !changes_[made_].after()) return false;
  ++made_;
  return true;
}

}  // namespace tarvex
