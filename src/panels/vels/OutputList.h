#pragma once

#include <functional>
#include <vector>

#include "postproc/VelsConfiguration.h"
#include "toolkit/TableSource.h"

namespace tarvex {

// The outputs of the model, a row each, with the weights that a user gives them.
class OutputList : public EditableTableSource {
 public:
  enum Column { kName, kWeight, kColumns };
  // Takes a weight over: why not, or nothing.
  using SetWeight = std::function<QString(int output, float weight)>;

  explicit OutputList(SetWeight setWeight) : setWeight_(std::move(setWeight)) {}
  // True when there are other rows than before.
  bool setOutputs(std::vector<VelsOutputRecord> outputs);

  int rows() const override { return static_cast<int>(outputs_.size()); }
  int columns() const override { return kColumns; }
  QString header(int column) const override { return column == kName ? "Output" : "Weight"; }
  QString headerToolTip(int column) const override;
  QString text(int row, int column) const override;
  bool isNumeric(int column) const override { return column == kWeight; }
  double number(int row, int column) const override;
  bool isEditable(int /*row*/, int column) const override { return column == kWeight; }
  QString setText(int row, int column, const QString& text) override;

 private:
  std::vector<VelsOutputRecord> outputs_;
  SetWeight setWeight_;
};

}  // namespace tarvex
