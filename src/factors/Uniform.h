#pragma once

#include "factors/IntervalDistribution.h"

namespace tarvex {

// Flat over each of its intervals, which have a probability each.
class Uniform : public IntervalDistribution {
 public:
  Uniform();
  std::unique_ptr<Factor> clone() const override;
  std::int32_t getType() const override { return 2; }

  // False when the interval begins before the last one ends or the list is full.
  [[nodiscard]] bool addInterval(std::unique_ptr<Interval> interval);
  bool append(std::unique_ptr<Interval> interval) override { return addInterval(std::move(interval)); }

  double mean() const override;
  double stdDev() const override;
  double cumulative(double x) const override;
  double density(double x) const override;
  bool isSmooth(double low, double high) const override;

 protected:
  Uniform(const char* type, const char* defaultName) : IntervalDistribution(type, defaultName) {}
  Uniform(const Uniform&) = default;

  const char* placeProblem(const Interval& interval, std::size_t place) const override;
  Moments momentsOf(const Interval& interval) const override;

  // The first interval that ends at x or above, and the probability below it; the interval that holds x, the first of
  // those that touch. Null for none.
  const Interval* reach(double x, double& below) const;
  const Interval* holder(double x) const;
};

}  // namespace tarvex
