#pragma once

#include <cmath>

namespace tarvex {

// The laid-down formula of a quantity beside a stable form of the same quantity, which costs more but neither overflows
// nor cancels. The formula's result stands while the two agree within a hundred-thousandth: its bits, and the digits
// that it has lost far from 0 until then, are part of users' numbers. Where overflow, underflow or cancellation spoiled
// it, the stable form takes over. `scale` is the size against which a difference counts. A stable form that isn't
// finite decides nothing.
inline double properForm(double formula, double stable, double scale) {
  constexpr double kAgreement = 1e-5;
  if (!std::isfinite(stable) || std::fabs(formula - stable) <= kAgreement * std::fabs(scale)) return formula;
  return stable;
}

// For quantities that are never 0 by cancellation: deviations, densities.
inline double properForm(double formula, double stable) {
  return properForm(formula, stable, stable);
}

// The middle of two numbers, however large.
inline double middle(double a, double b) {
  const double sum = a + b;
  return std::isfinite(sum) ? sum / 2.0 : a / 2.0 + b / 2.0;
}

}  // namespace tarvex
