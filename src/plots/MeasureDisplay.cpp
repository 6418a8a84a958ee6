#include "plots/MeasureDisplay.h"

#include <algorithm>
#include <cmath>
#include <numeric>

#include "plots/MeasureColumn.h"
#include "postproc/SensitivityStats.h"

namespace tarvex {

namespace {

std::vector<std::size_t> chosenRecords(const SensitivityStats& stats, const MeasureDisplay& display) {
  std::vector<std::size_t> chosen;
  if (!display.records) {
    chosen.resize(stats.records.size());
    std::iota(chosen.begin(), chosen.end(), std::size_t{0});
    return chosen;
  }
  for (const std::int32_t record : *display.records)
    if (record >= 0 && static_cast<std::size_t>(record) < stats.records.size())
      chosen.push_back(static_cast<std::size_t>(record));
  return chosen;
}

}  // namespace

std::vector<std::size_t> displayedRecords(const SensitivityStats& stats, std::int32_t variable,
                                          const std::vector<std::int32_t>& slots, const MeasureDisplay& display) {
  constexpr double kNone = -1.0;  // the size of what has no measure, or none that can be compared
  std::vector<MeasureColumn> columns;
  for (const std::int32_t slot : slots) columns.push_back(measureColumn(stats, variable, slot));
  std::vector<double> sizes(stats.records.size(), kNone);
  std::vector<std::size_t> shown;
  for (const std::size_t i : chosenRecords(stats, display)) {
    // Every factor has each of the regression's measures, or a reason that all share.
    bool any = stats.records[i].kind != FactorKind::Uncertain || stats.typeId() == SensitivityStats::kRegression;
    for (const MeasureColumn& column : columns) {
      any = any || column[i].has_value();
      if (column[i] && std::isfinite(*column[i])) sizes[i] = std::max(sizes[i], std::abs(*column[i]));
    }
    if (any) shown.push_back(i);
  }
  std::vector<std::size_t> bySize = shown;
  std::ranges::stable_sort(bySize, [&](std::size_t a, std::size_t b) { return sizes[a] > sizes[b]; });
  if (display.most > 0) {
    std::erase_if(bySize, [&](std::size_t i) { return sizes[i] == kNone; });
    if (bySize.size() > display.most) bySize.resize(display.most);
  }
  if (display.order == MeasureDisplay::Order::Value) return bySize;
  if (display.most > 0) {
    shown = std::move(bySize);
    std::ranges::sort(shown);
  }
  return shown;
}

std::vector<std::optional<double>> displayedColumn(const SensitivityStats& stats, std::int32_t variable,
                                                   std::int32_t slot, const std::vector<std::size_t>& shown,
                                                   bool scaled) {
  MeasureColumn column = measureColumn(stats, variable, slot);
  if (!scaled) return column;
  double sum = 0.0;
  for (const std::size_t i : shown)
    if (column[i] && std::isfinite(*column[i])) sum += *column[i];
  if (!(sum > 0.0) || !std::isfinite(sum)) return column;
  for (std::optional<double>& value : column)
    if (value) *value /= sum;
  return column;
}

std::size_t uncertainPlace(const SensitivityStats& stats, std::size_t record) {
  const auto end = stats.records.begin() + static_cast<std::ptrdiff_t>(record);
  return static_cast<std::size_t>(
      std::count_if(stats.records.begin(), end, [](const IndexRecord& r) { return r.kind == FactorKind::Uncertain; }));
}

Colour recordColour(const SensitivityStats& stats, std::size_t record, std::size_t place, ColourSet colours) {
  if (colours == ColourSet::System)
    return sliceColour(colours, stats.typeId() == SensitivityStats::kFast ? SliceList::Fast : SliceList::Other, place);
  // Terms and groups are no factors of the list.
  const bool isFactor = stats.records.size() == static_cast<std::size_t>(stats.factorCount);
  return factorColour(isFactor ? record : uncertainPlace(stats, record));
}

}  // namespace tarvex
