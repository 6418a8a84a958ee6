#pragma once

#include <functional>
#include <memory>
#include <vector>

#include "toolkit/TableSource.h"

namespace tarvex {

class FactorList;
class IntervalDistribution;

// The factors of a list, a row each: name, distribution, parameters. A grid of five rows stands there for an empty list
// too.
class FactorTable : public EditableTableSource {
 public:
  enum Column { kName = 0, kKind = 1, kParameters = 2 };
  static constexpr int kColumns = 3;
  static constexpr int kLeastRows = 5;

  // What a user does in the grid; each answers why not, or nothing.
  struct Changes {
    std::function<QString(int row, int column, const QString& text)> edit;
    std::function<QString(int row, int column, const std::vector<QStringList>& block)> paste;
    std::function<QString(int from, int to)> move;
  };

  // Without changes the table is for reading.
  explicit FactorTable(std::shared_ptr<const FactorList> list, Changes changes = {});
  void setList(std::shared_ptr<const FactorList> list) { list_ = std::move(list); }

  int rows() const override;
  int columns() const override { return kColumns; }
  QString header(int column) const override;
  QString text(int row, int column) const override;
  QString shownText(int row, int column) const override;
  bool isNumeric(int /*column*/) const override { return false; }
  double number(int row, int column) const override;

  bool isEditable(int row, int column) const override;
  QString setText(int row, int column, const QString& text) override;
  QString problem(int row, int column) const override;
  bool canMoveRows() const override { return static_cast<bool>(changes_.move); }
  bool moveRow(int from, int to) override;
  // All or nothing. Rows that begin with a name are pasted as factors, whatever stands there.
  QString setBlock(int row, int column, const std::vector<QStringList>& block) override;

  // The rows whose name, distribution, parameters or note hold the letters, whatever their case.
  std::vector<int> rowsWith(const QString& letters) const;

 private:
  int factors() const;
  // A list of so many rows that no cell holds them.
  const IntervalDistribution* longList(int row) const;

  std::shared_ptr<const FactorList> list_;
  Changes changes_;
};

}  // namespace tarvex
