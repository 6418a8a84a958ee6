// The page of correlations.

#include <QComboBox>
#include <QLabel>
#include <algorithm>

#include "app/RunController.h"
#include "panels/plots/CorrelationsTable.h"
#include "panels/plots/PPlots.h"
#include "panels/plots/PScatter.h"
#include "panels/plots/figurePanels.h"
#include "panels/vels/ResultDesk.h"
#include "sampling/PrepConfiguration.h"
#include "toolkit/TableView.h"

namespace tarvex {

bool PPlots::correlate() {
  auto* const kinds = gadget<QComboBox>("OKind");
  if (kinds->count() == 0) kinds->addItems({"of the sample's factors", "of values", "of ranks"});
  auto matrix = std::make_shared<CorrelationMatrix>();
  const auto work = [&](const Progress& progress, std::string& message) {
    return correlateNow(*matrix, progress, message);
  };
  matrix_.reset();
  if (desk().controller().perform("Correlations", table().runs, work) != Outcome::Done) {
    gadget<QLabel>("MlPair")->setText("There are no correlations: the computation failed or was stopped.");
    gadget<TableView>("MaCorrelations")->setSource(nullptr);
    return false;
  }
  matrix_ = std::move(matrix);
  return true;
}

bool PPlots::correlateNow(CorrelationMatrix& matrix, const Progress& progress, std::string& message) {
  const auto kind = static_cast<Kind>(gadget<QComboBox>("OKind")->currentIndex());
  if (kind != kOfSample)
    return correlateColumns(
        table(), selection().keptCount() == table().runs ? std::vector<std::int32_t>() : selection().runs(),
        kind == kOfRanks ? CorrelationKind::Ranks : CorrelationKind::Values, matrix, message, progress);
  return sampleCorrelations(desk().controller().project().prep, matrix, message, progress);
}

void PPlots::showCorrelations() {
  auto* const view = gadget<TableView>("MaCorrelations");
  view->setEmptyText("There are no factors.");
  view->setSource(std::make_shared<CorrelationsTable>(matrix_, notation_));
  gadget<QLabel>("MlPair")->setText(QString::fromStdString("Over " + runsText(matrix_->runs)));
}

void PPlots::checkValue() {
  const auto* const view = gadget<TableView>("MaCorrelations");
  const QModelIndex current = view->currentIndex();
  if (!matrix_ || !current.isValid()) return;
  const auto row = static_cast<std::size_t>(gadget<TableView>("MaCorrelations")->tableModel().sourceRow(current.row()));
  const auto column = static_cast<std::size_t>(current.column());
  if (row >= matrix_->names.size() || column >= matrix_->names.size()) return;
  gadget<QLabel>("MlPair")->setText(
      QString::fromStdString(matrix_->names[row] + " and " + matrix_->names[column] + ": ") +
      numberIn(NumberNotation::General, matrix_->at(row, column)) +
      QString::fromStdString(" over " + runsText(matrix_->runs)));
}

void PPlots::openPair() {
  auto* const view = gadget<TableView>("MaCorrelations");
  const QModelIndex current = view->currentIndex();
  if (!matrix_ || !current.isValid()) return;
  // The columns of the matrix are the first of the table: factors, then variables.
  const auto row = static_cast<std::size_t>(view->tableModel().sourceRow(current.row()));
  const auto column = static_cast<std::size_t>(current.column());
  const std::size_t count = table().columns.size();
  if (row < count && column < count) desk().open(std::make_unique<PScatter>(desk(), shared(), column, row));
}

void PPlots::map() {
  if (matrix_ || correlate()) openCorrelationMap(desk(), shared(), *matrix_);
}

}  // namespace tarvex
