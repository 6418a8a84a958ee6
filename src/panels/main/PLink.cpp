#include "panels/main/PLink.h"

#include <QHeaderView>
#include <QKeySequence>
#include <QLabel>
#include <algorithm>
#include <utility>

#include "toolkit/Dialogs.h"
#include "toolkit/TableView.h"

namespace tarvex {

PLink::PLink(const Display& display, const Words& words, std::vector<std::string> shown, std::vector<std::string> keys,
             std::vector<std::string> names, QWidget* parent)
    : Panel(display, words.panel, words.panel, words.title, parent),
      words_(words),
      shown_(std::move(shown)),
      keys_(std::move(keys)),
      names_(std::move(names)) {
  auto* const links = gadget<TableView>("MaLinks");
  table_ = std::make_shared<LinkTable>(words.table, [this](int from, int to) {
    move(from, to);
    showRows(to);
  });
  links->setEditable(table_);
  links->setSelectionBehavior(QAbstractItemView::SelectRows);
  links->setSelectionMode(QAbstractItemView::SingleSelection);
  showRows(-1);
  links->horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
  registerCallbacks({{"scrollUp", [this] { moveSelected(-1); }},
                     {"scrollDown", [this] { moveSelected(1); }},
                     {"pairNames", [this] { pairNames(); }},
                     {"selectElem", [] {}},  // the table itself shows what is selected
                     {"ok", [this] { end(true); }},
                     {"cancel", [this] { end(false); }}});
  bindKey(QKeySequence(Qt::Key_Escape), [this] { end(false); });
}

int PLink::selectedRow() {
  auto* const links = gadget<TableView>("MaLinks");
  const QModelIndexList rows = links->selectionModel()->selectedRows();
  return rows.isEmpty() ? -1 : links->tableModel().sourceRow(rows.constFirst().row());
}

void PLink::move(int from, int to) {
  const auto first = names_.begin() + std::min(from, to);
  const auto last = names_.begin() + std::max(from, to) + 1;
  std::rotate(first, from < to ? first + 1 : last - 1, last);
  moved(from, to);
}

void PLink::moveSelected(int by) {
  const int row = selectedRow();
  if (row < 0) {
    Dialogs::current().message(DialogKind::Error, "Error", words_.noneSelected, window());
    return;
  }
  const int to = row + by;
  if (to < 0 || to >= static_cast<int>(names_.size())) return;
  move(row, to);
  showRows(to);
}

void PLink::pairNames() {
  for (std::size_t row = 0; row < keys_.size(); ++row) {
    const auto found = std::find(names_.begin() + static_cast<std::ptrdiff_t>(row), names_.end(), keys_[row]);
    if (found != names_.end()) move(static_cast<int>(found - names_.begin()), static_cast<int>(row));
  }
  showRows(selectedRow());
}

void PLink::showRows(int selected) {
  auto* const links = gadget<TableView>("MaLinks");
  table_->setRows(shown_, keys_, names_);
  links->tableModel().sourceChanged();
  if (selected >= 0) links->selectRow(selected);
  QStringList apart;
  for (int row = 0; row < table_->rows(); ++row)
    if (!table_->problem(row, 1).isEmpty()) apart << table_->text(row, 1);
  gadget<QLabel>("MlWarning")->setText(apart.isEmpty() ? QString() : words_.apart + apart.join(", ") + '.');
}

}  // namespace tarvex
