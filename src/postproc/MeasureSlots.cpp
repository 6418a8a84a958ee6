#include "postproc/MeasureSlots.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "postproc/RegressionStats.h"
#include "postproc/SobolStats.h"

namespace tarvex {

namespace {

std::vector<MeasureSlot> numbered(const std::vector<std::string>& names) {
  std::vector<MeasureSlot> slots;
  for (const std::string& name : names) slots.push_back({name, slots.size()});
  return slots;
}

std::vector<std::string> regressionNames() {
  std::vector<std::string> names;
  for (const char* suffix : {"", " rank", " significant"})
    for (std::int32_t m = 0; m < RegressionStats::kMeasures; ++m)
      names.push_back(std::string(RegressionStats::measureName(m)) + suffix);
  return names;
}

double storedValue(const SensitivityStats& statistics, const IndexRecord& record, std::int32_t variable,
                   std::size_t slot) {
  return record
      .values[static_cast<std::size_t>(variable) * static_cast<std::size_t>(statistics.slotsOf(record)) + slot];
}

}  // namespace

std::vector<MeasureSlot> measureSlots(const SensitivityStats& statistics, const IndexRecord& record) {
  switch (statistics.typeId()) {
    case SensitivityStats::kRegression:
      return numbered(regressionNames());
    case SensitivityStats::kMorris:
      return numbered({"Morris Index", "Sigma"});
    case SensitivityStats::kFast:
      return numbered({"first order", "total order"});
    case SensitivityStats::kImportance:
      return numbered({"importance"});
    case SensitivityStats::kSobol:
      break;
  }
  if (static_cast<const SobolStats&>(statistics).slotMode == SobolStats::kFirstAndTotal)
    return numbered({"first order", "total order"});
  return record.groupNames.size() == 1 ? numbered({"index", "total", "closed"}) : numbered({"index", "closed"});
}

std::optional<double> measureValue(const SensitivityStats& statistics, const IndexRecord& record, std::int32_t variable,
                                   std::size_t slot) {
  if (record.kind != FactorKind::Uncertain) return std::nullopt;
  if (!statistics.notComputedReason(variable, static_cast<std::int32_t>(slot)).empty()) return std::nullopt;
  const double value = storedValue(statistics, record, variable, slot);
  if (statistics.typeId() != SensitivityStats::kRegression || slot < RegressionStats::kRankSlots) return value;
  const std::size_t measure = slot % RegressionStats::kMeasures;
  if (std::isnan(storedValue(statistics, record, variable, measure))) return std::nullopt;
  if (slot >= RegressionStats::kFlagSlots) return value;
  // In what is stored the measures that are no numbers have the first ranks.
  const auto before = std::ranges::count_if(statistics.records, [&](const IndexRecord& other) {
    return std::isnan(storedValue(statistics, other, variable, measure));
  });
  return value - static_cast<double>(before);
}

std::vector<std::size_t> strongestRecords(const SensitivityStats& statistics, std::int32_t variable, std::int32_t slot,
                                          std::size_t most) {
  std::vector<std::pair<double, std::size_t>> sizes;
  for (std::size_t i = 0; i < statistics.records.size(); ++i) {
    if (slot >= statistics.slotsOf(statistics.records[i])) continue;
    const auto value = measureValue(statistics, statistics.records[i], variable, static_cast<std::size_t>(slot));
    if (value && std::isfinite(*value)) sizes.emplace_back(-std::abs(*value), i);
  }
  std::ranges::sort(sizes);
  if (sizes.size() > most) sizes.resize(most);
  std::vector<std::size_t> strongest;
  for (const auto& [size, record] : sizes) strongest.push_back(record);
  return strongest;
}

}  // namespace tarvex
