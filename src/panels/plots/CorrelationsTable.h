#pragma once

#include <memory>

#include "panels/plots/RunsTable.h"
#include "plots/columnCorrelations.h"
#include "toolkit/TableSource.h"

namespace tarvex {

// Correlations of columns, with their names above and beside.
class CorrelationsTable : public TableSource {
 public:
  CorrelationsTable(std::shared_ptr<const CorrelationMatrix> matrix, NumberNotation notation)
      : matrix_(std::move(matrix)), notation_(notation) {}

  int rows() const override { return static_cast<int>(matrix_->names.size()); }
  int columns() const override { return rows(); }
  QString header(int column) const override {
    return QString::fromStdString(matrix_->names[static_cast<std::size_t>(column)]);
  }
  QString rowName(int row) const override { return header(row); }
  QString text(int row, int column) const override { return numberIn(notation_, number(row, column)); }
  double number(int row, int column) const override {
    return matrix_->at(static_cast<std::size_t>(row), static_cast<std::size_t>(column));
  }

 private:
  std::shared_ptr<const CorrelationMatrix> matrix_;
  NumberNotation notation_;
};

}  // namespace tarvex
