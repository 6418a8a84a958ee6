#pragma once

#include <string>
#include <vector>

#include "model/WorkbookCells.h"
#include "toolkit/TableSource.h"

namespace tarvex {

// The cells of a workbook as a user writes them: a row for each factor, which may stay without one, then the outputs
// and an empty row for the next. They may be anything; read() judges them.
class CellsTable : public EditableTableSource {
 public:
  enum Column { kKind = 0, kName = 1, kCell = 2 };
  static constexpr int kColumns = 3;

  void take(const std::vector<std::string>& factors, const WorkbookCells& cells);
  // The cells of the rows that aren't empty. False, with the reason, when one isn't written as a cell.
  [[nodiscard]] bool read(WorkbookCells& cells, std::string& problem) const;
  // Drops outputs that were emptied and leaves one empty row at the end. True when rows came or went.
  bool tidy();

  int rows() const override { return static_cast<int>(rows_.size()); }
  int columns() const override { return kColumns; }
  QString header(int column) const override;
  QString headerToolTip(int column) const override;
  QString text(int row, int column) const override;
  bool isNumeric(int /*column*/) const override { return false; }
  double number(int row, int column) const override;
  bool isEditable(int row, int column) const override;
  QString setText(int row, int column, const QString& text) override;
  QString problem(int row, int column) const override;
  bool appendRow() override;

 private:
  struct Row {
    bool isInput;
    bool isFactor;  // of the study
    QString name;
    QString cell;

    bool isEmpty() const { return name.isEmpty() && cell.isEmpty(); }
  };
  const Row& at(int row) const { return rows_[static_cast<std::size_t>(row)]; }
  QString completed(int row, const QString& text) const;

  std::vector<Row> rows_;
};

}  // namespace tarvex
