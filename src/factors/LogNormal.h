#pragma once

#include "factors/Normal.h"

namespace tarvex {

// The exponential of a normal variable, whose mean and standard deviation are its fields.
class LogNormal : public Normal {
 public:
  LogNormal() : Normal("LogNormal", "nonameLogNorm") {}
  std::unique_ptr<Factor> clone() const override;
  std::int32_t getType() const override { return 1; }

  double mean() const override;
  double stdDev() const override;
  double cumulative(double x) const override;
  double density(double x) const override;

 protected:
  LogNormal(const LogNormal&) = default;
};

}  // namespace tarvex
