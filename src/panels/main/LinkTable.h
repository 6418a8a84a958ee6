#pragma once

#include <functional>
#include <string>
#include <vector>

#include "toolkit/TableSource.h"

namespace tarvex {

// Names that stay beside others that can be moved.
class LinkTable : public EditableTableSource {
 public:
  struct Words {
    const char* staying;  // headers
    const char* moving;
    const char* kind;  // "factor": what a name that stays is
  };

  LinkTable(const Words& words, std::function<void(int from, int to)> move) : words_(words), move_(std::move(move)) {}
  // `shown` stays; a name has its own row where it is the row's key.
  void setRows(std::vector<std::string> shown, std::vector<std::string> keys, std::vector<std::string> names);

  int rows() const override { return static_cast<int>(shown_.size()); }
  int columns() const override { return 2; }
  QString header(int column) const override { return column == 0 ? words_.staying : words_.moving; }
  QString text(int row, int column) const override;
  bool isNumeric(int /*column*/) const override { return false; }
  double number(int row, int column) const override;
  bool isEditable(int /*row*/, int /*column*/) const override { return false; }
  QString setText(int row, int column, const QString& text) override;
  QString problem(int row, int column) const override;
  bool canMoveRows() const override { return true; }
  bool moveRow(int from, int to) override;

 private:
  Words words_;
  std::vector<std::string> shown_;
  std::vector<std::string> keys_;
  std::vector<std::string> names_;
  std::function<void(int from, int to)> move_;
};

}  // namespace tarvex
