#include "panels/vels/PVisualSA.h"

#include <QKeySequence>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QScrollBar>
#include <QTabBar>
#include <algorithm>

#include "app/RunController.h"
#include "app/Selection.h"
#include "panels/plots/PCobwebs.h"
#include "panels/plots/PScatter.h"
#include "panels/plots/saveSheet.h"
#include "panels/vels/ResultDesk.h"
#include "panels/vels/RunSheet.h"
#include "panels/vels/SaTable.h"
#include "toolkit/Notebook.h"
#include "toolkit/TableView.h"
#include "toolkit/allow.h"

namespace tarvex {
namespace {

constexpr const char* kAvailableLists[] = {"SlAvailFac", "SlAvailVar"};
enum VisualPage { kSelection, kTable };

}  // namespace

PVisualSA::PVisualSA(ResultDesk& desk, std::shared_ptr<Selection> selection)
    : Panel(desk.display(), "PVisualSA", "VisualSA", "Visual sensitivity analysis", desk.parent()),
      desk_(desk),
      selection_(std::move(selection)),
      table_(selection_->table()),
      slider_(*this, desk, [this](std::int32_t) { pickTime(); }) {
  const ProjectConfiguration& project = desk.controller().project();
  slider_.setVariables(*table_, project.vels.outputNames(project.model));
  addPages();
  fillList("SlAvailFac", true);
  fillList("SlAvailVar", false);
  gadget<TableView>("MaSamples")->setEmptyText("Select columns on the first page.");
  registerCallbacks({{"cobwebs", [this] { cobwebs(); }},
                     {"scatter", [this] { scatter(); }},
                     {"deSelect", [this] { deSelect(); }},
                     {"saveTable", [this] { saveTable(); }},
                     {"previous", [this] { turnColumns(-1); }},
                     {"left", [this] { left(); }},
                     {"selectAvailable", [this] { refresh(); }},
                     {"selectSelected", [this] { refresh(); }},
                     {"next", [this] { turnColumns(1); }},
                     {"dismiss", [this] { end(true); }},
                     {"right", [this] { right(); }}});
  bindKey(QKeySequence(Qt::Key_Escape), [this] { end(true); });
  // Not by Enter, which closes.
  for (const char* const name : kAvailableLists)
    connect(gadget<QListWidget>(name), &QListWidget::itemDoubleClicked, this, [this] { right(); });
  connect(gadget<QListWidget>("SlSelected"), &QListWidget::itemDoubleClicked, this, [this] { left(); });
  subscription_ = desk.controller().subscribe([this](Changes) { followController(); });
  refresh();
}

// The page with a file of its own goes before those of the panel's.
void PVisualSA::addPages() {
  auto* const notebook = gadget<Notebook>("NoData");
  QString problem;
  if (!notebook->addPage(display(), "PVisualSAPage1", "Se&lect", problem)) return missing(problem);
  notebook->tabBar()->moveTab(notebook->count() - 1, kSelection);
  notebook->setCurrentIndex(kSelection);
}

void PVisualSA::addItem(QListWidget& list, std::size_t column, bool coloured) {
  const RunColumn& shown = table_->columns[column];
  auto* const item = new QListWidgetItem(QString::fromStdString(shown.label()), &list);
  item->setData(Qt::UserRole, static_cast<qulonglong>(column));
  if (!coloured) return;
  item->setBackground(screenColour(shown.isFactor ? "Pale Green" : "Pink"));
  item->setForeground(Qt::black);  // on either, light and dark
}

void PVisualSA::fillList(const char* name, bool factors) {
  auto* const list = gadget<QListWidget>(name);
  list->clear();
  const std::vector<std::size_t> taken = selected();
  for (std::size_t i = 0; i < table_->columns.size(); ++i)
    if (table_->columns[i].isFactor == factors && std::ranges::find(taken, i) == taken.end()) addItem(*list, i, false);
}

std::vector<std::size_t> PVisualSA::selected() {
  std::vector<std::size_t> columns;
  const auto* const list = gadget<QListWidget>("SlSelected");
  for (int row = 0; row < list->count(); ++row)
    columns.push_back(static_cast<std::size_t>(list->item(row)->data(Qt::UserRole).toULongLong()));
  return columns;
}

std::vector<std::size_t> PVisualSA::picked(const char* name) {
  std::vector<std::size_t> columns;
  const auto* const list = gadget<QListWidget>(name);
  for (int row = 0; row < list->count(); ++row)
    if (list->item(row)->isSelected())
      columns.push_back(static_cast<std::size_t>(list->item(row)->data(Qt::UserRole).toULongLong()));
  return columns;
}

void PVisualSA::right() {
  for (const char* const name : kAvailableLists)
    for (const std::size_t column : picked(name)) addItem(*gadget<QListWidget>("SlSelected"), column, true);
  fillList("SlAvailFac", true);
  fillList("SlAvailVar", false);
  refresh();
}

void PVisualSA::left() {
  auto* const list = gadget<QListWidget>("SlSelected");
  for (int row = list->count() - 1; row >= 0; --row)
    if (list->item(row)->isSelected()) delete list->takeItem(row);
  fillList("SlAvailFac", true);
  fillList("SlAvailVar", false);
  refresh();
}

void PVisualSA::deSelect() {
  for (const char* const name : {"SlAvailFac", "SlAvailVar", "SlSelected"}) gadget<QListWidget>(name)->clearSelection();
  refresh();
}

void PVisualSA::pickTime() {
  const std::vector<std::size_t> columns = slider_.allAtPicked(selected());
  auto* const list = gadget<QListWidget>("SlSelected");
  for (int row = 0; row < list->count(); ++row) {
    const std::size_t column = columns[static_cast<std::size_t>(row)];
    list->item(row)->setText(QString::fromStdString(table_->columns[column].label()));
    list->item(row)->setData(Qt::UserRole, static_cast<qulonglong>(column));
  }
  fillList("SlAvailVar", false);
  refresh();
}

void PVisualSA::refresh() {
  const std::vector<std::size_t> columns = selected();
  slider_.setShown(columns);
  const bool anyAvailable = !picked("SlAvailFac").empty() || !picked("SlAvailVar").empty();
  const auto when = [this](const char* button, bool possible, const char* reason) {
    allow(*gadget<QPushButton>(button), possible ? QString() : QString(reason));
  };
  when("BRight", anyAvailable, "Choose factors or variables on the left.");
  when("BLeft", !picked("SlSelected").empty(), "Choose selected columns on the right.");
  when("BScatter", columns.size() == 2, "A scattergram is of two columns: select two.");
  when("BCobwebs", columns.size() >= 2, "Cobwebs are of two columns at least.");
  when("BSaveTable", !columns.empty(), "Select the columns of the table.");
  when("BPrevious", columns.size() > 1, "All columns are in view.");
  when("BNext", columns.size() > 1, "All columns are in view.");
  if (!columns.empty() || sheet_) {
    sheet_ = std::make_shared<RunSheet>(table_, columns);
    gadget<TableView>("MaSamples")->setSource(sheet_);
  }
}

void PVisualSA::scatter() {
  const std::vector<std::size_t> columns = selected();
  if (columns.size() == 2) desk_.open(std::make_unique<PScatter>(desk_, selection_, columns[0], columns[1]));
}

void PVisualSA::cobwebs() {
  const std::vector<std::size_t> columns = selected();
  if (columns.size() > 1) desk_.open(std::make_unique<PCobwebs>(desk_, selection_, columns));
}

// By as many columns as are in view.
void PVisualSA::turnColumns(int step) {
  auto* const bar = gadget<TableView>("MaSamples")->horizontalScrollBar();
  gadget<Notebook>("NoData")->setCurrentIndex(kTable);
  bar->setValue(bar->value() + step * std::max(1, bar->pageStep()));
}

void PVisualSA::saveTable() {
  if (sheet_ && sheet_->columns() > 0)
    saveSheet(gadget<TableView>("MaSamples")->tableModel(), desk_.controller(), *this);
}

void PVisualSA::followController() {
  if (!desk_.controller().busy() && !desk_.isPresent(*selection_))
    gadget<QLabel>("MlState")->setText("Past: sample or results have changed since.");
}

void openVisualSA(ResultDesk& desk) {
  if (std::shared_ptr<Selection> selection = desk.selection())
    desk.open(std::make_unique<PVisualSA>(desk, std::move(selection)));
}

}  // namespace tarvex
