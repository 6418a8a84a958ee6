#include "panels/vels/PSaSingle.h"

#include <QKeySequence>
#include <QLabel>
#include <algorithm>

#include "app/RunController.h"
#include "base/TextWriter.h"
#include "panels/vels/PForecast.h"
#include "panels/vels/ResultDesk.h"
#include "panels/vels/saveMeasures.h"
#include "plots/measurePlots.h"
#include "postproc/CellFormat.h"
#include "postproc/RegressionStats.h"
#include "toolkit/TableView.h"
#include "toolkit/longNames.h"

namespace tarvex {

PSaSingle::PSaSingle(ResultDesk& desk, std::shared_ptr<const AnalysisSnapshot> snapshot, std::int32_t variable)
    : Panel(desk.display(), "PSaSingle", "SaSingle", "Sensitivity Analysis", desk.parent()),
      desk_(desk),
      snapshot_(std::move(snapshot)),
      variable_(variable),
      slider_(*this, desk.time(), desk.controller().project().model.results.hasTimeAxis(),
              [this](std::int32_t shown) { show(shown); }) {
  for (const MeasureChoice& choice : measureChoices(*snapshot_->sensitivity)) slots_.push_back(choice.slot);
  slider_.setVariables(snapshot_->variables, outputNamesOf(*snapshot_));
  if (const auto* const regression = dynamic_cast<const RegressionStats*>(snapshot_->sensitivity.get()))
    gadget<QLabel>("MlMessage")
        ->setText(QString("Green: significantly above 0 at %1; red: not. PCC, PRCC and Smirnov have no test.")
                      .arg(static_cast<double>(regression->alpha)));
  registerCallbacks({{"saveTable", [this] { saveTable(); }},
                     {"doppioClick", [this] { doppioClick(); }},
                     {"dismiss", [this] { end(true); }}});
  bindKey(QKeySequence(Qt::Key_Escape), [this] { end(true); });
  subscription_ = desk.controller().subscribe([this](Changes) { followController(); });
  show(variable);
  followController();
}

void PSaSingle::show(std::int32_t variable) {
  variable_ = variable;
  slider_.setShown(variable);
  table_ = std::make_shared<SaTable>(snapshot_->sensitivity, variable, slots_, MeasureDisplay{}, false);
  const QString name = QString::fromStdString(snapshot_->variables[static_cast<std::size_t>(variable)]);
  setTitle("Sensitivity Analysis: " + shortened(name));
  gadget<QLabel>("MlTitle")->setText(past_.isEmpty() ? "All measures of " + name
                                                     : "All measures of " + name + '.' + past_);
  showSheet(*gadget<TableView>("ShIndexes"), table_);
}

// Also of those that were past when it was opened.
void PSaSingle::followController() {
  RunController& controller = desk_.controller();
  if (controller.busy() || !past_.isEmpty() || controller.analysis()->sensitivity == snapshot_->sensitivity) return;
  past_ = " Past: sample, results, selection or level have changed since.";
  show(variable_);
}

void PSaSingle::saveTable() {
  // The message line goes on explaining the colours.
  static_cast<void>(saveMeasures(window(), [this](TextWriter& out) {
    const auto cell = [&out](const QString& text) { out << savedCell(text.toStdString()) << '\t'; };
    for (int column = 0; column < table_->columns(); ++column) cell(table_->header(column));
    out << '\n';
    for (int row = 0; row < table_->rows(); ++row) {
      for (int column = 0; column < table_->columns(); ++column) cell(table_->text(row, column));
      out << '\n';
    }
  }));
}

// The measure of the column, the first for the column of names.
void PSaSingle::doppioClick() {
  auto* const view = gadget<TableView>("ShIndexes");
  const QModelIndex current = view->currentIndex();
  if (!current.isValid()) return;
  const std::int32_t slot = slots_[static_cast<std::size_t>(std::max(0, current.column() - 1))];
  const std::size_t record = table_->record(view->tableModel().sourceRow(current.row()));
  desk_.open(std::make_unique<PForecast>(desk_, snapshot_, variable_, slot, record));
}

}  // namespace tarvex
