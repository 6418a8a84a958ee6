#pragma once

#include <map>
#include <string>
#include <vector>

#include "toolkit/TableSource.h"

namespace tarvex {

class FactorList;

// The runs of a fixed sample as a user edits them: a row a run, a column a factor. A cell may hold anything; read()
// judges it.
class FixedTable : public EditableTableSource {
 public:
  using Rows = std::vector<std::vector<double>>;

  // `usual` is what new rows hold, a number a factor.
  FixedTable(const FactorList& factors, std::vector<double> usual);

  void take(const Rows& rows);
  // False, with row and factor, when a cell holds no finite number.
  bool read(Rows& rows, QString& problem) const;
  void insertRow(int row);
  void removeRow(int row) { rows_.erase(rows_.begin() + row); }

  int rows() const override { return static_cast<int>(rows_.size()); }
  int columns() const override { return static_cast<int>(names_.size()); }
  QString header(int column) const override { return names_[column]; }
  QString text(int row, int column) const override;
  double number(int row, int column) const override;
  QString setText(int row, int column, const QString& text) override;
  QString problem(int row, int column) const override;
  bool appendRow() override;
  // All or nothing. A first line of factors' names says which columns the others belong to.
  QString setBlock(int row, int column, const std::vector<QStringList>& block) override;

 private:
  struct Run {
    std::vector<double> values;             // not-a-number where there is none
    std::map<std::size_t, QString> drafts;  // what stands there instead, by column
  };
  std::vector<int> columnsNamed(const QStringList& line) const;

  QStringList names_;
  std::vector<double> usual_;
  std::vector<Run> rows_;
};

}  // namespace tarvex
