#include "panels/vels/CellTable.h"

#include <limits>
#include <utility>

#include "postproc/CellFormat.h"

namespace tarvex {

CellTable::CellTable(std::vector<Column> columns, std::vector<QStringList> cells)
    : columns_(std::move(columns)), cells_(std::move(cells)) {}

CellTable::CellTable(const QString& header, const std::vector<std::string>& names) : columns_{{header, false}} {
  for (const std::string& name : names) cells_.push_back({QString::fromStdString(name)});
}

double CellTable::number(int row, int column) const {
  bool isNumber = false;
  const double value = text(row, column).trimmed().section(' ', 0, 0).toDouble(&isNumber);
  return isNumber ? value : std::numeric_limits<double>::quiet_NaN();
}

QString statisticText(double value) {
  return QString::fromStdString(statisticCell(value)).trimmed();
}

}  // namespace tarvex
