#include "plots/MeasureColumn.h"

#include <algorithm>

#include "plots/measurePlots.h"
#include "postproc/CellFormat.h"
#include "postproc/FastStats.h"
#include "postproc/MeasureSlots.h"
#include "postproc/MorrisStats.h"
#include "postproc/RegressionStats.h"
#include "postproc/SobolStats.h"

namespace tarvex {

namespace {

constexpr std::int32_t kClosedOfOne = 2;   // slot of a term of one factor
constexpr std::int32_t kClosedOfMore = 1;  // and of more

// The slot of this record that holds what `slot` is in the record of a single factor; -1 for none.
std::int32_t slotIn(const SensitivityStats& stats, const IndexRecord& record, std::int32_t slot) {
  const auto* sobol = dynamic_cast<const SobolStats*>(&stats);
  if (sobol == nullptr || sobol->slotMode == SobolStats::kFirstAndTotal || record.groupNames.size() == 1) return slot;
  if (slot == SobolStats::kIndex) return slot;
  return slot == kClosedOfOne ? kClosedOfMore : -1;
}

// Factors are gathered in groups where there are fewer records than factors.
bool isOnGroups(const SensitivityStats& stats) {
  return stats.typeId() == SensitivityStats::kFast &&
         static_cast<const FastStats&>(stats).recordCount != stats.factorCount;
}

std::vector<MeasureChoice> regressionChoices() {
  std::vector<MeasureChoice> choices;
  for (std::int32_t m = 0; m < RegressionStats::kMeasures; ++m) {
    const std::string title(RegressionStats::measureName(m));
    std::string word = title;
    std::transform(word.begin(), word.end(), word.begin(),
                   [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
    choices.push_back({word, title, m});
  }
  return choices;
}

}  // namespace

std::vector<MeasureChoice> measureChoices(const SensitivityStats& stats) {
  const MeasureChoice first{"first", "First Order", FastStats::kFirstOrder};
  const MeasureChoice total{"total", "Total Order", FastStats::kTotalOrder};
  switch (stats.typeId()) {
    case SensitivityStats::kRegression:
      return regressionChoices();
    case SensitivityStats::kMorris:
      return {{"mean", "Morris Index", MorrisStats::kMean}, {"sigma", "Sigma", MorrisStats::kSigma}};
    case SensitivityStats::kFast:
      return static_cast<const FastStats&>(stats).hasTotals() ? std::vector<MeasureChoice>{first, total}
                                                              : std::vector<MeasureChoice>{first};
    case SensitivityStats::kImportance:
      return {{"importance", "Importance", 0}};
    case SensitivityStats::kSobol:
      break;
  }
  if (static_cast<const SobolStats&>(stats).slotMode == SobolStats::kFirstAndTotal) return {first, total};
  return {{"index", "Index", SobolStats::kIndex},
          {"total", "Total", SobolStats::kTotal},
          {"closed", "Closed", kClosedOfOne}};
}

std::vector<std::optional<double>> measureColumn(const SensitivityStats& stats, std::int32_t variable,
                                                 std::int32_t slot) {
  std::vector<std::optional<double>> column;
  const bool known = stats.computed && variable >= 0 && variable < stats.variableCount && slot >= 0;
  for (const IndexRecord& record : stats.records) {
    const std::int32_t at = slotIn(stats, record, slot);
    const bool present = known && at >= 0 && at < stats.slotsOf(record);
    column.push_back(present ? measureValue(stats, record, variable, static_cast<std::size_t>(at)) : std::nullopt);
  }
  return column;
}

std::string measureText(double value) {
  const std::string cell = measureCell(value);
  return cell.substr(std::min(cell.find_first_not_of(' '), cell.size()));
}

std::string measureTitle(const SensitivityStats& stats, std::int32_t slot) {
  for (const MeasureChoice& choice : measureChoices(stats))
    if (choice.slot == slot) return choice.title + (isOnGroups(stats) ? " (on groups)" : "");
  return "";
}

}  // namespace tarvex
