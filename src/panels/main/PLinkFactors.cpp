#include "panels/main/PLinkFactors.h"

#include <QHeaderView>
#include <QKeySequence>
#include <QLabel>
#include <algorithm>

#include "factors/FactorList.h"
#include "panels/main/LinkTable.h"
#include "toolkit/Dialogs.h"
#include "toolkit/TableView.h"

namespace tarvex {

PLinkFactors::PLinkFactors(const Display& display, const FactorList& factors, const InternalModel& model,
                           QWidget* parent)
    : Panel(display, "PLinkFactors", "PLinkFactors", "Link between model and sample factors", parent), model_(model) {
  for (std::int32_t i = 0; i < factors.factorCount(); ++i) factors_.push_back(factors.factor(i).name);
  auto* const links = gadget<TableView>("MaLinks");
  table_ = std::make_shared<LinkTable>([this](int from, int to) {
    model_.moveVariable(from, to);
    showRows(to);
  });
  links->setEditable(table_);
  links->setSelectionBehavior(QAbstractItemView::SelectRows);
  links->setSelectionMode(QAbstractItemView::SingleSelection);
  showRows(-1);
  links->horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
  registerCallbacks({{"scrollUp", [this] { move(-1); }},
                     {"scrollDown", [this] { move(1); }},
                     {"pairNames", [this] { pairNames(); }},
                     {"selectElem", [] {}},  // the table itself shows what is selected
                     {"ok", [this] { end(true); }},
                     {"cancel", [this] { end(false); }}});
  bindKey(QKeySequence(Qt::Key_Escape), [this] { end(false); });
}

int PLinkFactors::selectedRow() {
  auto* const links = gadget<TableView>("MaLinks");
  const QModelIndexList rows = links->selectionModel()->selectedRows();
  return rows.isEmpty() ? -1 : links->tableModel().sourceRow(rows.constFirst().row());
}

void PLinkFactors::move(int by) {
  const int row = selectedRow();
  if (row < 0) {
    Dialogs::current().message(DialogKind::Error, "Error", "No model factor selected", window());
    return;
  }
  const int to = row + by;
  if (to < 0 || to >= model_.numVariables()) return;
  model_.moveVariable(row, to);
  showRows(to);
}

void PLinkFactors::pairNames() {
  for (std::size_t row = 0; row < factors_.size(); ++row) {
    const auto& inputs = model_.variables();
    const auto found = std::find_if(inputs.begin() + static_cast<std::ptrdiff_t>(row), inputs.end(),
                                    [&](const ModelVariable& input) { return input.name == factors_[row]; });
    if (found != inputs.end())
      model_.moveVariable(static_cast<std::int32_t>(found - inputs.begin()), static_cast<std::int32_t>(row));
  }
  showRows(selectedRow());
}

void PLinkFactors::showRows(int selected) {
  auto* const links = gadget<TableView>("MaLinks");
  std::vector<std::string> inputs;
  for (const ModelVariable& input : model_.variables()) inputs.push_back(input.name);
  table_->setRows(factors_, inputs);
  links->tableModel().sourceChanged();
  if (selected >= 0) links->selectRow(selected);
  QStringList apart;
  for (int row = 0; row < table_->rows(); ++row)
    if (!table_->problem(row, 1).isEmpty()) apart << table_->text(row, 1);
  gadget<QLabel>("MlWarning")
      ->setText(apart.isEmpty() ? QString() : "Inputs beside a factor of another name: " + apart.join(", ") + '.');
}

}  // namespace tarvex
