#include "panels/prep/correlationCells.h"

#include <cmath>
#include <map>
#include <utility>

#include "base/NumberText.h"

namespace tarvex {
namespace {

bool readNumber(const QString& text, double& value, QString& why) {
  const QString written = text.trimmed();
  if (!isNumber(written.toStdString(), value)) {
    why = '\'' + written + "' is no number" + (written.contains(',') ? ": decimals stand behind a point" : "") + '.';
    return false;
  }
  if (value >= -1.0 && value <= 1.0) return true;
  why = written + " lies outside of -1 to 1.";
  return false;
}

// The places of names in the matrix; empty where one isn't a factor's.
std::vector<int> placesOf(const QStringList& texts, const QStringList& names) {
  std::vector<int> places;
  for (const QString& text : texts) places.push_back(static_cast<int>(names.indexOf(text.trimmed())));
  for (const int place : places)
    if (place < 0) return {};
  return places;
}

// The rows and columns that the numbers of a block go to; those that its names say are taken out of it.
struct Target {
  std::vector<int> rows, columns;
};
Target targetOf(std::vector<QStringList>& block, int row, int column, const QStringList& names) {
  Target target;
  QStringList beside;
  for (std::size_t i = 1; i < block.size(); ++i) beside << block[i].value(0);
  const std::vector<int> above = placesOf(block.front().mid(1), names);
  const std::vector<int> left = placesOf(beside, names);
  if (!above.empty() && !left.empty()) {
    block.erase(block.begin());
    for (QStringList& line : block) line.removeFirst();
    return {left, above};
  }
  qsizetype width = 0;
  for (const QStringList& line : block) width = std::max(width, line.size());
  for (std::size_t i = 0; i < block.size(); ++i) target.rows.push_back(row + static_cast<int>(i));
  for (int i = 0; i < width; ++i) target.columns.push_back(column + i);
  return target;
}

}  // namespace

bool readCorrelation(const QString& text, double& value, QString& why) {
  if (!readNumber(text, value, why)) return false;
  // As the matrix keeps it.
  if (static_cast<float>(value) != 0.0F) return true;
  why = "0 is no correlation. The key Delete takes one away.";
  return false;
}

bool readCorrelationBlock(const std::vector<QStringList>& block, int row, int column, const QStringList& names,
                          std::vector<CorrelationCell>& cells, QString& why) {
  std::vector<QStringList> numbers = block;
  const Target target = targetOf(numbers, row, column, names);
  std::map<std::pair<int, int>, float> taken;
  for (std::size_t i = 0; i < numbers.size(); ++i)
    for (qsizetype j = 0; j < numbers[i].size(); ++j) {
      const QString text = numbers[i][j].trimmed();
      if (text.isEmpty()) continue;
      const int at = target.rows[i];
      const int to = j < static_cast<qsizetype>(target.columns.size()) ? target.columns[static_cast<std::size_t>(j)]
                                                                       : static_cast<int>(names.size());
      if (at >= names.size() || to >= names.size()) {
        why = '\'' + text + "' stands outside of the matrix.";
        return false;
      }
      double value = 0.0;
      const bool isRead = readNumber(text, value, why);
      if (isRead && at == to && value != 1.0) why = "the diagonal is 1, not " + text + '.';
      const auto number = static_cast<float>(value);
      const auto [known, added] = taken.emplace(std::minmax(at, to), number);
      if (isRead && !added && known->second != number)
        why = text + " here, and " + QString::fromStdString(numberText(known->second)) + " in its mirror.";
      if (!why.isEmpty()) {
        why = names[at] + " with " + names[to] + ": " + why;
        return false;
      }
      if (at != to) cells.push_back({at, to, number});
    }
  return true;
}

}  // namespace tarvex
