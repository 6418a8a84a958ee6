#include "panels/model/CellsTable.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace tarvex {

void CellsTable::take(const std::vector<std::string>& factors, const WorkbookCells& cells) {
  rows_.clear();
  for (const std::string& factor : factors) rows_.push_back({true, true, QString::fromStdString(factor), {}});
  for (const NamedCell& input : cells.inputs) {
    const QString name = QString::fromStdString(input.name);
    auto found = std::ranges::find(rows_, name, &Row::name);
    if (found == rows_.end()) found = rows_.insert(rows_.end(), {true, false, name, {}});
    found->cell = QString::fromStdString(input.place());
  }
  for (const NamedCell& output : cells.outputs)
    rows_.push_back({false, false, QString::fromStdString(output.name), QString::fromStdString(output.place())});
  tidy();
}

bool CellsTable::read(WorkbookCells& cells, std::string& problem) const {
  WorkbookCells found;
  for (const Row& row : rows_) {
    if (row.isEmpty() || (row.isInput && row.cell.isEmpty())) continue;
    NamedCell& cell = (row.isInput ? found.inputs : found.outputs).emplace_back();
    cell.name = row.name.toStdString();
    if (cell.name.empty()) problem = row.cell.toStdString() + ": this output has no name.";
    if (!cell.name.empty() && row.cell.isEmpty()) problem = cell.name + ": this output has no cell.";
    if (cell.name.empty() || row.cell.isEmpty()) return false;
    if (parsePlace(row.cell.toStdString(), cell, problem)) continue;
    problem = cell.name + ": " + problem;
    return false;
  }
  cells = std::move(found);
  return true;
}

bool CellsTable::tidy() {
  const std::size_t before = rows_.size();
  const auto isSpare = [](const Row& row) { return !row.isInput && row.isEmpty(); };
  const bool wasTidy = std::ranges::count_if(rows_, isSpare) == 1 && isSpare(rows_.back());
  std::erase_if(rows_, isSpare);
  rows_.push_back({false, false, {}, {}});
  return !wasTidy || rows_.size() != before;
}

QString CellsTable::header(int column) const {
  static const char* const kHeaders[kColumns] = {"Kind", "Name", "Cell"};
  return kHeaders[column];
}

QString CellsTable::headerToolTip(int column) const {
  if (column == kName) return "Factors are those of the study; outputs are named here.";
  return column == kCell ? "A sheet and its cell, as Model!B3; without a sheet, that of the row above" : QString();
}

QString CellsTable::text(int row, int column) const {
  if (column == kKind) return at(row).isInput ? "factor" : "output";
  return column == kName ? at(row).name : at(row).cell;
}

double CellsTable::number(int /*row*/, int /*column*/) const {
  return std::numeric_limits<double>::quiet_NaN();  // no column has numbers
}

bool CellsTable::isEditable(int row, int column) const {
  return column == kCell || (column == kName && !at(row).isInput);
}

// A cell without a sheet lies on that of the nearest row above that has one.
QString CellsTable::completed(int row, const QString& text) const {
  NamedCell cell;
  std::string problem;
  if (parsePlace(text.toStdString(), cell, problem)) return QString::fromStdString(cell.place());
  for (int above = row - 1; above >= 0; --above) {
    if (!parsePlace(at(above).cell.toStdString(), cell, problem)) continue;
    const std::string place = cell.place();
    if (!parsePlace(place.substr(0, place.rfind('!') + 1) + text.toStdString(), cell, problem)) break;
    return QString::fromStdString(cell.place());
  }
  return text;
}

QString CellsTable::setText(int row, int column, const QString& text) {
  if (!isEditable(row, column)) return "Factors are named where they are written.";
  Row& changed = rows_[static_cast<std::size_t>(row)];
  if (column == kName)
    changed.name = text.trimmed();
  else
    changed.cell = completed(row, text.trimmed());
  return {};
}

QString CellsTable::problem(int row, int column) const {
  const Row& cell = at(row);
  if (cell.isEmpty() || column == kKind) return {};
  if (column == kName) {
    if (cell.isInput && !cell.isFactor && !cell.cell.isEmpty()) return "This is no factor of the study.";
    return cell.name.isEmpty() ? "This output has no name." : QString();
  }
  if (cell.cell.isEmpty()) return cell.isInput ? QString() : "This output has no cell.";
  NamedCell found;
  std::string problem;
  return parsePlace(cell.cell.toStdString(), found, problem) ? QString() : QString::fromStdString(problem);
}

bool CellsTable::appendRow() {
  rows_.push_back({false, false, {}, {}});
  return true;
}

}  // namespace tarvex
