#pragma once

#include "plots/RunTable.h"
#include "toolkit/TableSource.h"

namespace tarvex {

// Columns of runs as a sheet: a row a run. Factors and variables have a colour each.
class RunSheet : public TableSource {
 public:
  // `columns`: places in the table, which are there.
  RunSheet(std::shared_ptr<const RunTable> table, std::vector<std::size_t> columns)
      : table_(std::move(table)), columns_(std::move(columns)) {}

  int rows() const override { return columns_.empty() ? 0 : table_->runs; }
  int columns() const override { return static_cast<int>(columns_.size()); }
  QString header(int column) const override { return QString::fromStdString(at(column).label()); }
  QString text(int row, int column) const override;
  double number(int row, int column) const override { return at(column).values[static_cast<std::size_t>(row)]; }

 private:
  const RunColumn& at(int column) const { return table_->columns[columns_[static_cast<std::size_t>(column)]]; }

  std::shared_ptr<const RunTable> table_;
  std::vector<std::size_t> columns_;
};

}  // namespace tarvex
