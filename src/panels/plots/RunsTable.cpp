#include "panels/plots/RunsTable.h"

#include "base/NumberText.h"
#include "postproc/CellFormat.h"

namespace tarvex {

QString numberIn(NumberNotation notation, double value) {
  if (notation == NumberNotation::General) return QString::fromStdString(numberText(value));
  return QString::fromStdString(measureCell(value)).trimmed();
}

QString RunsTable::headerToolTip(int column) const {
  return QString::fromStdString(at(column).name) + (at(column).isFactor ? ", a factor" : ", a variable");
}

}  // namespace tarvex
