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
      slider_(*this, desk, [this](std::int32_t shown) { show(shown); }),
      past_(desk.controller(), snapshot_, [this] { show(variable_); }) {
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
  show(variable);
}

void PSaSingle::show(std::int32_t variable) {
  variable_ = variable;
  slider_.setShown(variable);
  table_ = std::make_shared<SaTable>(snapshot_->sensitivity, variable, slots_, MeasureDisplay{}, false);
  const QString name = QString::fromStdString(snapshot_->variables[static_cast<std::size_t>(variable)]);
  setTitle("Sensitivity Analysis: " + shortened(name));
  gadget<QLabel>("MlTitle")->setText("All measures of " + name + past_.text());
  showSheet(*gadget<TableView>("ShIndexes"), table_);
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
