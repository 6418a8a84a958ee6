#pragma once

#include "plots/Figure.h"

namespace tarvex {

// On the canvas; beyond any picture, and safe to compute with.
inline constexpr double kFarOutside = 1e6;

// From values of an axis to positions on the canvas, and back.
class AxisMap {
 public:
  AxisMap() = default;
  // `from` is where the lower limit stands, `to` the upper. Requires: finite limits, lower < upper.
  AxisMap(const Axis& axis, double from, double to);

  // Far outside for values far outside; nan for nan.
  double operator()(double value) const;
  bool holds(double value) const { return value >= lower_ && value <= upper_; }
  double clamped(double value) const;
  // The value at a position. A position outside of the axis has one, too, as far as doubles go.
  double inverse(double position) const;

  double lower() const { return lower_; }
  double upper() const { return upper_; }
  double from() const { return from_; }
  double to() const { return to_; }

 private:
  double lower_ = 0.0, upper_ = 1.0;
  double from_ = 0.0, to_ = 1.0;
};

}  // namespace tarvex
