#include "panels/main/LinkTable.h"

#include <algorithm>
#include <limits>

namespace tarvex {

void LinkTable::setRows(std::vector<std::string> factors, std::vector<std::string> inputs) {
  factors_ = std::move(factors);
  inputs_ = std::move(inputs);
}

QString LinkTable::text(int row, int column) const {
  return QString::fromStdString((column == 0 ? factors_ : inputs_)[static_cast<std::size_t>(row)]);
}

double LinkTable::number(int /*row*/, int /*column*/) const {
  return std::numeric_limits<double>::quiet_NaN();  // no column has numbers
}

QString LinkTable::setText(int /*row*/, int /*column*/, const QString& /*text*/) {
  return "Names are changed where factors and equations are written.";
}

// An input whose own name another factor has.
QString LinkTable::problem(int row, int column) const {
  const std::string& input = inputs_[static_cast<std::size_t>(row)];
  if (column != 1 || input == factors_[static_cast<std::size_t>(row)]) return {};
  const auto found = std::ranges::find(factors_, input);
  return found == factors_.end() ? QString()
                                 : QString("The factor %1 stands in row %2.")
                                       .arg(QString::fromStdString(input))
                                       .arg(found - factors_.begin() + 1);
}

bool LinkTable::moveRow(int from, int to) {
  move_(from, to);
  return true;
}

}  // namespace tarvex
