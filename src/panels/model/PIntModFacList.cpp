#include "panels/model/PIntModFacList.h"

#include <QHeaderView>
#include <QKeySequence>
#include <QLabel>
#include <QLineEdit>
#include <QTimer>

#include "model/ModelUses.h"
#include "panels/model/InputTable.h"
#include "panels/model/PnewFactorName.h"
#include "toolkit/Dialogs.h"
#include "toolkit/TableView.h"
#include "toolkit/allow.h"

namespace tarvex {
namespace {

QString usesOf(const InternalModel& model, int row) {
  const std::string& name = model.variables()[static_cast<std::size_t>(row)].name;
  const std::vector<std::string> users = equationsUsing(model, name);
  return users.empty() ? QString() : QString::fromStdString(name + " is used by " + listed(users) + '.');
}

}  // namespace

PIntModFacList::PIntModFacList(const Display& display, const InternalModel& model, QWidget* parent)
    : Panel(display, "PIntModFacList", "PIntModFacList", "Inputs of the model", parent),
      editing_(std::make_unique<ModelEditing>(model, [this] { refresh(); })) {
  auto* const view = gadget<TableView>("MaIntModFactors");
  view->setEmptyText("The model has no inputs yet. Type a name below.");
  table_ = std::make_shared<InputTable>(
      InputTable::Changes{[this](int row, const QString& name) { return rename(row, name); },
                          [this](int from, int to) { return move(from, to); }});
  view->setEditable(table_);
  view->setEditTriggers(QAbstractItemView::EditKeyPressed | QAbstractItemView::AnyKeyPressed);
  view->setSelectionBehavior(QAbstractItemView::SelectRows);
  view->horizontalHeader()->setStretchLastSection(true);
  connect(view, &TableView::refused, this, [this](const QString& why) {
    if (!why.isEmpty()) say(why);
  });
  registerCallbacks({{"addFactor", [this] { addFactor(); }},
                     {"cancel", [this] { cancel(); }},
                     {"moveDown", [this] { moveBy(1); }},
                     {"moveUp", [this] { moveBy(-1); }},
                     {"modify", [this] { modify(); }},
                     {"textEdit", [this] { addFactor(); }},
                     {"delAll", [this] { delAll(); }},
                     {"deleteFac", [this] { deleteFac(); }},
                     {"ok", [this] { end(true); }}});
  bindKey(QKeySequence(Qt::Key_Escape), [this] { cancel(); });
  bindKey(QKeySequence::Undo, [this] { undo(true); });
  bindKey(QKeySequence::Redo, [this] { undo(false); });
  refresh();
  gadget<QLineEdit>("TeNewFactor")->setFocus();
}

PIntModFacList::~PIntModFacList() = default;

void PIntModFacList::say(const QString& text) {
  gadget<QLabel>("MlMessage")->setText(text);
}

bool PIntModFacList::done(bool success, const QString& problem) {
  if (!success) Dialogs::current().message(DialogKind::Error, "Error", problem, window());
  return success;
}

int PIntModFacList::selectedRow() {
  auto* const view = gadget<TableView>("MaIntModFactors");
  const QModelIndexList rows = view->selectionModel()->selectedRows();
  return rows.isEmpty() ? -1 : view->tableModel().sourceRow(rows.constFirst().row());
}

int PIntModFacList::wantSelection() {
  const int row = selectedRow();
  static_cast<void>(done(row >= 0, "No Factor selected"));  // it tells
  return row;
}

void PIntModFacList::select(int row) {
  auto* const view = gadget<TableView>("MaIntModFactors");
  for (int at = 0; at < view->tableModel().rowCount(); ++at)
    if (view->tableModel().sourceRow(at) == row) view->setCurrentIndex(view->tableModel().index(at, 0));
}

void PIntModFacList::refresh() {
  table_->setModel(model());
  if (inCell_) return QTimer::singleShot(0, this, [this] { refresh(); });  // the cell's editor goes first
  const int row = selectedRow();
  gadget<TableView>("MaIntModFactors")->tableModel().sourceChanged();
  select(std::min(row, table_->rows() - 1));
  const QString none = table_->rows() > 0 ? QString() : QString("The model has no inputs yet.");
  for (const char* const name : {"BModify", "BDelete", "BDelAll", "BUp", "BDown"}) allow(*gadget<QObject>(name), none);
}

void PIntModFacList::addFactor() {
  auto* const field = gadget<QLineEdit>("TeNewFactor");
  const std::string name = field->text().trimmed().toStdString();
  field->setFocus();
  if (!done(!name.empty(), "New Factor text field empty")) return;
  QString problem;
  const bool added = editing_->change(
      "Add " + QString::fromStdString(name), [&](InternalModel& model) { return model.addVariable(name); }, problem);
  if (!done(added, problem)) return;
  field->clear();
  select(table_->rows() - 1);
}

QString PIntModFacList::rename(int row, const QString& name) {
  const std::string old = model().variables()[static_cast<std::size_t>(row)].name;
  const std::string fresh = name.trimmed().toStdString();
  if (fresh == old) return {};
  QString problem;
  inCell_ = true;
  const bool renamed = editing_->change(
      "Rename " + QString::fromStdString(old), [&](InternalModel& model) { return model.renameVariable(row, fresh); },
      problem);
  inCell_ = false;
  if (!renamed) return problem;
  const std::vector<std::string> left = equationsUsing(model(), old);
  if (!left.empty()) say(QString::fromStdString(old + " still stands in " + listed(left) + ", and reads as 0 there."));
  return {};
}

void PIntModFacList::modify() {
  const int row = wantSelection();
  if (row < 0) return;
  PnewFactorName panel(
      display(), QString::fromStdString(model().variables()[static_cast<std::size_t>(row)].name), usesOf(model(), row),
      [&](const QString& name) { return rename(row, name); }, window());
  panel.centre();
  if (panel.runModal() && panel.accepted()) select(row);
}

void PIntModFacList::deleteFac() {
  const int row = wantSelection();
  if (row < 0) return;
  const QString uses = usesOf(model(), row);
  const QString more = uses.isEmpty() ? uses : '\n' + uses;
  if (!Dialogs::current().question("Delete", "Do you really want to delete the selected factor" + more, "^Yes", "^No",
                                   window()))
    return;
  QString problem;
  const bool removed = editing_->change(
      "Delete " + table_->text(row, 0), [row](InternalModel& model) { return model.removeVariable(row); }, problem);
  static_cast<void>(done(removed, problem + more));  // it tells
}

// From the first on, up to one that is in use; those before it stay deleted.
void PIntModFacList::delAll() {
  if (!Dialogs::current().question("Delete", "Do you really want to delete all factors", "^Yes", "^No", window()))
    return;
  InternalModel left = model();
  while (left.numVariables() > 0 && left.removeVariable(0)) continue;
  const QString problem = refusalOf(left);
  const int kept = left.numVariables();
  if (kept < model().numVariables()) editing_->take("Delete all", std::move(left));
  if (kept > 0) static_cast<void>(done(false, problem + '\n' + usesOf(model(), 0)));  // it tells
}

bool PIntModFacList::move(int from, int to) {
  QString problem;
  const bool moved = editing_->change(
      "Move " + table_->text(from, 0),
      [from, to](InternalModel& model) {
        model.moveVariable(from, to);
        return true;
      },
      problem);
  if (moved) select(to);
  return moved;
}

void PIntModFacList::moveBy(int by) {
  const int row = wantSelection();
  if (row < 0 || row + by < 0 || row + by >= table_->rows()) return;
  static_cast<void>(move(row, row + by));  // both are rows
}

void PIntModFacList::undo(bool back) {
  const QString name = back ? editing_->undo().undoName() : editing_->undo().redoName();
  if (back ? editing_->undo().undo() : editing_->undo().redo()) say((back ? "Undone: " : "Done again: ") + name);
}

bool PIntModFacList::leave() {
  return !changed() || Dialogs::current().question("Warning: model edited",
                                                   "The model has been edited.\nDo you want to lose changes?",
                                                   "^Proceed", "^Cancel", window());
}

void PIntModFacList::cancel() {
  if (leave()) end(false);
}

bool PIntModFacList::closing() {
  return leave() && Panel::closing();
}

}  // namespace tarvex
