#include "panels/prep/PCorrelation.h"

#include <QAction>
#include <QComboBox>
#include <QKeySequence>
#include <QLabel>
#include <QPushButton>
#include <QScrollBar>

#include "panels/prep/CorrelationTable.h"
#include "panels/prep/SteinTable.h"
#include "toolkit/ChartView.h"
#include "toolkit/Dialogs.h"
#include "toolkit/Notebook.h"
#include "toolkit/TableView.h"
#include "toolkit/allow.h"

namespace tarvex {
namespace {

constexpr const char* kForReading = "A demonstration case keeps its correlations.";

// In the order of their numbers.
constexpr const char* kMethods[] = {"Dependence tree", "Rank correlation matrix", "No correlation", "Stein sample"};

}  // namespace

PCorrelation::PCorrelation(const Display& display, const FactorList& factors, bool demo, QWidget* parent)
    : Panel(display, "PCorrelation", "Correlation", "Correlate factors", parent),
      demo_(demo),
      draft_(factors),
      opened_(factors.correlationMode) {
  addPages();
  for (const char* const method : kMethods) gadget<QComboBox>("SeCorrType")->addItem(method);
  prepareTrees();
  fillTables();
  registerCallbacks(
      {{"endDragFacTree", [this] { finishDrag(); }},
       {"steinCorr", [this] { steinCorr(); }},
       {"endDragFacList", [this] { finishDrag(); }},
       {"changeCorrType", [this] { changeCorrType(); }},
       {"duringDragFacList", [this] { duringDrag(); }},
       {"startDragFacList", [this] { say("Drop the factor on its parent, or beside the tree as a root."); }},
       {"next", [this] { turnColumns(true); }},
       {"duringDragFacTree", [this] { duringDrag(); }},
       {"startDragFacTree", [this] { say("Drop the factor on its parent, or on the list."); }},
       {"cancel", [this] { cancel(); }},
       {"checkValue", [this] { checkValue(); }},
       {"plot", [this] { plot(); }},
       {"apply", [this] { apply(); }},
       {"saveCorrTable", [this] { saveCorrTable(); }},
       {"previous", [this] { turnColumns(false); }},
       {"doubleClick", [this] { doubleClick(); }},
       {"takeFactor", [this] { takeFactor(); }},
       {"nearest", [this] { nearest(); }},
       {"choosePair", [this] { pageChanged(); }},
       {"pageChanged", [this] { pageChanged(); }},
       {"clear", [this] { clear(); }},
       {"undo", [this] { takeBack(); }},
       {"redo", [this] { makeAgain(); }}});
  bindKey(QKeySequence(Qt::Key_Escape), [this] { cancel(); });
  showPage(opened_ == kDependenceTree ? kTreePage : opened_ == kSteinSample ? kSteinPage : kMatrixPage);
  refreshTree();
  refresh();
  if (draft_.order() > 1)
    gadget<TableView>("MaCorrelations")->setCurrentIndex(gadget<TableView>("MaCorrelations")->model()->index(0, 1));
}

PCorrelation::~PCorrelation() = default;

void PCorrelation::addPages() {
  const struct {
    const char* file;
    const char* label;
  } pages[] = {{"PCorrelationPage1", "&Tree"},
               {"PCorrelationPage2", "M&atrix"},
               {"PCorrelationPage3", "&Stein"},
               {"PCorrelationPage4", "Previe&w"}};
  QString problem;
  for (const auto& [file, label] : pages)
    if (!gadget<Notebook>("NoCorrelation")->addPage(display(), file, label, problem)) missing(problem);
}

void PCorrelation::fillTables() {
  table_ = std::make_shared<CorrelationTable>(
      draft_, demo_ ? CorrelationTable::Changes{}
                    : CorrelationTable::Changes{
                          [this](int row, int column, const QString& text) { return edit(row, column, text); },
                          [this](int row, int column, const std::vector<QStringList>& block) {
                            return paste(row, column, block);
                          }});
  auto* const matrix = gadget<TableView>("MaCorrelations");
  matrix->setEditable(table_);
  matrix->setEmptyText("No factor of the list has a distribution.");
  connect(matrix, &TableView::refused, this, [this](const QString& why) { refuseCell(why); });
  stein_ = std::make_shared<SteinTable>(draft_);
  auto* const samples = gadget<TableView>("MaSamples");
  samples->setEmptyText("No Stein sample has been imported.");
  connect(samples->horizontalScrollBar(), &QScrollBar::valueChanged, this, [this] { refreshColumns(); });
  connect(samples->horizontalScrollBar(), &QScrollBar::rangeChanged, this, [this] { refreshColumns(); });
  for (const char* const name : {"OFirst", "OSecond"}) gadget<QComboBox>(name)->addItems(draft_.names());
  choosePair(0, 1);
}

int PCorrelation::page() const {
  const auto* const notebook = window()->findChild<QTabWidget*>("NoCorrelation");
  return notebook != nullptr ? notebook->currentIndex() : 0;
}

void PCorrelation::showPage(Page page) {
  gadget<QTabWidget>("NoCorrelation")->setCurrentIndex(page);
}

QString PCorrelation::helpTopic() const {
  return "PCorrelationPage" + QString::number(page() + 1);
}

void PCorrelation::say(const QString& text) {
  gadget<QLabel>("MlMessage")->setText(text);
}

void PCorrelation::tell(const QString& title, const QString& text) {
  Dialogs::current().message(DialogKind::Error, title, text, window());
}

// Steps.

void PCorrelation::set(const CorrelationDraft& draft) {
  draft_ = draft;
  refreshTree();
  refresh();
}

void PCorrelation::enter(const QString& name, const CorrelationDraft& after) {
  const auto setter = [this](const CorrelationDraft& draft) {
    return [this, draft] {
      set(draft);
      return true;
    };
  };
  undo_.push(name, setter(draft_), setter(after));
  ++steps_;
  set(after);
}

void PCorrelation::takeBack() {
  const QString name = undo_.undoName();
  if (!undo_.undo()) return;
  --steps_;
  refreshGadgets();
  say("Undone: " + name);
}

void PCorrelation::makeAgain() {
  const QString name = undo_.redoName();
  if (!undo_.redo()) return;
  ++steps_;
  refreshGadgets();
  say("Done again: " + name);
}

void PCorrelation::clear() {
  if (page() == kMatrixPage) return clearCells();
  if (page() == kTreePage && gadget<Tree>("TrCorrelation")->current() >= 0)
    takeOut(gadget<Tree>("TrCorrelation")->current());
}

void PCorrelation::changeCorrType() {
  const int chosen = gadget<QComboBox>("SeCorrType")->currentIndex();
  if (chosen != draft_.mode) {
    CorrelationDraft after = draft_;
    after.mode = chosen;
    enter(QString("Method: ") + kMethods[chosen], after);
  }
  if (chosen == kDependenceTree) showPage(kTreePage);
  if (chosen == kImanConover) showPage(kMatrixPage);
  if (chosen == kSteinSample) showPage(kSteinPage);
}

// The end.

QString PCorrelation::refusal() {
  if (draft_.mode == kSteinSample && !draft_.stein().hasStein())
    return "The Stein correlation sample is empty.\nNo correlation can be calculated.";
  if (draft_.mode == kImanConover && !valid_)
    return "The Iman Conover Matrix is not positive definited.\nNo correlation can be calculated.";
  return {};
}

bool PCorrelation::agreesToSwitch() {
  if (opened_ == kNoCorrelation || draft_.mode == opened_) return true;
  return Dialogs::current().question(
      "Correlation method",
      draft_.mode == kNoCorrelation
          ? "Do you want to eliminate correlations between factors?"
          : "The correlation method is different from the one previuosly chosen,\n do you want to switch to the new "
            "correlation method?",
      "^Yes", "^No", window());
}

void PCorrelation::apply() {
  if (demo_) return end(false);
  if (!cellIsTaken()) return;
  if (const QString why = refusal(); !why.isEmpty()) {
    const QString more = draft_.mode == kImanConover ? QString(
                                                           "\n\nIts smallest eigenvalue is %1; \"Nearest valid "
                                                           "matrix\" makes the least changes that are needed.")
                                                           .arg(smallest_, 0, 'g', 2)
                                                     : QString();
    return tell("Error", why + more);
  }
  if (agreesToSwitch()) end(true);
}

// First what is in progress.
void PCorrelation::cancel() {
  if (!busy_) return end(false);
  stopped_ = true;
}

bool PCorrelation::closing() {
  stopped_ = true;
  return !busy_ && Panel::closing();
}

// What the gadgets show.

QString PCorrelation::situation() {
  if (draft_.mode == kSteinSample)
    return QString("%1 rows of the Stein sample give the order of the sample.").arg(draft_.stein().steinInfo.rows());
  if (draft_.mode == kDependenceTree) return QString("Links in the tree: %1.").arg(draft_.links());
  if (draft_.mode == kImanConover) {
    const int order = draft_.order();
    return QString("%1 of %2 pairs are correlated.").arg(draft_.pairs()->size()).arg(order * (order - 1) / 2);
  }
  return demo_ ? "The factors are independent."
               : "The factors are independent. Type a number into the matrix, or drag factors into the tree.";
}

void PCorrelation::refresh() {
  judge();
  gadget<QComboBox>("SeCorrType")->setCurrentIndex(draft_.mode);
  gadget<TableView>("MaCorrelations")->viewport()->update();  // a number has a mirror
  auto* const samples = gadget<TableView>("MaSamples");
  if (shownStein_ != draft_.sharedStein()) {
    shownStein_ = draft_.sharedStein();
    samples->setSource(draft_.stein().hasStein() ? stein_ : nullptr);
  }
  const FactorList& stein = draft_.stein();
  gadget<QLabel>("MlStein")->setText(stein.hasStein() ? QString("%1 rows from ").arg(stein.steinInfo.rows()) +
                                                            QString::fromStdString(stein.steinFileName).section('/', -1)
                                                      : QString());
  if (page() == kPreviewPage) static_cast<void>(showPreview());  // the page says why not
  refreshGadgets();
  const QString why = refusal();
  if (demo_)
    say(kForReading + QString(" ") + situation());
  else if (draft_.mode == kImanConover && !valid_)
    say(QString("The matrix is not positive definite, smallest eigenvalue %1. No correlation can be calculated.")
            .arg(smallest_, 0, 'g', 2));
  else if (!why.isEmpty())
    say(QString(why).replace('\n', ' '));
  else if (opened_ != kNoCorrelation && draft_.mode != opened_)
    say(situation() + QString(" Ok asks whether to give up the method in force: ") + kMethods[opened_] + '.');
  else
    say(situation());
}

void PCorrelation::refreshGadgets() {
  setTitle("Correlate factors[*]");
  window()->setWindowModified(modified());
  const QString demo = demo_ ? kForReading : QString();
  const QString undone = undo_.undoName();
  const QString redone = undo_.redoName();
  const bool clears = page() == kMatrixPage || page() == kTreePage;
  const struct {
    const char* gadget;
    QString reason;
  } rows[] = {
      {"SeCorrType", demo},
      {"BStein", demo},
      {"BNearest", demo_    ? demo
                   : valid_ ? QString("The matrix is valid.")
                            : QString()},
      {"AClear", demo_    ? demo
                 : clears ? QString()
                          : QString("Cells of the matrix and factors of the tree can be taken away.")},
      {"AUndo", undone.isEmpty() ? QString("There is no change to be undone.") : QString()},
      {"ARedo", redone.isEmpty() ? QString("No change was undone.") : QString()},
  };
  for (const auto& [name, reason] : rows) allow(*gadget<QObject>(name), reason);
  gadget<QAction>("AUndo")->setText("&Undo " + QString(undone).replace('&', "&&"));
  gadget<QAction>("ARedo")->setText("&Redo " + QString(redone).replace('&', "&&"));
  refreshColumns();
}

}  // namespace tarvex
