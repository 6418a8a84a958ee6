#include "panels/model/PIntModel.h"

#include <QComboBox>
#include <QFontDatabase>
#include <QHeaderView>
#include <QKeySequence>
#include <QLabel>
#include <QLineEdit>
#include <QSpinBox>
#include <QTimer>
#include <algorithm>

#include "model/ModelUses.h"
#include "panels/model/EquationTable.h"
#include "panels/model/ModelEditing.h"
#include "panels/model/PIntModFacList.h"
#include "panels/model/PNewExpression.h"
#include "toolkit/Dialogs.h"
#include "toolkit/TableView.h"

namespace tarvex {
namespace {

constexpr const char* kNoRow = "No row selected";

}  // namespace

PIntModel::PIntModel(const Display& display, const InternalModel& model, ModelContext context, QWidget* parent)
    : Panel(display, "PIntModel", "PIntModel", "Internal Model", parent),
      context_(std::move(context)),
      editing_(std::make_unique<ModelEditing>(model, [this] { refresh(); })) {
  auto* const view = gadget<TableView>("MaExpress");
  view->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
  view->setEmptyText("A model is a list of equations of its inputs. Add the first one.");
  table_ = std::make_shared<EquationTable>(
      EquationTable::Changes{[this](int row, int column, const QString& text) { return edit(row, column, text); },
                             [this](const std::vector<QStringList>& rows) { return paste(rows); },
                             [this](int from, int to) { return move(from, to); }});
  view->setEditable(table_);
  view->setEditTriggers(QAbstractItemView::EditKeyPressed | QAbstractItemView::AnyKeyPressed);
  view->setSelectionBehavior(QAbstractItemView::SelectRows);
  connect(view, &TableView::refused, this, [this](const QString& why) {
    if (!why.isEmpty()) say(why);
  });
  gadget<QSpinBox>("NTrialRow")->setRange(1, std::max(context_.rows, 1));
  gadget<QComboBox>("OTrial")->addItems({"Row of the sample", "Means"});
  gadget<QComboBox>("OTrial")->setCurrentIndex(context_.rows > 0 ? 0 : 1);
  registerCallbacks({{"exit", [this] { exit(); }},
                     {"textModified", [this] { textModified(); }},
                     {"open", [this] { open(); }},
                     {"saveAs", [this] { saveAs(); }},
                     {"doubleClick", [this] { modifyExpression(); }},
                     {"save", [this] { save(); }},
                     {"newModel", [this] { newModel(); }},
                     {"modifyExpression", [this] { modifyExpression(); }},
                     {"addExpression", [this] { addExpression(); }},
                     {"deleteExpression", [this] { deleteExpression(); }},
                     {"modifyFactors", [this] { modifyFactors(); }},
                     {"click", [this] { click(); }},
                     {"ok", [this] { ok(); }},
                     {"trialRow", [this] { trialRow(); }},
                     {"undo", [this] { undo(); }},
                     {"redo", [this] { redo(); }},
                     {"moveUp", [this] { moveBy(-1); }},
                     {"moveDown", [this] { moveBy(1); }}});
  bindKey(QKeySequence(Qt::Key_Escape), [this] { exit(); });
  trialRow();
  view->resizeColumnsToContents();
  view->horizontalHeader()->setSectionResizeMode(EquationTable::kText, QHeaderView::Stretch);
  if (table_->rows() > 0) select(0);
  view->setFocus();
}

PIntModel::~PIntModel() = default;

const InternalModel& PIntModel::model() const {
  return editing_->model();
}

std::vector<double> PIntModel::inputs() const {
  return trial_.values.empty() ? std::vector<double>() : inputsOf(model(), trial_);
}

void PIntModel::say(const QString& text) {
  gadget<QLabel>("MlMessage")->setText(text);
}

bool PIntModel::done(bool success, const QString& problem) {
  if (!success) Dialogs::current().message(DialogKind::Error, "Error", problem, window());
  return success;
}

void PIntModel::warn(const std::string& text) {
  if (!text.empty()) Dialogs::current().message(DialogKind::Warning, "Warning", QString::fromStdString(text), window());
}

// Selection.

int PIntModel::selectedRow() {
  auto* const view = gadget<TableView>("MaExpress");
  const QModelIndexList rows = view->selectionModel()->selectedRows();
  return rows.isEmpty() ? -1 : view->tableModel().sourceRow(rows.constFirst().row());
}

void PIntModel::select(int row) {
  auto* const view = gadget<TableView>("MaExpress");
  for (int at = 0; at < view->tableModel().rowCount(); ++at)
    if (view->tableModel().sourceRow(at) == row) view->setCurrentIndex(view->tableModel().index(at, 0));
  click();
}

// What the selected equation uses and serves.
void PIntModel::click() {
  selectedRow_ = selectedRow();
  const auto& equations = model().expressions();
  if (selectedRow_ < 0 || static_cast<std::size_t>(selectedRow_) >= equations.size()) return say({});
  const std::string& name = equations[static_cast<std::size_t>(selectedRow_)].name;
  const std::vector<std::string> users = equationsUsing(model(), name);
  const QString wrong = table_->problem(selectedRow_, EquationTable::kText);
  say(QString::fromStdString(name +
                             (users.empty() ? " is used by no equation." : " is used by " + listed(users) + '.')) +
      (wrong.isEmpty() ? QString() : '\n' + QString::fromStdString(name) + ": " + wrong));
}

// Equations.

bool PIntModel::editEquation(std::size_t position) {
  const bool isNew = position >= model().expressions().size();
  const auto accept = [&](const EquationDraft& draft, QString& problem) {
    const auto place = static_cast<std::int32_t>(position);
    return editing_->change((isNew ? "Add " : "Modify ") + QString::fromStdString(draft.name),
                            [&](InternalModel& model) {
                              return isNew ? model.addExpression(place, draft.name, draft.text, draft.type)
                                           : model.modifyExpression(place, draft.name, draft.text, draft.type);
                            },
                            problem);
  };
  PNewExpression panel(display(), {model(), position, inputs(), trial_.title, accept}, window());
  panel.centre();
  return panel.runModal() && panel.accepted();
}

void PIntModel::addExpression() {
  const std::size_t position = model().expressions().size();
  if (editEquation(position)) select(static_cast<int>(position));
  gadget<TableView>("MaExpress")->setFocus();
}

void PIntModel::modifyExpression() {
  const int row = selectedRow();
  if (!done(row >= 0, kNoRow) || !done(row < model().numExpressions(), "No equation to modify")) return;
  if (editEquation(static_cast<std::size_t>(row))) select(row);
}

void PIntModel::deleteExpression() {
  const int row = selectedRow();
  if (!done(row >= 0, kNoRow) || !done(row < model().numExpressions(), "No expression to delete")) return;
  const std::string name = model().expressions()[static_cast<std::size_t>(row)].name;
  const std::vector<std::string> users = equationsUsing(model(), name);
  const std::string more = users.empty() ? "" : '\n' + name + " is used by " + listed(users) + '.';
  if (!Dialogs::current().question("Delete expression",
                                   "Do you really want to delete the expression?" + QString::fromStdString(more),
                                   "^Proceed", "^Cancel", window()))
    return;
  QString problem;
  const bool removed = editing_->change(
      "Delete " + QString::fromStdString(name), [row](InternalModel& model) { return model.removeExpression(row); },
      problem);
  if (done(removed, problem + QString::fromStdString(more))) select(std::min(row, model().numExpressions() - 1));
}

void PIntModel::modifyFactors() {
  PIntModFacList panel(display(), model(), window());
  panel.centre();
  if (panel.runModal() && panel.accepted() && panel.changed()) editing_->take("Change inputs", panel.model());
}

// The grid.

QString PIntModel::edit(int row, int column, const QString& text) {
  const ModelExpression& old = model().expressions()[static_cast<std::size_t>(row)];
  EquationDraft draft{old.name, old.text, old.type};
  if (column == EquationTable::kName) draft.name = text.trimmed().toStdString();
  if (column == EquationTable::kText) draft.text = text.toStdString();
  if (column == EquationTable::kKind) {
    const QString word = text.trimmed().toLower();
    if (word != kindWord(true) && word != kindWord(false)) return "An equation is output or internal.";
    draft.type = word == kindWord(true) ? 1 : 0;
  }
  if (draft.text.empty()) return "Expression field empty";
  QString problem;
  inCell_ = true;
  const bool changed = editing_->change(
      "Modify " + QString::fromStdString(draft.name),
      [&](InternalModel& model) { return model.modifyExpression(row, draft.name, draft.text, draft.type); }, problem);
  inCell_ = false;
  return changed ? QString() : problem;
}

// Names with their equations: those that are there are changed, others added.
QString PIntModel::paste(const std::vector<QStringList>& rows) {
  QString problem;
  const auto take = [&](InternalModel& model) {
    return std::ranges::all_of(rows, [&](const QStringList& row) {
      const std::string name = row.value(0).trimmed().toStdString();
      const std::string text = row.value(1).trimmed().toStdString();
      const auto& equations = model.expressions();
      const auto found = std::ranges::find(equations, name, &ModelExpression::name);
      const auto place = static_cast<std::int32_t>(found - equations.begin());
      const std::int16_t type = row.value(2).trimmed() == kindWord(false) ? 0 : 1;
      return found == equations.end() ? model.addExpression(place, name, text, type)
                                      : model.modifyExpression(place, name, text, found->type);
    });
  };
  if (!editing_->change("Paste equations", take, problem)) return problem;
  select(model().numExpressions() - 1);
  return {};
}

QString PIntModel::move(int from, int to) {
  QString problem;
  const QString name = from < table_->rows() ? table_->text(from, EquationTable::kName) : QString();
  const bool moved = editing_->change(
      "Move " + name, [from, to](InternalModel& model) { return model.moveExpression(from, to); }, problem);
  if (moved) {
    select(to);
    return {};
  }
  say(problem);
  return problem;
}

void PIntModel::moveBy(int by) {
  const int row = selectedRow();
  if (!done(row >= 0, kNoRow)) return;
  if (row + by >= 0 && row + by < table_->rows()) static_cast<void>(move(row, row + by));  // it tells
}

void PIntModel::undo() {
  const QString name = editing_->undo().undoName();
  if (editing_->undo().undo()) say("Undone: " + name);
}

void PIntModel::redo() {
  const QString name = editing_->undo().redoName();
  if (editing_->undo().redo()) say("Done again: " + name);
}

// The run that the equations are tried in.
void PIntModel::trialRow() {
  const bool isRow = gadget<QComboBox>("OTrial")->currentIndex() == 0;
  const int row = isRow ? gadget<QSpinBox>("NTrialRow")->value() - 1 : TrialRow::kMeans;
  std::string problem = "There are no factors to try it with.";
  if (!context_.trialRow || !context_.trialRow(row, trial_, problem)) {
    trial_ = {};
    refresh();
    return say(QString::fromStdString(problem));
  }
  refresh();
}

void PIntModel::refresh() {
  if (inCell_) {  // the cell's editor goes first
    table_->setModel(model(), {}, {});
    QTimer::singleShot(0, this, [this] { refresh(); });
    return;
  }
  const int selected = std::min(selectedRow_, model().numExpressions() - 1);
  refreshTable();
  refreshGadgets();
  select(selected);
}

void PIntModel::refreshTable() {
  std::vector<EquationValue> values;
  if (!trial_.values.empty()) values = evaluateEquations(model(), inputs());
  table_->setModel(model(), std::move(values), trial_.title);
  gadget<TableView>("MaExpress")->tableModel().sourceChanged();
}

}  // namespace tarvex
