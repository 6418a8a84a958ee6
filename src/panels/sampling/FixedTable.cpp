#include "panels/sampling/FixedTable.h"

#include <cmath>
#include <limits>
#include <numeric>

#include "base/NumberText.h"
#include "factors/FactorList.h"

namespace tarvex {

FixedTable::FixedTable(const FactorList& factors, std::vector<double> usual) : usual_(std::move(usual)) {
  for (std::int32_t i = 0; i < factors.factorCount(); ++i) names_ << QString::fromStdString(factors.factor(i).name);
}

void FixedTable::take(const Rows& rows) {
  rows_.clear();
  for (const std::vector<double>& row : rows) rows_.push_back({row, {}});
}

bool FixedTable::read(Rows& rows, QString& problem) const {
  rows.clear();
  for (int row = 0; row < this->rows(); ++row) {
    rows.push_back(rows_[static_cast<std::size_t>(row)].values);
    for (int column = 0; column < columns(); ++column) {
      if (std::isfinite(number(row, column))) continue;
      problem = QString("Row %1, %2: '%3' is no number.").arg(row + 1).arg(header(column), text(row, column));
      return false;
    }
  }
  return true;
}

void FixedTable::insertRow(int row) {
  rows_.insert(rows_.begin() + row, {usual_, {}});
}

QString FixedTable::text(int row, int column) const {
  constexpr int kDigits = 15;  // as the user wrote them
  const Run& run = rows_[static_cast<std::size_t>(row)];
  const auto draft = run.drafts.find(static_cast<std::size_t>(column));
  if (draft != run.drafts.end()) return draft->second;
  return QString::fromStdString(numberText(number(row, column), kDigits));
}

double FixedTable::number(int row, int column) const {
  return rows_[static_cast<std::size_t>(row)].values[static_cast<std::size_t>(column)];
}

QString FixedTable::setText(int row, int column, const QString& text) {
  Run& run = rows_[static_cast<std::size_t>(row)];
  const auto place = static_cast<std::size_t>(column);
  double value = std::numeric_limits<double>::quiet_NaN();
  const bool isTaken = isNumber(text.toStdString(), value) && std::isfinite(value);
  run.values[place] = isTaken ? value : std::numeric_limits<double>::quiet_NaN();
  run.drafts.erase(place);
  if (!isTaken) run.drafts[place] = text.trimmed();
  return {};
}

QString FixedTable::problem(int row, int column) const {
  if (std::isfinite(number(row, column))) return {};
  return text(row, column).contains(',') ? "This is no number; decimals stand behind a point." : "This is no number.";
}

bool FixedTable::appendRow() {
  insertRow(rows());
  return true;
}

// Empty when they aren't names of factors, each once.
std::vector<int> FixedTable::columnsNamed(const QStringList& line) const {
  std::vector<int> columns;
  for (const QString& name : line) {
    const auto column = static_cast<int>(names_.indexOf(name.trimmed()));
    if (column < 0 || line.count(name) > 1) return {};
    columns.push_back(column);
  }
  return columns;
}

QString FixedTable::setBlock(int row, int column, const std::vector<QStringList>& block) {
  std::vector<int> places = columnsNamed(block.front());
  const bool isNamed = !places.empty();
  const int room = columns() - column;
  if (!isNamed) {
    places.resize(static_cast<std::size_t>(room));
    std::iota(places.begin(), places.end(), column);
  }
  for (const QStringList& line : block)
    if (line.size() > static_cast<qsizetype>(places.size()))
      return QString("There are columns for %1 values, not for %2.").arg(places.size()).arg(line.size());
  for (std::size_t i = isNamed ? 1 : 0; i < block.size(); ++i, ++row) {
    if (row >= rows()) insertRow(rows());
    for (qsizetype field = 0; field < block[i].size(); ++field)
      static_cast<void>(setText(row, places[static_cast<std::size_t>(field)], block[i][field]));  // takes all texts
  }
  return {};
}

}  // namespace tarvex
