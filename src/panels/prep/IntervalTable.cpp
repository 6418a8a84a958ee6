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
  for (std::size_t i = 0; i < list.count(); ++i) {
    const Interval& interval = *list.intervalAt(i);
    rows_.push_back({textOf(interval.left)});
    if (!points_) rows_.back().push_back(textOf(interval.right));
    rows_.back().push_back(textOf(interval.weight));
  }
}

bool IntervalTable::read(IntervalDistribution& list, QString& problem) const {
  list.clear();
  std::string message;
  for (int row = 0; row < rows() && message.empty(); ++row) {
    std::vector<double> numbers;
    for (int column = 0; column < columns() && message.empty(); ++column) {
      const std::string text = cell(row, column).toStdString();
      double value = 0.0;
      if (isNumber(text, value) && std::isfinite(value))
        numbers.push_back(value);
      else
        message = column + 1 == columns() ? "Weight value error" : "'" + text + "' is no number";
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
  const std::vector<QString> empty(static_cast<std::size_t>(columns()));
  rows_.insert(rows_.begin() + row, empty);
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

double IntervalTable::number(int row, int column) const {
  double value = 0.0;
  return isNumber(cell(row, column).toStdString(), value) ? value : std::numeric_limits<double>::quiet_NaN();
}

QString IntervalTable::setText(int row, int column, const QString& text) {
  rows_[static_cast<std::size_t>(row)][static_cast<std::size_t>(column)] = text.trimmed();
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
