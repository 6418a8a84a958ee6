#include "panels/main/LinkTable.h"

#include <algorithm>
#include <limits>

namespace tarvex {

void LinkTable::setRows(std::vector<std::string> shown, std::vector<std::string> keys, std::vector<std::string> names) {
  shown_ = std::move(shown);
  keys_ = std::move(keys);
  names_ = std::move(names);
}

QString LinkTable::text(int row, int column) const {
  return QString::fromStdString((column == 0 ? shown_ : names_)[static_cast<std::size_t>(row)]);
}

double LinkTable::number(int /*row*/, int /*column*/) const {
  return std::numeric_limits<double>::quiet_NaN();  // no column has numbers
}

QString LinkTable::setText(int /*row*/, int /*column*/, const QString& /*text*/) {
  return "Names are moved here; they are changed where they are written.";
}

// A name that is the key of another row.
QString LinkTable::problem(int row, int column) const {
  const std::string& name = names_[static_cast<std::size_t>(row)];
  if (column != 1 || name == keys_[static_cast<std::size_t>(row)]) return {};
  const auto found = std::ranges::find(keys_, name);
  if (found == keys_.end()) return {};
  return QString("The %1 %2 stands in row %3.")
      .arg(words_.kind, QString::fromStdString(name))
      .arg(found - keys_.begin() + 1);
}

bool LinkTable::moveRow(int from, int to) {
  move_(from, to);
  return true;
}

}  // namespace tarvex
