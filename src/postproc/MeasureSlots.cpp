#include "postproc/MeasureSlots.h"

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

double measureValue(const SensitivityStats& statistics, const IndexRecord& record, std::int32_t variable,
                    std::size_t slot) {
  return record
      .values[static_cast<std::size_t>(variable) * static_cast<std::size_t>(statistics.slotsOf(record)) + slot];
}

}  // namespace tarvex
