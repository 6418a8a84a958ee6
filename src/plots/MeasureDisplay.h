#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "plots/ColourSet.h"

namespace tarvex {

class SensitivityStats;

// Which records of a result a display shows, in which order, and how.
struct MeasureDisplay {
  enum class Order { List, Value };  // as the result has them; the largest size first, those without a measure last

  ColourSet colours = ColourSet::Distinct;
  Order order = Order::List;
  std::size_t most = 0;                                   // that many of the largest; 0: all
  std::optional<std::vector<std::int32_t>> records = {};  // their numbers, upwards; none: all
  bool scaled = false;                                    // what is shown of a measure adds up to 1
};

// The numbers of the records that are shown, in their order: those with one of the measures or with a reason for none.
// The size of one with several measures is its largest.
std::vector<std::size_t> displayedRecords(const SensitivityStats& stats, std::int32_t variable,
                                          const std::vector<std::int32_t>& slots, const MeasureDisplay& display);

// The measure of every record as it is shown, by the number of the record. Scaled values are shares of the sum of the
// finite ones of `shown`; where that isn't above 0 they stay as they are.
std::vector<std::optional<double>> displayedColumn(const SensitivityStats& stats, std::int32_t variable,
                                                   std::int32_t slot, const std::vector<std::size_t>& shown,
                                                   bool scaled);

// The place of a record among the uncertain ones, which the system's lists of colours go by.
std::size_t uncertainPlace(const SensitivityStats& stats, std::size_t record);
// Of a slice or a curve: the factor's own, or the one at `place` of the system's list.
Colour recordColour(const SensitivityStats& stats, std::size_t record, std::size_t place, ColourSet colours);

}  // namespace tarvex
