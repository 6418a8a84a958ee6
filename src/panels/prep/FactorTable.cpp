#include "panels/prep/FactorTable.h"

#include <algorithm>
#include <limits>

#include "factors/FactorList.h"
#include "factors/factorFields.h"

namespace tarvex {

FactorTable::FactorTable(std::shared_ptr<const FactorList> list, Changes changes)
    : list_(std::move(list)), changes_(std::move(changes)) {}

int FactorTable::factors() const {
  return list_->factorCount();
}

int FactorTable::rows() const {
  return std::max(kLeastRows, factors());
}

QString FactorTable::header(int column) const {
  return column == kName ? "Name" : column == kKind ? "Distribution" : "Parameters";
}

QString FactorTable::text(int row, int column) const {
  if (row >= factors()) return {};
  const Factor& factor = list_->factor(row);
  return QString::fromStdString(column == kName   ? factor.name
                                : column == kKind ? factor.typeName
                                                  : factorFields(factor));
}

double FactorTable::number(int /*row*/, int /*column*/) const {
  return std::numeric_limits<double>::quiet_NaN();  // no column has numbers
}

bool FactorTable::isEditable(int row, int column) const {
  return changes_.edit && (row < factors() || (row == factors() && column == kName));
}

QString FactorTable::setText(int row, int column, const QString& text) {
  return changes_.edit ? changes_.edit(row, column, text) : QString("This list is for reading.");
}

QString FactorTable::problem(int row, int column) const {
  if (row >= factors() || column != kParameters) return {};
  return QString::fromStdString(list_->factor(row).parameterProblem());
}

bool FactorTable::moveRow(int from, int to) {
  return changes_.move && changes_.move(from, to).isEmpty();
}

QString FactorTable::setBlock(int row, int column, const std::vector<QStringList>& block) {
  if (column == kName && changes_.paste) return changes_.paste(block);
  return EditableTableSource::setBlock(row, column, block);
}

std::vector<int> FactorTable::rowsWith(const QString& letters) const {
  std::vector<int> found;
  for (int row = 0; row < factors(); ++row) {
    bool holds = QString::fromStdString(list_->factor(row).note).contains(letters, Qt::CaseInsensitive);
    for (int column = 0; column < kColumns && !holds; ++column)
      holds = text(row, column).contains(letters, Qt::CaseInsensitive);
    if (holds) found.push_back(row);
  }
  return found;
}

}  // namespace tarvex
