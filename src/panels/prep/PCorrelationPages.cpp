// What the correlation panel does with the matrix, the Stein sample and the preview.

#include <QComboBox>
#include <QCoreApplication>
#include <QElapsedTimer>
#include <QLabel>
#include <QMenuBar>
#include <QScrollBar>
#include <QTabWidget>
#include <QTimer>
#include <algorithm>
#include <cmath>
#include <utility>

#include "base/NumberText.h"
#include "base/Progress.h"
#include "base/RememberedDirectories.h"
#include "base/TextWriter.h"
#include "correlation/ImanConover.h"
#include "correlation/nearestCorrelation.h"
#include "correlation/rankCorrelation.h"
#include "panels/main/PanelWork.h"
#include "panels/prep/CorrelationTable.h"
#include "panels/prep/PCorrelation.h"
#include "panels/prep/correlationCells.h"
#include "panels/prep/pairPreview.h"
#include "plots/runPlots.h"
#include "postproc/CellFormat.h"
#include "toolkit/ChartView.h"
#include "toolkit/Dialogs.h"
#include "toolkit/TableView.h"
#include "toolkit/allow.h"

namespace tarvex {
namespace {

constexpr int kServed = 40;  // ms between looks at events

FileChoice fileChoice(const char* title, FileChoice::Purpose purpose) {
  return {title,
          {{"*.*", "all files"}},
          QString::fromStdString(RememberedDirectories::get(RememberedDirectories::Prep)),
          purpose};
}

}  // namespace

// The matrix.

void PCorrelation::judge() {
  if (judged_ == draft_.pairs()) return;
  judged_ = draft_.pairs();
  const std::vector<int> rows = draft_.correlatedRows();
  const std::vector<float> matrix = draft_.matrixOf(rows);
  const auto order = static_cast<std::int32_t>(rows.size());
  valid_ = rows.empty() || ImanConover(matrix, order).isValid();
  // Where it can't be had the matrix is refused all the same.
  if (!valid_ && !smallestEigenvalue(matrix, order, smallest_)) smallest_ = 0.0;
}

QString PCorrelation::edit(int row, int column, const QString& text) {
  const QString pair = table_->rowName(row) + " and " + table_->header(column);
  double value = 0.0;
  QString why;
  // An empty cell is no correlation.
  if (!text.trimmed().isEmpty() && !readCorrelation(text, value, why)) return pair + ": " + why;
  CorrelationDraft after = draft_;
  after.mode = kImanConover;
  after.setCells({{row, column, static_cast<float>(value)}});
  enter("Correlation of " + pair, after);
  checkValue();
  return {};
}

QString PCorrelation::paste(int row, int column, const std::vector<QStringList>& block) {
  std::vector<CorrelationCell> cells;
  QString why;
  if (!readCorrelationBlock(block, row, column, draft_.names(), cells, why)) return "Nothing was pasted. " + why;
  if (cells.empty()) return "There is no number to paste.";
  CorrelationDraft after = draft_;
  after.mode = kImanConover;
  after.setCells(cells);
  enter("Paste correlations", after);
  return {};
}

void PCorrelation::clearCells() {
  if (demo_) return;
  std::vector<CorrelationCell> cells;
  for (const QItemSelectionRange& range : gadget<TableView>("MaCorrelations")->selectionModel()->selection())
    for (int row = range.top(); row <= range.bottom(); ++row)
      for (int column = range.left(); column <= range.right(); ++column)
        if (row != column && draft_.at(row, column) != 0.0F) cells.push_back({row, column, 0.0F});
  if (cells.empty()) return say("No correlation is selected.");
  CorrelationDraft after = draft_;
  after.mode = kImanConover;
  after.setCells(cells);
  enter("Take correlations away", after);
  checkValue();
}

// The dialog comes when the cell's editor has gone, which its opening would ask once more.
void PCorrelation::refuseCell(const QString& why) {
  if (!why.isEmpty()) say(why);
  if (demo_) return;
  refusedCell_ = why;
  if (why.isEmpty()) return;
  QTimer::singleShot(0, this, [this] { static_cast<void>(cellIsTaken()); });  // it tells
}

bool PCorrelation::cellIsTaken() {
  auto* const view = gadget<TableView>("MaCorrelations");
  const QWidget* const focus = window()->focusWidget();
  if (focus != nullptr && view->viewport()->isAncestorOf(focus)) view->setFocus();
  if (refusedCell_.isEmpty()) return true;
  const QString why = std::exchange(refusedCell_, {});
  tell("Error: Invalid value", "Invalid correlation value\n" + why);
  return false;
}

void PCorrelation::checkValue() {
  const QModelIndex cell = gadget<TableView>("MaCorrelations")->currentIndex();
  const bool isPair = cell.isValid() && cell.row() != cell.column();
  gadget<QLabel>("MlPair")->setText(isPair ? table_->rowName(cell.row()) + " with " + table_->header(cell.column()) +
                                                 ": " + table_->text(cell.row(), cell.column())
                                           : QString());
  if (isPair) choosePair(cell.row(), cell.column());
}

// Some seconds for hundreds of factors: meanwhile Esc, and nothing else, works.
bool PCorrelation::findNearest(const std::vector<float>& matrix, std::vector<float>& nearest) {
  auto* const view = gadget<TableView>("MaCorrelations");
  const auto allowWork = [this](bool allowed) {
    for (const char* const part : {"centre", "MnMenu"}) gadget<QWidget>(part)->setEnabled(allowed);
  };
  say("Looking for the nearest valid matrix. Esc stops.");
  busy_ = true;
  stopped_ = false;
  allowWork(false);
  QElapsedTimer served;
  served.start();
  const Progress progress([this, &served](double) {
    if (served.elapsed() < kServed) return true;
    QCoreApplication::processEvents();
    served.restart();
    return !stopped_;
  });
  const auto order = static_cast<std::int32_t>(draft_.correlatedRows().size());
  const bool found = nearestCorrelation(matrix, order, nearest, progress);
  allowWork(true);
  busy_ = false;
  view->setFocus();
  if (!found && !stopped_) tell("Error", "The nearest valid matrix can't be calculated.");
  if (!found) refresh();
  return found;
}

void PCorrelation::nearest() {
  if (!cellIsTaken()) return;
  const std::vector<int> rows = draft_.correlatedRows();
  const std::vector<float> matrix = draft_.matrixOf(rows);
  std::vector<float> nearest;
  if (!findNearest(matrix, nearest)) return;
  float change = 0.0F;
  std::vector<CorrelationCell> cells;
  for (std::size_t i = 0; i < nearest.size(); ++i) {
    const std::size_t row = i / rows.size();
    const std::size_t column = i % rows.size();
    if (column > row) cells.push_back({rows[row], rows[column], nearest[i]});
    change = std::max(change, std::abs(nearest[i] - matrix[i]));
  }
  CorrelationDraft after = draft_;
  after.mode = kImanConover;
  after.setCells(cells);
  enter("Nearest valid matrix", after);
  checkValue();
  say(QString("This matrix is valid. No number has moved by more than %1.")
          .arg(static_cast<double>(change), 0, 'g', 2));
}

void PCorrelation::saveCorrTable() {
  if (!cellIsTaken()) return;
  const auto chosen = Dialogs::current().chooseFile(fileChoice("Save table", FileChoice::Purpose::Save), window());
  if (!chosen) return;
  TextWriter out(chosen->path.toStdString());
  const auto cell = [&out](const QString& text) { out << savedCell(text.toStdString()) << '\t'; };
  cell({});
  for (int column = 0; column < draft_.order(); ++column) cell(table_->header(column));
  out << '\n';
  for (int row = 0; row < draft_.order(); ++row) {
    cell(table_->rowName(row));
    for (int column = 0; column < draft_.order(); ++column) cell(table_->text(row, column));
    out << '\n';
  }
  if (!out.commit()) tell("Error", "I cannot save the file\n" + QString::fromStdString(out.problem()));
}

// The Stein sample.

void PCorrelation::steinCorr() {
  if (draft_.stein().hasStein() &&
      !Dialogs::current().question({}, "   Discard the old Stein configuration ?", "^Yes", "^No", window()))
    return;
  const auto chosen =
      Dialogs::current().chooseFile(fileChoice("Open the list of factors file:", FileChoice::Purpose::Open), window());
  if (!chosen) return;
  CorrelationDraft after = draft_;
  std::string message;
  bool taken = false;
  {
    const PanelWork work(display(), "Reading a Stein sample", window());
    taken = after.importStein(chosen->path.toStdString(), message, work.progress());
    if (work.stopped()) return say("Stopped: nothing was imported.");
  }
  if (!taken) return tell("Error", QString::fromStdString(message));
  enter("Import " + chosen->path.section('/', -1), after);
}

void PCorrelation::turnColumns(bool onwards) {
  gadget<TableView>("MaSamples")
      ->horizontalScrollBar()
      ->triggerAction(onwards ? QAbstractSlider::SliderPageStepAdd : QAbstractSlider::SliderPageStepSub);
}

void PCorrelation::refreshColumns() {
  const auto* const bar = gadget<TableView>("MaSamples")->horizontalScrollBar();
  allow(*gadget<QWidget>("BPrevious"), bar->value() > bar->minimum() ? QString() : "There are no columns before.");
  allow(*gadget<QWidget>("BNext"), bar->value() < bar->maximum() ? QString() : "There are no columns behind.");
}

// The preview.

void PCorrelation::choosePair(int first, int second) {
  gadget<QComboBox>("OFirst")->setCurrentIndex(first);
  gadget<QComboBox>("OSecond")->setCurrentIndex(second);
}

void PCorrelation::plot() {
  if (!cellIsTaken()) return;
  if (page() == kTreePage) chooseLink();
  showPage(kPreviewPage);
  if (const QString why = showPreview(); !why.isEmpty()) tell("Error", why);
}

// The pair of the tree's current item.
void PCorrelation::chooseLink() {
  const int child = gadget<Tree>("TrCorrelation")->current();
  if (child < 0 || draft_.node(child).parent == kNoParentFactor) return;
  const auto row = [this](int place) {
    return static_cast<int>(std::ranges::find(draft_.places(), place) - draft_.places().begin());
  };
  choosePair(row(draft_.node(child).parent), row(child));
}

void PCorrelation::pageChanged() {
  refreshGadgets();
  if (page() == kPreviewPage) static_cast<void>(showPreview());  // the page says why not
}

QString PCorrelation::showPreview() {
  const int first = gadget<QComboBox>("OFirst")->currentIndex();
  const int second = gadget<QComboBox>("OSecond")->currentIndex();
  auto* const chart = gadget<ChartView>("ScPoints");
  PairPreview preview;
  std::string message;
  if (!previewPair(draft_, first, second, preview, message)) {
    QString why = QString::fromStdString(message);
    chart->setEmptyText(QString(why).replace('\n', ' '));
    chart->show(Figure());
    gadget<QLabel>("MlOutcome")->clear();
    return why;
  }
  chart->show(correlationPreviewPlot(preview.points, table_->header(first).toStdString(),
                                     table_->header(second).toStdString()));
  const auto number = [](double value) { return QString::number(value, 'f', 2); };
  gadget<QLabel>("MlOutcome")
      ->setText("Rank correlation asked for: " + number(preview.asked) +
                QString(". Of these %1 points: ").arg(preview.points.x.size()) +
                number(rankCorrelation(preview.points.x, preview.points.y)) + '.');
  return {};
}

}  // namespace tarvex
