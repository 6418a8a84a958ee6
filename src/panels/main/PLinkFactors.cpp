#include "panels/main/PLinkFactors.h"

#include <QHeaderView>
#include <QKeySequence>
#include <QLabel>
#include <QTableWidget>
#include <algorithm>

#include "factors/FactorList.h"
#include "toolkit/Dialogs.h"

namespace tarvex {

PLinkFactors::PLinkFactors(const Display& display, const FactorList& factors, const InternalModel& model,
                           QWidget* parent)
    : Panel(display, "PLinkFactors", "PLinkFactors", "Link between model and sample factors", parent), model_(model) {
  for (std::int32_t i = 0; i < factors.factorCount(); ++i) factors_.push_back(factors.factor(i).name);
  auto* const links = gadget<QTableWidget>("MaLinks");
  links->setColumnCount(2);
  links->setHorizontalHeaderLabels({"Sample factor", "Model input"});
  links->horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
  showRows(-1);
  registerCallbacks({{"scrollUp", [this] { move(-1); }},
                     {"scrollDown", [this] { move(1); }},
                     {"pairNames", [this] { pairNames(); }},
                     {"selectElem", [] {}},  // the table itself shows what is selected
                     {"ok", [this] { end(true); }},
                     {"cancel", [this] { end(false); }}});
  bindKey(QKeySequence(Qt::Key_Escape), [this] { end(false); });
}

int PLinkFactors::selectedRow() {
  const QList<QTableWidgetItem*> selected = gadget<QTableWidget>("MaLinks")->selectedItems();
  return selected.isEmpty() ? -1 : selected.constFirst()->row();
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
  auto* const links = gadget<QTableWidget>("MaLinks");
  const int rows = static_cast<int>(factors_.size());
  links->setRowCount(rows);
  QStringList apart;
  for (int row = 0; row < rows; ++row) {
    const std::string& factor = factors_[static_cast<std::size_t>(row)];
    const std::string& input = model_.variables()[static_cast<std::size_t>(row)].name;
    links->setItem(row, 0, new QTableWidgetItem(QString::fromStdString(factor)));
    links->setItem(row, 1, new QTableWidgetItem(QString::fromStdString(input)));
    if (input != factor && std::find(factors_.begin(), factors_.end(), input) != factors_.end())
      apart << QString::fromStdString(input);
  }
  if (selected >= 0) links->selectRow(selected);
  gadget<QLabel>("MlWarning")
      ->setText(apart.isEmpty() ? QString() : "Inputs beside a factor of another name: " + apart.join(", ") + '.');
}

}  // namespace tarvex
