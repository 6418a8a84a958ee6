#pragma once

#include <memory>

#include "plots/RunTable.h"
#include "toolkit/TableSource.h"

namespace tarvex {

// How tables show numbers: as many digits as count, up to six, or four decimals as the system's tables of measures.
enum class NumberNotation { General, Decimals };
QString numberIn(NumberNotation notation, double value);

// Runs as a table: a row a run, a column a factor or variable.
class RunsTable : public TableSource {
 public:
  RunsTable(std::shared_ptr<const RunTable> runs, NumberNotation notation)
      : runs_(std::move(runs)), notation_(notation) {}

  int rows() const override { return runs_->runs; }
  int columns() const override { return static_cast<int>(runs_->columns.size()); }
  QString header(int column) const override { return QString::fromStdString(at(column).name); }
  QString headerToolTip(int column) const override;
  QString text(int row, int column) const override { return numberIn(notation_, number(row, column)); }
  double number(int row, int column) const override { return at(column).values[static_cast<std::size_t>(row)]; }

 private:
  const RunColumn& at(int column) const { return runs_->columns[static_cast<std::size_t>(column)]; }

  std::shared_ptr<const RunTable> runs_;
  NumberNotation notation_;
};

}  // namespace tarvex
