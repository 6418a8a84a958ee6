#pragma once

#include <QString>
#include <functional>
#include <memory>

#include "model/InternalModel.h"
#include "toolkit/UndoStack.h"

namespace tarvex {

// A model of equations under edit. Every change makes a new model and can be undone; one that is refused makes none.
class ModelEditing {
 public:
  using Operation = std::function<bool(InternalModel&)>;

  // `changed` is called after each change, also of undo and redo.
  ModelEditing(const InternalModel& model, std::function<void()> changed);

  const InternalModel& model() const { return *model_; }
  // Whether the model differs from what was last in a file, or from the start.
  bool edited() const { return model_ != saved_; }
  UndoStack& undo() { return undo_; }

  // False, with the model's own text, for an operation that fails.
  bool change(const QString& name, const Operation& operation, QString& problem);
  void take(const QString& name, InternalModel model);
  // The model as it is has come from a file.
  void setSaved() { saved_ = model_; }
  // It has gone to a file, and now has that one's name.
  void setSaved(InternalModel model);

 private:
  using Shared = std::shared_ptr<const InternalModel>;
  void enter(const QString& name, const Shared& after);

  Shared model_;
  Shared saved_;
  std::function<void()> changed_;
  UndoStack undo_;
};

// Why the model refused an operation: its own text, and what it found on the next line.
QString refusalOf(const InternalModel& model);

}  // namespace tarvex
