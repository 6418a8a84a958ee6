#include "report/MeasureSummary.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

#include "postproc/MeasureSlots.h"
#include "report/StudySections.h"
#include "sampling/MorrisSampler.h"
#include "sampling/PrepConfiguration.h"

namespace tarvex {

MeasureContext measureContext(const PrepConfiguration& prep, const std::string& variable) {
  MeasureContext context{variable, prep.samples.rows(), 0, isCorrelated(prep.factors)};
  if (const auto* const morris = dynamic_cast<const MorrisSampler*>(prep.sampler.get()))
    context.trajectories = morris->trajectories();
  return context;
}

std::vector<Measured> measuredFactors(const SensitivityStats& statistics, std::int32_t variable, std::size_t slot) {
  std::vector<Measured> found;
  for (const std::size_t i :
       strongestRecords(statistics, variable, static_cast<std::int32_t>(slot), statistics.records.size())) {
    const IndexRecord& record = statistics.records[i];
    if (record.groupNames.size() > 1) continue;
    found.push_back({record.name, measureValue(statistics, record, variable, slot).value_or(0.0), i});
  }
  return found;
}

std::string listed(const std::vector<std::string>& names, std::size_t most) {
  std::string text;
  const std::size_t shown = names.size() <= most + 1 ? names.size() : most;
  for (std::size_t i = 0; i < shown; ++i) {
    const bool isLast = i + 1 == names.size();
    text += (i == 0 ? "" : isLast ? " and " : ", ") + names[i];
  }
  return shown == names.size() ? text : text + fmt::format(" and {} more", names.size() - shown);
}

std::string shareText(double share) {
  constexpr double kPercent = 100.0;
  constexpr double kLeast = 0.005;
  if (std::abs(share) < kLeast) return "less than 1 %";
  return fmt::format("{:.0f} %", kPercent * share);
}

namespace {

// Why there are no measures to speak of.
std::string whyWithout(const SensitivityStats& statistics, std::int32_t variable, const std::string& name) {
  const std::string reason = statistics.notComputedReason(variable, 0);
  if (!reason.empty()) return fmt::format("Measures of {} were not computed: {}.", name, reason);
  return fmt::format("No measure of {} is a number: it is the same in all runs, or has runs without a number.", name);
}

}  // namespace

MeasureSummary summarise(const SensitivityStats& statistics, std::int32_t variable, const MeasureContext& context) {
  if (measuredFactors(statistics, variable, 0).empty())
    return {whyWithout(statistics, variable, context.variable), "", ""};
  switch (statistics.typeId()) {
    case SensitivityStats::kRegression:
      return summariseRegression(statistics, variable, context);
    case SensitivityStats::kMorris:
      return summariseEffects(statistics, variable, context);
    default:
      return summariseShares(statistics, variable, context);
  }
}

}  // namespace tarvex
