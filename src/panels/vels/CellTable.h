#pragma once

#include <string>
#include <vector>

#include "toolkit/TableSource.h"

namespace tarvex {

// A table of texts that are there already: names, statistics, points of curves.
class CellTable : public TableSource {
 public:
  struct Column {
    QString header;
    bool isNumeric = true;
  };
  CellTable(std::vector<Column> columns, std::vector<QStringList> cells);
  // One column of names.
  CellTable(const QString& header, const std::vector<std::string>& names);

  int rows() const override { return static_cast<int>(cells_.size()); }
  int columns() const override { return static_cast<int>(columns_.size()); }
  QString header(int column) const override { return columns_[static_cast<std::size_t>(column)].header; }
  QString text(int row, int column) const override { return cells_[static_cast<std::size_t>(row)].value(column); }
  bool isNumeric(int column) const override { return columns_[static_cast<std::size_t>(column)].isNumeric; }
  double number(int row, int column) const override;

 private:
  std::vector<Column> columns_;
  std::vector<QStringList> cells_;
};

// A statistic as such a table shows it.
QString statisticText(double value);

}  // namespace tarvex
