#include "panels/prep/IntervalTable.h"

#include <cmath>
#include <limits>

#include "base/NumberText.h"
#include "factors/factorFields.h"

namespace tarvex {
namespace {

QString textOf(double value) {
  constexpr int kDigits = 15;  // as the user wrote them
  return QString::fromStdString(numberText(value, kDigits));
}

}  // namespace

void IntervalTable::take(const IntervalDistribution& list) {
  rows_.clear();
  rows_.reserve(list.count());
  for (std::size_t i = 0; i < list.count(); ++i) {
    const Interval& interval = *list.intervalAt(i);
    Row& row = rows_.emplace_back();
    row[0].number = interval.left;
    row[1].number = points_ ? interval.weight : interval.right;
    row[2].number = interval.weight;
  }
}

bool IntervalTable::read(IntervalDistribution& list, QString& problem) const {
  list.clear();
  std::string message;
  std::vector<double> numbers;
  for (int row = 0; row < rows() && message.empty(); ++row) {
    numbers.clear();
    for (int column = 0; column < columns() && message.empty(); ++column) {
      numbers.push_back(number(row, column));
      if (!std::isfinite(numbers.back()))
        message =
            column + 1 == columns() ? "Weight value error" : "'" + text(row, column).toStdString() + "' is no number";
    }
    if (message.empty()) static_cast<void>(appendFields(list, numbers, 1.0, message));  // the message tells
    if (!message.empty()) problem = QString("Row %1: %2").arg(row + 1).arg(QString::fromStdString(message));
  }
  if (!message.empty()) return false;
  if (list.checkWeights()) return true;
  problem = "Error: " + QString::fromStdString(list.errorText);
  return false;
}

void IntervalTable::insertRow(int row) {
  rows_.insert(rows_.begin() + row, Row());
  for (int column = 0; column < columns(); ++column) static_cast<void>(setText(row, column, {}));  // takes any text
}

QString IntervalTable::weightSum() const {
  double sum = 0.0;
  for (int row = 0; row < rows(); ++row) {
    const double weight = number(row, columns() - 1);
    if (std::isfinite(weight)) sum += weight;
  }
  return textOf(sum);
}

QString IntervalTable::header(int column) const {
  if (column + 1 == columns()) return "Weight";
  return points_ ? "Value" : column == 0 ? "Left" : "Right";
}

QString IntervalTable::text(int row, int column) const {
  const Cell& shown = cell(row, column);
  return shown.isTyped ? shown.typed : textOf(shown.number);
}

double IntervalTable::number(int row, int column) const {
  return cell(row, column).number;
}

QString IntervalTable::setText(int row, int column, const QString& text) {
  Cell& typed = rows_[static_cast<std::size_t>(row)][static_cast<std::size_t>(column)];
  typed = {text.trimmed(), std::numeric_limits<double>::quiet_NaN(), true};
  double value = 0.0;
  if (isNumber(typed.typed.toStdString(), value)) typed.number = value;
  return {};
}

QString IntervalTable::problem(int row, int column) const {
  return std::isfinite(number(row, column)) ? QString() : QString("This is no number.");
}

bool IntervalTable::appendRow() {
  insertRow(rows());
  return true;
}

}  // namespace tarvex
