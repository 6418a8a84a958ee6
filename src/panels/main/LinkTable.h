#pragma once

#include <functional>
#include <string>
#include <vector>

#include "toolkit/TableSource.h"

namespace tarvex {

// The factors of a sample beside the inputs of a model that take their columns. Factors stay; inputs can be moved.
class LinkTable : public EditableTableSource {
 public:
  explicit LinkTable(std::function<void(int from, int to)> move) : move_(std::move(move)) {}
  void setRows(std::vector<std::string> factors, std::vector<std::string> inputs);

  int rows() const override { return static_cast<int>(factors_.size()); }
  int columns() const override { return 2; }
  QString header(int column) const override { return column == 0 ? "Sample factor" : "Model input"; }
  QString text(int row, int column) const override;
  bool isNumeric(int /*column*/) const override { return false; }
  double number(int row, int column) const override;
  bool isEditable(int /*row*/, int /*column*/) const override { return false; }
  QString setText(int row, int column, const QString& text) override;
  QString problem(int row, int column) const override;
  bool canMoveRows() const override { return true; }
  bool moveRow(int from, int to) override;

 private:
  std::vector<std::string> factors_;
  std::vector<std::string> inputs_;
  std::function<void(int from, int to)> move_;
};

}  // namespace tarvex
