#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "plots/ColourSet.h"
#include "plots/Figure.h"
#include "plots/MeasureDisplay.h"

namespace tarvex {

class SensitivityStats;
struct TimedVariables;

// The displays of sensitivity measures of one variable, named `variableName`. Factors without a measure keep their row,
// with the reason in gray; values that aren't finite have their text and no bar or slice.
// Requires: computed statistics and a variable that they have.

// Of a value that each record holds.
struct MeasureChoice {
  std::string word;   // for file names and command lines: "src", "first", "total", "importance", ...
  std::string title;  // as panels name it
  std::int32_t slot = 0;
};
// Slots count as in the record of a single factor. The total order of FAST is on offer when there is one.
std::vector<MeasureChoice> measureChoices(const SensitivityStats& stats);

// The slots that are shown where nobody chose: indices of first and total order, else what the statistics offer first.
std::vector<std::int32_t> usualSlots(const SensitivityStats& stats);
// Whether the measures are shares of a whole, such as pies show: indices of FAST and Sobol designs, importance.
bool dividesAWhole(const SensitivityStats& stats);

// A bar a factor (group, term), green where significantly above 0 and red where not; one colour where there is no test.
// Measures of first and total order share a figure when `slots` names both.
Figure measureBars(const SensitivityStats& stats, std::int32_t variable, const std::string& variableName,
                   const std::vector<std::int32_t>& slots, const MeasureDisplay& display = {});
// The slots of first and total order, where there are both: what factors do alone, and with all others.
std::optional<std::pair<std::int32_t, std::int32_t>> interactionSlots(const SensitivityStats& stats);
// A bar a factor: its first order, and behind it what is missing to its total, the share of its interactions. An
// estimate of the total below that of the first order has no such share; its text says so.
// Requires: interactionSlots().
Figure interactionBars(const SensitivityStats& stats, std::int32_t variable, const std::string& variableName,
                       const MeasureDisplay& display = {});
// Shares of the positive values, for measures that divide a whole: indices of FAST and Sobol, importance. What
// display.most leaves out is one slice.
Figure measurePies(const SensitivityStats& stats, std::int32_t variable, const std::string& variableName,
                   const std::vector<std::int32_t>& slots, const MeasureDisplay& display = {});
// The plane of Morris: mean of the absolute effects against their spread, a labelled point a factor, with lines where
// the spread is as large as the mean, half and a tenth of it.
Figure morrisPlane(const SensitivityStats& stats, std::int32_t variable, const std::string& variableName,
                   const MeasureDisplay& display = {});
// One measure over the times at which an output is analysed, a line a factor; at most ten, those of the largest sizes.
Figure measureCurves(const SensitivityStats& stats, const TimedVariables& times, std::int32_t slot,
                     const MeasureDisplay& display = {});
// The values of one measure beside the factors' names, uncertain factors only.
Figure forecastBars(const SensitivityStats& stats, std::int32_t variable, const std::string& variableName,
                    std::int32_t slot, ColourSet colours = ColourSet::Distinct);

// Up to ten records of one factor, upwards by their first (slot 0) or total (slot 1) value: number of the record and
// value. What is no number comes last.
std::vector<std::pair<std::int32_t, double>> sobolTopTen(const SensitivityStats& stats, std::int32_t variable,
                                                         std::int32_t slot);

// All pictures of a variable's measures, each with a word for its file name.
std::vector<std::pair<std::string, Figure>> measureFigures(const SensitivityStats& stats, std::int32_t variable,
                                                           const std::string& variableName,
                                                           ColourSet colours = ColourSet::Distinct);

}  // namespace tarvex
