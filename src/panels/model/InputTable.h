#pragma once

#include <functional>

#include "toolkit/TableSource.h"

namespace tarvex {

class InternalModel;

// The inputs of a model, a row each: name, and the equations that use it.
class InputTable : public EditableTableSource {
 public:
  // What a user does in the grid; renaming answers why not, or nothing.
  struct Changes {
    std::function<QString(int row, const QString& name)> rename;
    std::function<bool(int from, int to)> move;
  };

  explicit InputTable(Changes changes) : changes_(std::move(changes)) {}
  void setModel(const InternalModel& model);

  int rows() const override { return static_cast<int>(inputs_.size()); }
  int columns() const override { return 2; }
  QString header(int column) const override { return column == 0 ? "Input" : "Used by"; }
  QString text(int row, int column) const override { return inputs_[static_cast<std::size_t>(row)].value(column); }
  bool isNumeric(int /*column*/) const override { return false; }
  double number(int row, int column) const override;
  bool isEditable(int /*row*/, int column) const override { return column == 0; }
  QString setText(int row, int /*column*/, const QString& text) override { return changes_.rename(row, text); }
  bool canMoveRows() const override { return true; }
  bool moveRow(int from, int to) override { return changes_.move(from, to); }

 private:
  std::vector<QStringList> inputs_;
  Changes changes_;
};

}  // namespace tarvex
