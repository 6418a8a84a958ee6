#include <QLabel>
#include <QLineEdit>
#include <algorithm>
#include <charconv>
#include <cmath>
#include <memory>

#include "base/NumberText.h"
#include "panels/vels/CellTable.h"
#include "panels/vels/PUaSingle.h"
#include "postproc/SavedTables.h"
#include "postproc/UaCurves.h"
#include "toolkit/TableView.h"

// The points of the curves, and the share of the runs between two of them.
namespace tarvex {
namespace {

// The shortest text that is read back as this number.
QString singleText(float value) {
  if (std::isnan(value)) return "nan";  // whatever its sign
  char text[kMaxNumberText];
  return QString::fromLatin1(text, std::to_chars(text, text + sizeof text, value).ptr - text);
}

}  // namespace

void PUaSingle::showPoints() {
  auto* const table = gadget<TableView>("MaPoints");
  std::vector<CellTable::Column> columns;
  for (const char* const heading : kPointHeadings) columns.push_back({heading});
  std::vector<QStringList> cells;
  if (statistics_.hasHistogram(variable_, scale_)) {
    for (const auto& point : curvePoints(statistics_, variable_, scale_)) {
      QStringList row;
      for (const std::string& cell : point) row << QString::fromStdString(cell).trimmed();
      cells.push_back(row);
    }
  } else if (std::isnan(statistics_.minimum(variable_))) {
    table->setEmptyText("There are no points: no run has a number.");
  } else if (isWithoutBins(statistics_, variable_)) {
    table->setEmptyText("There are no points: some values are infinite.");
  } else {
    table->setEmptyText("There are no points: not all values are above 0.");
  }
  table->setSource(std::make_shared<CellTable>(columns, cells));
}

// The interval of the chart: from the first point to the last one.
void PUaSingle::showBounds() {
  const UaCurves curves = makeUaCurves(statistics_, variable_, scale_);
  const bool hasBins = statistics_.hasHistogram(variable_, scale_);
  gadget<QLineEdit>("NLower")->setText(hasBins ? singleText(curves.x.front()) : QString());
  gadget<QLineEdit>("NUpper")->setText(hasBins ? singleText(curves.x.back()) : QString());
  boundSet();
}

void PUaSingle::boundSet() {
  double lower = 0.0;
  double upper = 0.0;
  const bool areNumbers = isNumber(gadget<QLineEdit>("NLower")->text().toStdString(), lower) &&
                          isNumber(gadget<QLineEdit>("NUpper")->text().toStdString(), upper);
  const bool hasBins = statistics_.hasHistogram(variable_, scale_);
  const double probability =
      areNumbers ? std::min(1.0, statistics_.intervalProbability(lower, upper, variable_, scale_)) : 0.0;
  gadget<QLabel>("NValue")->setText(!hasBins      ? "no bins"
                                    : !areNumbers ? "two numbers are needed"
                                                  : statisticText(probability));
}

}  // namespace tarvex
