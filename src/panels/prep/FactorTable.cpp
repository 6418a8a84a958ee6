#include "panels/prep/FactorTable.h"

#include <algorithm>
#include <limits>

#include "factors/FactorList.h"
#include "factors/IntervalDistribution.h"
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

const IntervalDistribution* FactorTable::longList(int row) const {
  constexpr std::size_t kMostInCell = 200;  // intervals; a cell's editor takes 32,767 characters
  const auto* const list = row < factors() ? dynamic_cast<const IntervalDistribution*>(&list_->factor(row)) : nullptr;
  return list != nullptr && list->count() > kMostInCell ? list : nullptr;
}

QString FactorTable::shownText(int row, int column) const {
  const IntervalDistribution* const list = column == kParameters ? longList(row) : nullptr;
  if (list == nullptr) return text(row, column);
  return QString::number(list->count()) + (list->holdsPoints() ? " points" : " intervals");
}

double FactorTable::number(int /*row*/, int /*column*/) const {
  return std::numeric_limits<double>::quiet_NaN();  // no column has numbers
}

bool FactorTable::isEditable(int row, int column) const {
  if (!changes_.edit || (column == kParameters && longList(row) != nullptr)) return false;
  return row < factors() || (row == factors() && column == kName);
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
  return changes_.paste ? changes_.paste(row, column, block) : QString("This list is for reading.");
}

std::vector<int> FactorTable::rowsWith(const QString& letters) const {
  std::vector<int> found;
  for (int row = 0; row < factors(); ++row) {
    bool holds = QString::fromStdString(list_->factor(row).note).contains(letters, Qt::CaseInsensitive);
    for (int column = 0; column < kColumns && !holds; ++column)
      holds = shownText(row, column).contains(letters, Qt::CaseInsensitive);
    if (holds) found.push_back(row);
  }
  return found;
}

}  // namespace tarvex
