#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace tarvex {

class SensitivityStats;

// What the displays of measures share.

// A value per record; none where the record is of a factor without a measure, or of a term without this one, and where
// it was not computed.
using MeasureColumn = std::vector<std::optional<double>>;
MeasureColumn measureColumn(const SensitivityStats& stats, std::int32_t variable, std::int32_t slot);
// The number's text as result tables show it, without the blanks before it.
std::string measureText(double value);
// What the displays call a slot; of FAST over groups it says so.
std::string measureTitle(const SensitivityStats& stats, std::int32_t slot);

}  // namespace tarvex
