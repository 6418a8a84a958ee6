#pragma once

#include <string>
#include <string_view>

#include "postproc/SensitivityStats.h"

namespace tarvex {

// How the cells of result tables show numbers. Infinities and values that are not numbers are "inf", "-inf" and "nan",
// padded like any other number of their form.

// Measures: "%.4f" for sizes from 0.001 to 10000, else "%7.3g".
std::string measureCell(double value);
// Descriptive statistics and points of curves: "%7f" for the same sizes, else "%7.3g".
std::string statisticCell(double value);
// "%7.3g"
std::string shortNumber(double value);
// What stands in the place of a measure of a factor without one: "Constant", "Related factor", "Correlated factor".
// Empty for an uncertain factor.
std::string_view kindCell(FactorKind kind);
// What stands in the place of a measure that the statistics know a notComputedReason() for.
inline constexpr std::string_view kNotComputed = "not computed";
// `text` after as many blanks as make it 20 characters wide: the cell of a saved table.
std::string savedCell(std::string_view text);

}  // namespace tarvex
