#include "panels/prep/PInputFactors.h"

#include <QAction>
#include <QComboBox>
#include <QHeaderView>
#include <QKeySequence>
#include <QLabel>
#include <QLineEdit>
#include <QMenuBar>
#include <QTimer>
#include <algorithm>

#include "factors/FactorProblems.h"
#include "factors/makeFactor.h"
#include "panels/prep/FactorEditing.h"
#include "panels/prep/FactorTable.h"
#include "panels/prep/PGraphics.h"
#include "panels/prep/PTruncation.h"
#include "panels/prep/editFactor.h"
#include "panels/prep/factorGraph.h"
#include "panels/prep/openPanels.h"
#include "toolkit/ChartView.h"
#include "toolkit/Dialogs.h"
#include "toolkit/TableView.h"

namespace tarvex {

PInputFactors::PInputFactors(const Display& display, std::shared_ptr<const FactorList> factors, bool demo,
                             QWidget* parent)
    : Panel(display, "PInputFactors", "InputFactors",
            demo ? "Input factors selection (Demo mode)" : "Input Factors Selection", parent),
      demo_(demo),
      editing_(std::make_unique<FactorEditing>(
          std::move(factors), FactorEditing::Asks{[this] { refresh(); }, [this] { return giveUpStein(); }})) {
  auto* const view = gadget<TableView>("MaFactors");
  view->setEmptyText("No factor fits the search.");
  view->horizontalHeader()->setStretchLastSection(true);
  table_ = std::make_shared<FactorTable>(
      editing_->shared(),
      demo ? FactorTable::Changes{}
           : FactorTable::Changes{[this](int row, int column, const QString& text) { return edit(row, column, text); },
                                  [this](int row, int column, const std::vector<QStringList>& block) {
                                    return paste(row, column, block);
                                  },
                                  [this](int from, int to) {
                                    QString why = moveRow(from, to);
                                    if (!why.isEmpty()) say(why);
                                    return why;
                                  }});
  view->setEditable(table_);
  // A double click opens the factor's panel.
  view->setEditTriggers(QAbstractItemView::EditKeyPressed | QAbstractItemView::AnyKeyPressed);
  connect(view, &TableView::refused, this, [this](const QString& why) {
    if (!why.isEmpty()) say(why);
  });
  gadget<ChartView>("boundGraph")->setEmptyText("The density of the selected factor appears here.");
  registerCallbacks({{"deletion", [this] { deletion(); }},
                     {"modify", [this] { modify(); }},
                     {"selectItem", [this] { selectItem(); }},
                     {"ok", [this] { ok(); }},
                     {"truncation", [this] { truncation(); }},
                     {"cancel", [this] { cancel(); }},
                     {"correlate", [this] { correlate(); }},
                     {"open", [this] { open(); }},
                     {"impStein", [this] { impStein(); }},
                     {"doppioclick", [this] { modify(); }},
                     {"add", [this] { add(); }},
                     {"newFactors", [this] { newFactors(); }},
                     {"save", [this] { save(); }},
                     {"visualize", [this] { visualize(); }},
                     {"search", [this] { search(); }},
                     {"searched", [this] { gadget<TableView>("MaFactors")->setFocus(); }},
                     {"undo", [this] { undo(); }},
                     {"redo", [this] { redo(); }},
                     {"moveUp", [this] { moveBy(-1); }},
                     {"moveDown", [this] { moveBy(1); }}});
  gadget<QLineEdit>("TSearch")->setProperty("doubleCallback", "searched");  // Enter leads to what was found
  bindKey(QKeySequence(Qt::Key_Escape), [this] { escape(); });
  refresh();
  if (list().factorCount() > 0) select({0});
  view->setFocus();
}

PInputFactors::~PInputFactors() = default;

const FactorList& PInputFactors::list() const {
  return editing_->list();
}

std::shared_ptr<const FactorList> PInputFactors::factors() const {
  return editing_->shared();
}

void PInputFactors::say(const QString& text) {
  gadget<QLabel>("MlMessage")->setText(text.trimmed());
}

bool PInputFactors::done(bool success, const QString& title, const QString& problem) {
  if (!success && !problem.isEmpty()) Dialogs::current().message(DialogKind::Error, title, problem, window());
  return success;
}

// Single factors.

void PInputFactors::add() {
  // A menu item says of which kind.
  if (const QVariant kind = sender() != nullptr ? sender()->property("kind") : QVariant(); kind.isValid())
    newKind_ = kind.toString().toStdString();
  const std::unique_ptr<Factor> fresh = makeFactor(newKind_);
  fresh->name = newFactorName(list(), newKind_);
  std::unique_ptr<Factor> factor = editFactor(display(), *fresh, {&list(), -1, demo_}, window());
  if (!factor) return;
  newKind_ = factor->typeName;
  QString problem;
  if (!done(editing_->add(std::move(factor), problem), "Error", problem)) return;
  select({list().factorCount() - 1});
  gadget<TableView>("MaFactors")->setFocus();
}

void PInputFactors::modify() {
  const std::vector<int> places = wantSelection("Error");
  if (places.empty()) return;
  const int place = selectedPlace();
  std::unique_ptr<Factor> factor = editFactor(display(), list().factor(place), {&list(), place, demo_}, window());
  if (!factor) return;
  QString problem;
  const bool inUse = list().indexOf(factor->name) != -1 && list().indexOf(factor->name) != place;
  if (done(editing_->replace(place, std::move(factor), problem), inUse ? "Error: wrong name" : "Error", problem))
    select({place});
}

void PInputFactors::deletion() {
  constexpr const char* kTitle = "Error deleting factor";
  const std::vector<int> places = wantSelection("Error");
  if (places.empty()) return;
  for (const int place : places)
    if (list().isCorrelated(place)) {
      static_cast<void>(
          done(false, kTitle, "    Can't delete correlated factor.\n  You must erase it from correlation list."));
      return select({place});
    }
  const QString more = places.size() > 1 ? QString("\n%1 factors are selected.").arg(places.size()) : QString();
  if (!Dialogs::current().question("Delete", "Really delete this factor?" + more, "^Yes", "^No", window())) return;
  QString problem;
  if (done(editing_->remove(places, problem), kTitle, problem))
    select({std::min(places.front(), list().factorCount() - 1)});
}

void PInputFactors::visualize() {
  const std::vector<int> places = wantSelection("Error");
  if (places.empty()) return;
  PGraphics panel(display(), list(), selectedPlace(), window());
  panel.centre();
  static_cast<void>(panel.runModal());  // where its file is missing, that has been said
}

// The list as a whole.

void PInputFactors::undo() {
  const QString name = editing_->undo().undoName();
  if (!editing_->undo().undo()) return;
  refreshGadgets();  // the names have changed once more
  say("Undone: " + name);
}

void PInputFactors::redo() {
  const QString name = editing_->undo().redoName();
  if (!editing_->undo().redo()) return;
  refreshGadgets();
  say("Done again: " + name);
}

void PInputFactors::ok() {
  end(true);
}

bool PInputFactors::leave() {
  if (editing_->modified() &&
      Dialogs::current().question("Exit panel", "  Save changes before exiting ?", "^Yes", "^No", window()) &&
      !saveList())
    return false;
  editing_->restoreDefaults();
  return true;
}

// Takes the search back first.
void PInputFactors::escape() {
  auto* const letters = gadget<QLineEdit>("TSearch");
  if (letters->text().isEmpty()) return cancel();
  letters->clear();
  search();
}

void PInputFactors::cancel() {
  if (leave()) end(false);
}

bool PInputFactors::closing() {
  return leave() && Panel::closing();
}

// What the gadgets show.

void PInputFactors::refresh() {
  if (inCell_) {  // the cell's editor goes first
    table_->setList(factors());
    QTimer::singleShot(0, this, [this] { refresh(); });
    return;
  }
  const std::vector<int> places = selectedPlaces();
  const int selected = std::min(selectedRow_, list().factorCount() - 1);
  refreshTable();
  select(places.size() > 1 ? places : std::vector<int>{selected});
  const std::vector<FactorProblem> problems = factorProblems(list());
  const QString more = problems.size() > 1 ? QString(" (and %1 more)").arg(problems.size() - 1) : QString();
  if (list().factorCount() == 0 && !demo_)
    say("Add a factor, type a name into the first row, or paste rows of a spreadsheet.");
  else
    say(problems.empty() ? QString() : QString::fromStdString(problems.front().text) + more);
}

// Told of a selection more than once; to draw a density takes milliseconds.
void PInputFactors::refreshFactor() {
  if (shownList_ == factors() && shownRow_ == selectedRow_) return;
  shownList_ = factors();
  shownRow_ = selectedRow_;
  auto* const chart = gadget<ChartView>("boundGraph");
  if (selectedRow_ < 0) {
    gadget<QLabel>("LaName")->clear();
    gadget<QLabel>("MlSummary")->clear();
    return chart->show(Figure());
  }
  const Factor& factor = list().factor(selectedRow_);
  gadget<QLabel>("LaName")->setText(QString::fromStdString(factor.name + ": " + factor.typeName));
  const FactorPicture picture = pictureOf(factor);
  gadget<QLabel>("MlSummary")->setText(picture.sampled);
  chart->show(picture.figure, true);
}

}  // namespace tarvex
