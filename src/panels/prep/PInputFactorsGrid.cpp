// The grid of the panel of factors: what is selected and searched, typed, pasted and moved.

#include <QLineEdit>
#include <QTimer>
#include <algorithm>
#include <numeric>

#include "panels/prep/FactorEditing.h"
#include "panels/prep/FactorTable.h"
#include "panels/prep/PInputFactors.h"
#include "toolkit/TableView.h"

namespace tarvex {
namespace {

constexpr const char* kNoFactorSelected = "   No factor selected";
constexpr const char* kSteinKept = "The Stein sample stays, and so does the list.";

}  // namespace

// Selection.

std::vector<int> PInputFactors::selectedPlaces() {
  auto* const view = gadget<TableView>("MaFactors");
  std::vector<int> places;
  for (const QItemSelectionRange& range : view->selectionModel()->selection())
    for (int row = range.top(); row <= range.bottom(); ++row) {
      const int place = view->tableModel().sourceRow(row);
      if (place < list().factorCount()) places.push_back(place);
    }
  std::ranges::sort(places);
  places.erase(std::unique(places.begin(), places.end()), places.end());
  return places;
}

// Of several the one that the cursor is on.
int PInputFactors::selectedPlace() {
  const std::vector<int> places = selectedPlaces();
  if (places.empty()) return -1;
  auto* const view = gadget<TableView>("MaFactors");
  const int current = view->currentIndex().isValid() ? view->tableModel().sourceRow(view->currentIndex().row()) : -1;
  return std::ranges::find(places, current) != places.end() ? current : places.front();
}

void PInputFactors::select(const std::vector<int>& places) {
  auto* const view = gadget<TableView>("MaFactors");
  const TableModel& model = view->tableModel();
  QItemSelection rows;
  int first = -1;
  for (int row = 0; row < model.rowCount(); ++row) {
    if (!std::ranges::binary_search(places, model.sourceRow(row))) continue;
    if (first < 0) first = row;
    if (!rows.isEmpty() && rows.constLast().bottom() + 1 == row)
      rows.last() = QItemSelectionRange(rows.constLast().topLeft(), model.index(row, model.columnCount() - 1));
    else
      rows.append(QItemSelectionRange(model.index(row, 0), model.index(row, model.columnCount() - 1)));
  }
  if (first >= 0) {
    const int column = std::max(view->currentIndex().column(), 0);
    view->setCurrentIndex(model.index(first, column));
    if (places.size() > 1) view->selectionModel()->select(rows, QItemSelectionModel::ClearAndSelect);
    view->scrollTo(view->currentIndex());
  }
  selectItem();
}

std::vector<int> PInputFactors::wantSelection(const char* title) {
  std::vector<int> places = selectedPlaces();
  if (places.empty()) static_cast<void>(done(false, title, kNoFactorSelected));  // tells
  return places;
}

void PInputFactors::selectItem() {
  selectedRow_ = selectedPlace();
  refreshFactor();
  refreshGadgets();
}

void PInputFactors::refreshTable() {
  auto* const view = gadget<TableView>("MaFactors");
  table_->setList(factors());
  view->tableModel().sourceChanged();
  if (const QString letters = gadget<QLineEdit>("TSearch")->text().trimmed(); !letters.isEmpty())
    view->tableModel().setRows(table_->rowsWith(letters));
}

void PInputFactors::search() {
  refreshTable();
  auto* const view = gadget<TableView>("MaFactors");
  select({view->tableModel().rowCount() > 0 ? view->tableModel().sourceRow(0) : -1});
}

// Changes.

// A question takes the keyboard away from the cell's editor, which then hands its text over once more.
QString PInputFactors::edit(int row, int column, const QString& text) {
  if (inCell_) return {};
  QString problem;
  bool taken = false;
  inCell_ = true;
  if (row >= list().factorCount()) {
    taken = editing_->paste({{text}}, newKind_, problem);
    if (taken) selectedRow_ = list().factorCount() - 1;
  } else {
    std::vector<int> places{row};
    const std::vector<int> selected = selectedPlaces();
    if (column != FactorTable::kName && std::ranges::binary_search(selected, row)) places = selected;
    taken = editing_->setCells(places, column, text, problem);
  }
  inCell_ = false;
  return refusal(taken, problem);
}

QString PInputFactors::refusal(bool taken, const QString& problem) {
  return taken ? QString() : problem.isEmpty() ? QString(kSteinKept) : problem;
}

QString PInputFactors::paste(int row, int column, const std::vector<QStringList>& block) {
  QString problem;
  const int before = list().factorCount();
  const bool taken = column == FactorTable::kName ? editing_->paste(block, newKind_, problem)
                                                  : editing_->pasteCells(row, column, block, problem);
  if (before < list().factorCount()) selectLater({list().factorCount() - 1});
  return refusal(taken, problem);
}

QString PInputFactors::moveTo(const std::vector<int>& places, int before) {
  const auto above = std::ranges::count_if(places, [before](int place) { return place < before; });
  std::vector<int> moved(places.size());
  std::iota(moved.begin(), moved.end(), before - static_cast<int>(above));
  QString problem;
  const bool taken = editing_->move(places, before, problem);
  if (taken) selectLater(moved);
  return refusal(taken, problem);
}

// With all that is selected.
QString PInputFactors::moveRow(int from, int to) {
  if (from >= list().factorCount()) return "There is nothing to move.";
  std::vector<int> places = selectedPlaces();
  if (!std::ranges::binary_search(places, from)) places = {from};
  const int before = to < from ? places.front() + to - from : places.back() + 1 + to - from;
  return moveTo(places, std::clamp(before, 0, list().factorCount()));
}

void PInputFactors::moveBy(int by) {
  const std::vector<int> places = wantSelection("Error");
  if (places.empty()) return;
  if (const QString why = moveRow(places.front(), places.front() + by); !why.isEmpty()) say(why);
}

// When the table, which goes on with what the user did, has come to its end.
void PInputFactors::selectLater(const std::vector<int>& places) {
  QTimer::singleShot(0, this, [this, places] { select(places); });
}

}  // namespace tarvex
