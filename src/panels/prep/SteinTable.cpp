#include "panels/prep/SteinTable.h"

#include <limits>

#include "base/NumberText.h"
#include "panels/prep/CorrelationDraft.h"

namespace tarvex {

int SteinTable::rows() const {
  return draft_.stein().steinInfo.rows();
}

int SteinTable::columns() const {
  return draft_.stein().steinInfo.columns();
}

QString SteinTable::header(int column) const {
  return column < draft_.factors().factorCount() ? draft_.name(column) : QString::number(column + 1);
}

QString SteinTable::text(int row, int column) const {
  return QString::fromStdString(numberText(number(row, column)));
}

double SteinTable::number(int row, int column) const {
  double value = 0.0;
  return draft_.stein().steinInfo.getValue(row, column, value) ? value : std::numeric_limits<double>::quiet_NaN();
}

}  // namespace tarvex
