#include "panels/prep/PTabulated.h"

#include <QHeaderView>
#include <algorithm>

#include "factors/TabulatedValues.h"
#include "factors/makeFactor.h"
#include "panels/prep/choosePrepFile.h"
#include "toolkit/TableView.h"

namespace tarvex {

PTabulated::PTabulated(const Display& display, const Factor& factor, const DefinitionContext& context, QWidget* parent)
    : PDefinition(display, definitionKind(factor.typeName), factor, context, parent) {
  auto* const view = gadget<TableView>("MaValues");
  view->setEmptyText("There is no row yet: add one, or paste some.");
  view->horizontalHeader()->setStretchLastSection(true);
  connect(view, &TableView::edited, this, [this] { edited(); });
  start({{"add", [this] { add(); }},
         {"del", [this] { del(); }},
         {"load", [this] { load(); }},
         {"save", [this] { save(); }},
         {"selectRow", [] {}}});  // the table itself shows what is selected
}

std::unique_ptr<Factor> PTabulated::readParameters(Refusal& refusal) {
  std::unique_ptr<Factor> draft = makeFactor(kind().type);
  QString problem;
  if (table_->read(static_cast<IntervalDistribution&>(*draft), problem)) return draft;
  refusal = {"Error", problem, gadget<TableView>("MaValues")};
  return nullptr;
}

void PTabulated::showParameters(const Factor& factor) {
  const auto& list = static_cast<const IntervalDistribution&>(factor);
  if (!table_) {
    table_ = std::make_shared<IntervalTable>(list.holdsPoints());
    if (context().demo)
      gadget<TableView>("MaValues")->setSource(table_);
    else
      gadget<TableView>("MaValues")->setEditable(table_);
  }
  table_->take(list);
  rowsChanged(-1);
}

void PTabulated::rowsChanged(int selected) {
  auto* const view = gadget<TableView>("MaValues");
  view->tableModel().sourceChanged();
  if (selected >= 0) view->selectRow(selected);
}

void PTabulated::add() {
  auto* const view = gadget<TableView>("MaValues");
  const QModelIndex current = view->currentIndex();
  const bool isSelected = current.isValid() && view->selectionModel()->hasSelection();
  const int row = isSelected ? view->tableModel().sourceRow(current.row()) + 1 : table_->rows();
  table_->insertRow(row);
  rowsChanged(row);
  edited();
}

void PTabulated::del() {
  auto* const view = gadget<TableView>("MaValues");
  std::vector<int> rows;
  for (const QItemSelectionRange& range : view->selectionModel()->selection())
    for (int row = range.top(); row <= range.bottom(); ++row) rows.push_back(view->tableModel().sourceRow(row));
  if (rows.empty()) return refuse({"Error", "No row selected", view});
  std::ranges::sort(rows, std::greater<>());
  rows.erase(std::unique(rows.begin(), rows.end()), rows.end());
  for (const int row : rows) table_->removeRow(row);
  rowsChanged(std::min(rows.back(), table_->rows() - 1));
  edited();
}

void PTabulated::load() {
  const auto chosen = choosePrepFile("Select tabulated uniform values file", FileChoice::Purpose::Open,
                                     {{"*.fac", "factors' files"}}, "", window());
  if (!chosen) return;
  const std::unique_ptr<Factor> loaded = makeFactor(kind().type);
  std::string message;
  if (!loadTabulatedValues(chosen->path.toStdString(), static_cast<IntervalDistribution&>(*loaded), message))
    return refuse({"Error", QString::fromStdString(message)});
  showParameters(*loaded);
  edited();
}

// What is written can be read: rows that the panel refuses are mended first.
void PTabulated::save() {
  Refusal refusal;
  const std::unique_ptr<Factor> draft = readParameters(refusal);
  if (!draft) return refuse(refusal);
  const auto chosen = choosePrepFile("Save tabulated uniform values file", FileChoice::Purpose::Save,
                                     {{"*.fac", "factors' files"}}, "fac", window());
  if (!chosen) return;
  std::string message;
  if (!saveTabulatedValues(chosen->path.toStdString(), static_cast<IntervalDistribution&>(*draft), message))
    refuse({"Error", QString::fromStdString(message)});
}

}  // namespace tarvex
