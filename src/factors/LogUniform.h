#pragma once

#include "factors/Uniform.h"

namespace tarvex {

// Flat in the logarithm over each of its intervals.
class LogUniform : public Uniform {
 public:
  LogUniform();
  std::unique_ptr<Factor> clone() const override;
  std::int32_t getType() const override { return 3; }

  std::unique_ptr<Interval> newInterval() const override;

  double mean() const override;
  double stdDev() const override;
  double cumulative(double x) const override;
  double density(double x) const override;

 protected:
  LogUniform(const LogUniform&) = default;

  Moments momentsOf(const Interval& interval) const override;
};

}  // namespace tarvex
