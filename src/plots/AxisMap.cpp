#include "plots/AxisMap.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace tarvex {

namespace {}  // namespace

AxisMap::AxisMap(const Axis& axis, double from, double to)
    : lower_(axis.lower), upper_(axis.upper), from_(from), to_(to) {}

double AxisMap::operator()(double value) const {
  // Halves: the difference of two limits may be beyond the range of a double.
  const double part = (value / 2.0 - lower_ / 2.0) / (upper_ / 2.0 - lower_ / 2.0);
  if (std::isnan(part)) return part;
  return std::clamp(from_ + part * (to_ - from_), -kFarOutside, kFarOutside);
}

double AxisMap::clamped(double value) const {
  return std::isnan(value) ? value : (*this)(std::clamp(value, lower_, upper_));
}

double AxisMap::inverse(double position) const {
  constexpr double kLargest = std::numeric_limits<double>::max();
  const double part = (position - from_) / (to_ - from_);
  if (!std::isfinite(part)) return std::numeric_limits<double>::quiet_NaN();
  // As a mean of both limits: exact at either.
  return std::clamp(lower_ * (1.0 - part) + upper_ * part, -kLargest, kLargest);
}

}  // namespace tarvex
