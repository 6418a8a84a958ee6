#include "panels/vels/SaTable.h"

#include <QApplication>
#include <QPalette>
#include <algorithm>
#include <cmath>
#include <limits>

#include "plots/Colour.h"
#include "plots/MeasureColumn.h"
#include "postproc/CellFormat.h"
#include "postproc/RegressionStats.h"
#include "toolkit/TableView.h"

namespace tarvex {

QColor screenColour(const char* name) {
  const Colour colour = namedColour(name);
  return QColor::fromRgba64(colour.red, colour.green, colour.blue);
}

SaTable::SaTable(std::shared_ptr<const SensitivityStats> stats, std::int32_t variable, std::vector<std::int32_t> slots,
                 const MeasureDisplay& display, bool withTest)
    : stats_(std::move(stats)), variable_(variable) {
  MeasureDisplay all = display;
  all.order = MeasureDisplay::Order::List;
  all.most = 0;
  rows_ = displayedRecords(*stats_, variable, slots, all);
  for (const std::int32_t slot : slots)
    columns_.push_back({Role::Measure, slot, QString::fromStdString(measureTitle(*stats_, slot)),
                        displayedColumn(*stats_, variable, slot, rows_, display.scaled)});
  if (withTest) addTest(slots.front());
}

void SaTable::addTest(std::int32_t measure) {
  columns_.push_back(
      {Role::Rank, measure, "Rank", measureColumn(*stats_, variable_, RegressionStats::kRankSlots + measure)});
  columns_.push_back({Role::Significance, measure, "Significance",
                      measureColumn(*stats_, variable_, RegressionStats::kFlagSlots + measure)});
}

bool SaTable::hasTest(std::int32_t measure) const {
  return static_cast<const RegressionStats&>(*stats_).hasTest(measure);
}

int SaTable::rowOf(std::size_t record) const {
  const auto found = std::ranges::find(rows_, record);
  return found == rows_.end() ? -1 : static_cast<int>(found - rows_.begin());
}

QString SaTable::header(int column) const {
  return column == 0 ? QString("Factor") : at(column).title;
}

QString SaTable::headerToolTip(int column) const {
  if (column == 0) return {};
  if (at(column).role == Role::Rank) return "1 is the strongest, by size";
  if (at(column).role != Role::Significance) return {};
  const auto& regression = static_cast<const RegressionStats&>(*stats_);
  return "One-sided test at " + QString::number(static_cast<double>(regression.alpha)) +
         ": a measure below 0 is never significantly above 0";
}

QString SaTable::text(int row, int column) const {
  const IndexRecord& shown = stats_->records[record(row)];
  if (column == 0) return QString::fromStdString(shown.name);
  const std::optional<double> value = valueAt(row, column);
  const Role role = at(column).role;
  if (role == Role::Significance && !hasTest(at(column).slot)) return valueAt(row, 1) ? "no test" : "";
  if (!value) {
    const std::string_view kind = kindCell(shown.kind);
    if (role != Role::Measure || column > 1) return {};  // once is enough
    if (!kind.empty()) return QString::fromUtf8(kind.data(), static_cast<qsizetype>(kind.size()));
    return stats_->notComputedReason(variable_, at(column).slot).empty() ? QString() : QString(kNotComputed.data());
  }
  if (role == Role::Rank) return QString::number(std::lround(*value));
  if (role == Role::Significance) return *value == 1.0 ? "significantly above 0" : "not significantly above 0";
  return QString::fromStdString(measureText(*value));
}

bool SaTable::isNumeric(int column) const {
  return column > 0 && at(column).role != Role::Significance;
}

double SaTable::number(int row, int column) const {
  return valueAt(row, column).value_or(std::numeric_limits<double>::quiet_NaN());
}

std::optional<bool> SaTable::significant(int row, int column) const {
  const auto* const regression = dynamic_cast<const RegressionStats*>(stats_.get());
  if (regression == nullptr || column == 0 || at(column).role == Role::Rank || std::isnan(number(row, column)) ||
      !hasTest(at(column).slot))
    return {};
  const std::int32_t slot = RegressionStats::kFlagSlots + at(column).slot;
  const IndexRecord& shown = regression->records[record(row)];
  return shown.values[static_cast<std::size_t>(variable_ * RegressionStats::kSlots + slot)] == 1.0;
}

QColor SaTable::ink(int row, int column) const {
  if (significant(row, column)) return Qt::black;  // on either paper, light and dark
  const bool isReason = column > 0 && !valueAt(row, column);
  return isReason ? QApplication::palette().color(QPalette::Disabled, QPalette::Text) : QColor();
}

QColor SaTable::paper(int row, int column) const {
  const std::optional<bool> flag = significant(row, column);
  if (!flag) return {};
  return screenColour(*flag ? "Pale Green" : "Indian Red");
}

void showSheet(TableView& view, std::shared_ptr<SaTable> table) {
  constexpr int kWidest = 320;
  const int columns = table->columns();
  view.setEmptyText("No factors are chosen: Components... chooses.");
  view.setSource(std::move(table));
  view.resizeColumnsToContents();
  for (int column = 0; column < columns; ++column)
    if (view.columnWidth(column) > kWidest) view.setColumnWidth(column, kWidest);
}

}  // namespace tarvex
