// What RegressionStats did not compute, and how that is told from what is stored.
#include <algorithm>

#include "postproc/CriticalValues.h"
#include "postproc/RegressionStats.h"

namespace tarvex {

namespace {

double slotOf(const IndexRecord& record, std::int32_t variable, std::int32_t slot) {
  return record.values[static_cast<std::size_t>(variable) * RegressionStats::kSlots + static_cast<std::size_t>(slot)];
}

bool isOnRanks(std::int32_t measure) {
  constexpr std::int32_t kOnRanks[] = {RegressionStats::kSpea, RegressionStats::kPrcc, RegressionStats::kSrrc,
                                       RegressionStats::kSmirnov};
  return std::ranges::find(kOnRanks, measure) != std::end(kOnRanks);
}

}  // namespace

bool RegressionStats::hasTest(std::int32_t measure) const {
  constexpr std::int32_t kTested[] = {kPear, kSpea, kSrc, kSrrc};
  return std::ranges::find(kTested, measure) != std::end(kTested) && studentQuantile(1, alpha) > 0.0;
}

// The slot of every active factor holds that value.
bool RegressionStats::allAre(double value, std::int32_t variable, std::int32_t slot) const {
  return std::ranges::all_of(records, [&](const IndexRecord& record) {
    return record.kind != FactorKind::Uncertain || slotOf(record, variable, slot) == value;
  });
}

std::string RegressionStats::notComputedReason(std::int32_t variable, std::int32_t slot) const {
  if (!computed || variable < 0 || variable >= variableCount || slot < 0 || slot >= kSlots) return {};
  const std::int32_t measure = slot % kMeasures;
  for (const DataKind kind : {kRaw, kRanks}) {
    const std::int32_t end = singular_[static_cast<std::size_t>(kind)];
    // The ranks come after all raw data, and Smirnov after all ranks.
    const bool comesAfter = kind == kRaw ? isOnRanks(measure) : measure == kSmirnov;
    const bool isOfKind = kind == kRaw || isOnRanks(measure);
    if (end == kNone || !isOfKind || (variable < end && !comesAfter)) continue;
    std::string reason = kind == kRaw ? "the correlation matrix" : "the correlation matrix of the ranks";
    if (variable != end) reason += " of variable " + std::to_string(end + 1);
    return reason + " is singular";
  }
  if (measure == kSmirnov && allAre(kNoDistance, variable, kSmirnov)) return "one run can't be divided";
  return slot >= kFlagSlots && !hasTest(measure) ? "this measure has no test" : "";
}

// A singular matrix leaves ones at its variable and zeros behind it, and so it is found again in a file:
// - The mean of ranks is at least 1. Where all are 0 the ranks were never made, so a raw matrix was singular: that of
//   the variable whose R squared on ranks is 1, as all others have 0 there.
// - A distance of Smirnov is never 0. A variable with ones on ranks is the singular one, if the others have no
//   distances, and if SPEA isn't significant: that is said of a correlation of exactly 1 alone, not of what six digits
//   make one.
void RegressionStats::findSingular() {
  singular_ = {kNone, kNone};
  const bool hasRanks = std::ranges::any_of(rankMoments, [](const ColumnMoments& m) { return m.mean != 0.0; });
  for (std::int32_t v = 0; v < variableCount; ++v) {
    const auto& determination = determinations_[static_cast<std::size_t>(v)];
    if (determination[1] != kSingularValue || determination[3] != kSingularValue) continue;
    if (!hasRanks) {
      singular_[kRaw] = v;
      return;
    }
    bool isSingular = allAre(0.0, v, kFlagSlots + kSpea);
    for (const std::int32_t measure : {kSpea, kPrcc, kSrrc, kSmirnov})
      isSingular = isSingular && allAre(kSingularValue, v, measure);
    for (std::int32_t other = 0; other < variableCount; ++other)
      isSingular = isSingular && (other == v || allAre(0.0, other, kSmirnov));
    if (isSingular) {
      singular_[kRanks] = v;
      return;
    }
  }
}

}  // namespace tarvex
