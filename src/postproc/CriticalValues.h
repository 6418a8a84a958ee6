#pragma once

#include <array>
#include <cstdint>

namespace tarvex {

// The levels of confidence that a user is offered, those of the tables.
inline constexpr std::array kStudentLevels = {0.75, 0.9, 0.95, 0.975, 0.99, 0.995, 0.9995};
inline constexpr std::array kKolmogorovLevels = {0.9, 0.95, 0.98, 0.99};

// Critical value of one-sided Student t, from the table of printed values: confidence 0.75, 0.9, 0.95, 0.975, 0.99,
// 0.995 or 0.9995, each within its window. -1.0 for any other confidence and for less than one degree of freedom.
double studentQuantile(std::int32_t degreesOfFreedom, double confidence);

// Half-width of the Kolmogorov band around an empirical distribution of n values, for confidence 0.8, 0.9, 0.95, 0.98
// or 0.99; -1.0 for any other.
double kolmogorovHalfWidth(std::int32_t n, double confidence);

}  // namespace tarvex
