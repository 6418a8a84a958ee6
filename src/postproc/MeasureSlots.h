#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace tarvex {

class SensitivityStats;
struct IndexRecord;

// A value that a record holds for each variable, under the name by which reports know it.
struct MeasureSlot {
  std::string name;
  std::size_t slot;
};

// The slots of a record, in their order: for regression the measures, their ranks, their significance.
std::vector<MeasureSlot> measureSlots(const SensitivityStats& statistics, const IndexRecord& record);

// The value of a slot of a variable as it may be shown; none where there is no measure: for a record whose kindCell()
// or a slot whose notComputedReason() says why, and for the rank and the flag of a measure that is no number.
// Requires: a variable and a slot that the statistics have.
std::optional<double> measureValue(const SensitivityStats& statistics, const IndexRecord& record, std::int32_t variable,
                                   std::size_t slot);

// Up to `most` records with a finite value in a slot, by position, the largest in size first.
std::vector<std::size_t> strongestRecords(const SensitivityStats& statistics, std::int32_t variable, std::int32_t slot,
                                          std::size_t most);

}  // namespace tarvex
