#include "panels/vels/PForecast.h"

#include <QKeySequence>
#include <QLabel>
#include <algorithm>
#include <cmath>

#include "app/RunController.h"
#include "panels/vels/ResultDesk.h"
#include "plots/MeasureColumn.h"
#include "plots/measurePlots.h"
#include "postproc/CellFormat.h"
#include "postproc/RegressionStats.h"
#include "toolkit/ChartView.h"
#include "toolkit/longNames.h"

namespace tarvex {
namespace {

// Its place by size among those that have the measure, from 1.
QString placeText(const std::vector<std::optional<double>>& column, double value) {
  const auto isNumber = [](const std::optional<double>& other) { return other && std::isfinite(*other); };
  const auto above = [&](const std::optional<double>& other) {
    return isNumber(other) && std::abs(*other) > std::abs(value);
  };
  return QString(", number %1 of %2 by size")
      .arg(std::ranges::count_if(column, above) + 1)
      .arg(std::ranges::count_if(column, isNumber));
}

QString significanceText(const SensitivityStats& stats, std::int32_t variable, std::int32_t slot, std::size_t record) {
  const auto* const regression = dynamic_cast<const RegressionStats*>(&stats);
  if (regression == nullptr || !regression->hasTest(slot)) return {};
  const std::optional<double> flag = measureColumn(stats, variable, RegressionStats::kFlagSlots + slot)[record];
  if (!flag) return {};
  return QString(*flag == 1.0 ? ", significantly above 0 at %1" : ", not significantly above 0 at %1")
      .arg(static_cast<double>(regression->alpha));
}

QString recordText(const SensitivityStats& stats, std::int32_t variable, std::int32_t slot, std::size_t record) {
  const IndexRecord& shown = stats.records[record];
  const std::vector<std::optional<double>> column = measureColumn(stats, variable, slot);
  QString text = QString::fromStdString(shown.name + ": " + measureTitle(stats, slot)) + ' ';
  const std::string_view kind = kindCell(shown.kind);
  if (!kind.empty()) return text + QString::fromUtf8(kind.data(), static_cast<qsizetype>(kind.size()));
  if (!column[record]) return text + kNotComputed.data();
  text += QString::fromStdString(measureText(*column[record]));
  if (std::isfinite(*column[record])) text += placeText(column, *column[record]);
  return text + significanceText(stats, variable, slot, record);
}

}  // namespace

PForecast::PForecast(ResultDesk& desk, const std::shared_ptr<const AnalysisSnapshot>& snapshot, std::int32_t variable,
                     std::int32_t slot, std::size_t record)
    : Panel(desk.display(), "PForecast", "Forecast", "Forecast", desk.parent()),
      snapshot_(snapshot),
      variable_(variable),
      slot_(slot),
      record_(record),
      slider_(*this, desk, [this](std::int32_t shown) { show(shown); }),
      past_(desk.controller(), snapshot_, [this] { show(variable_); }) {
  setTitle("Forecast: " + shortened(QString::fromStdString(snapshot_->sensitivity->records[record].name)));
  gadget<ChartView>("ChForecast")->setEmptyText("No factor has this measure.");
  slider_.setVariables(snapshot_->variables, outputNamesOf(*snapshot_));
  show(variable);
  registerCallbacks({{"ok", [this] { end(true); }}});
  bindKey(QKeySequence(Qt::Key_Escape), [this] { end(true); });
}

void PForecast::show(std::int32_t variable) {
  variable_ = variable;
  slider_.setShown(variable);
  const SensitivityStats& stats = *snapshot_->sensitivity;
  gadget<QLabel>("MlForecast")->setText(recordText(stats, variable, slot_, record_) + past_.text());
  auto* const chart = gadget<ChartView>("ChForecast");
  chart->show(forecastBars(stats, variable, snapshot_->variables[static_cast<std::size_t>(variable)], slot_));
  chart->setMarked({static_cast<std::int32_t>(record_)});
}

}  // namespace tarvex
