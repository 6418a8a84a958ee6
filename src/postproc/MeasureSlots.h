#pragma once

#include <cstdint>
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

// The value of a slot of a variable.
double measureValue(const SensitivityStats& statistics, const IndexRecord& record, std::int32_t variable,
                    std::size_t slot);

}  // namespace tarvex
