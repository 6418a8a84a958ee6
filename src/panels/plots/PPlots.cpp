#include "panels/plots/PPlots.h"

#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QScrollBar>
#include <algorithm>

#include "app/RunController.h"
#include "panels/plots/PCobwebs.h"
#include "panels/plots/PHistogram.h"
#include "panels/plots/PScatter.h"
#include "panels/plots/PSingleFactor.h"
#include "panels/plots/figurePanels.h"
#include "panels/plots/saveSheet.h"
#include "panels/vels/ResultDesk.h"
#include "plots/columnCorrelations.h"
#include "plots/runPlots.h"
#include "toolkit/Notebook.h"
#include "toolkit/TableView.h"
#include "toolkit/allow.h"

namespace tarvex {
PPlots::PPlots(ResultDesk& desk, std::shared_ptr<Selection> selection)
    : RunPanel(desk, std::move(selection), "PPlots", "Plots", "Plots") {
  addPages();
  listColumns();
  runsView().setEmptyText("No run is kept: choose All runs.");
  start({{"next", [this] { turnColumns(true); }},
         {"previous", [this] { turnColumns(false); }},
         {"selectAvailable", [this] { refreshLists(); }},
         {"selectSelected", [this] { refreshLists(); }},
         {"right", [this] { move("SlAvailable", "SlSelected"); }},
         {"left", [this] { move("SlSelected", "SlAvailable"); }},
         {"scatter", [this] { scatter(); }},
         {"cobwebs", [this] { cobwebs(); }},
         {"histogram", [this] { histogram(); }},
         {"map", [this] { map(); }},
         {"checkValue", [this] { checkValue(); }},
         {"correlationKind",
          [this] {
            matrix_.reset();
            showPage();
          }},
         {"pair", [this] { openPair(); }},
         {"notation", [this] { changeNotation(); }},
         {"saveTable", [this] { saveSheet(runsView().tableModel(), this->desk().controller(), *this); }},
         {"saveCorrTable",
          [this] { saveSheet(gadget<TableView>("MaCorrelations")->tableModel(), this->desk().controller(), *this); }},
         {"pageChanged", [this] { showPage(); }},
         {"dismiss", [this] { hide(); }}});
  connect(runsView().horizontalScrollBar(), &QScrollBar::valueChanged, this, [this] { refreshColumns(); });
  connect(runsView().horizontalScrollBar(), &QScrollBar::rangeChanged, this, [this] { refreshColumns(); });
  refreshLists();
  refreshColumns();
}

PPlots::~PPlots() = default;

void PPlots::addPages() {
  const struct {
    const char* file;
    const char* label;
  } pages[] = {{"PPlotsPage1", "&Variables"}, {"PPlotsPage2", "&Runs"}, {"PPlotsPage3", "Correlat&ions"}};
  QString problem;
  for (const auto& [file, label] : pages)
    if (!gadget<Notebook>("NoPlots")->addPage(display(), file, label, problem)) missing(problem);
}

PPlots::Page PPlots::page() {
  return static_cast<Page>(std::max(0, gadget<Notebook>("NoPlots")->currentIndex()));
}

void PPlots::showPage() {
  if (page() == kRuns) fillRuns();
  if (page() == kCorrelations && (matrix_ || correlate())) showCorrelations();
}

void PPlots::showSelection() {
  listColumns();
  matrix_.reset();
  if (page() == kRuns) fillRuns();
  // A drag in another window would compute them at each step.
  if (page() == kCorrelations)
    gadget<QLabel>("MlPair")->setText("Other runs are kept now: turn the page to see theirs.");
}

// The variables.

// All outputs are shown at first, and the factors as far as a picture has room for them.
void PPlots::listColumns() {
  constexpr std::size_t kMostAtFirst = 12;
  const std::vector<RunColumn>& columns = table().columns;
  const auto outputs = static_cast<std::size_t>(
      std::ranges::count_if(columns, [](const RunColumn& column) { return !column.isFactor; }));
  std::size_t factorsLeft = kMostAtFirst > outputs ? kMostAtFirst - outputs : 0;
  std::size_t shown = 0;
  for (; listed_ < columns.size(); ++listed_) {
    const bool isFactor = columns[listed_].isFactor;
    const bool show = isFactor ? factorsLeft > 0 : shown < kMostAtFirst;
    if (show && isFactor) --factorsLeft;
    if (show) ++shown;
    auto* const item = new QListWidgetItem(QString::fromStdString(columns[listed_].label()),
                                           gadget<QListWidget>(show ? "SlSelected" : "SlAvailable"));
    item->setData(Qt::UserRole, static_cast<int>(listed_));
  }
}

void PPlots::move(const char* from, const char* to) {
  auto* const source = gadget<QListWidget>(from);
  for (int row = 0; row < source->count();) {
    if (source->item(row)->isSelected())
      gadget<QListWidget>(to)->addItem(source->takeItem(row));
    else
      ++row;
  }
  refreshLists();
}

std::vector<std::size_t> PPlots::chosen() {
  const auto* const list = gadget<QListWidget>("SlSelected");
  std::vector<std::size_t> columns;
  for (int row = 0; row < list->count(); ++row)
    columns.push_back(static_cast<std::size_t>(list->item(row)->data(Qt::UserRole).toInt()));
  return columns;
}

void PPlots::refreshLists() {
  const auto follow = [this](const char* button, const char* list) {
    const bool isSelected = !gadget<QListWidget>(list)->selectedItems().isEmpty();
    allow(*gadget<QPushButton>(button), isSelected ? QString() : "Select what is to be moved.");
  };
  follow("BRight", "SlAvailable");
  follow("BLeft", "SlSelected");
  const std::size_t count = chosen().size();
  const std::size_t most = mostMatrixColumns(table().runs);
  allow(*gadget<QPushButton>("BScatter"), count < 2      ? "Two are needed under Shown."
                                          : count > most ? QString("At most %1 of so many runs have room.").arg(most)
                                                         : QString());
  const QString none = count == 0 ? "Nothing is under Shown." : QString();
  allow(*gadget<QPushButton>("BCobwebs"), none);
  allow(*gadget<QPushButton>("BHistogram"), none);
}

void PPlots::scatter() {
  const std::vector<std::size_t> columns = chosen();
  if (columns.size() == 2)
    desk().open(std::make_unique<PScatter>(desk(), shared(), columns[0], columns[1]));
  else if (columns.size() > 2 && columns.size() <= mostMatrixColumns(table().runs))
    openScatterMatrix(desk(), shared(), columns);
}

void PPlots::cobwebs() {
  const std::vector<std::size_t> columns = chosen();
  if (!columns.empty()) desk().open(std::make_unique<PCobwebs>(desk(), shared(), columns));
}

void PPlots::histogram() {
  const std::vector<std::size_t> columns = chosen();
  if (columns.size() == 1)
    desk().open(std::make_unique<PSingleFactor>(desk(), shared(), columns.front()));
  else if (columns.size() > 1)
    desk().open(std::make_unique<PHistogram>(desk(), shared(), columns));
}

// The runs.

TableView& PPlots::runsView() {
  return *gadget<TableView>("MaSamples");
}

void PPlots::fillRuns() {
  if (shownRuns_ != selection().table()) {
    shownRuns_ = selection().table();
    runsView().setSource(std::make_shared<RunsTable>(shownRuns_, notation_));
  }
  if (selection().keptCount() == table().runs)
    runsView().tableModel().showAllRows();
  else
    runsView().tableModel().setRows(selection().runs());
}

void PPlots::turnColumns(bool onwards) {
  runsView().horizontalScrollBar()->triggerAction(onwards ? QAbstractSlider::SliderPageStepAdd
                                                          : QAbstractSlider::SliderPageStepSub);
}

void PPlots::refreshColumns() {
  const auto* const bar = runsView().horizontalScrollBar();
  allow(*gadget<QPushButton>("BPrevious"), bar->value() > bar->minimum() ? QString() : "There are no columns before.");
  allow(*gadget<QPushButton>("BNext"), bar->value() < bar->maximum() ? QString() : "There are no columns behind.");
}

void PPlots::changeNotation() {
  notation_ = notation_ == NumberNotation::General ? NumberNotation::Decimals : NumberNotation::General;
  shownRuns_.reset();
  showPage();
}

}  // namespace tarvex
