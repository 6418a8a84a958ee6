#pragma once

#include "factors/IntervalDistribution.h"

namespace tarvex {

// Points with a probability each, in ascending order. A point is an interval whose `left` is the value.
class Discrete : public IntervalDistribution {
 public:
  Discrete();
  std::unique_ptr<Factor> clone() const override;
  std::int32_t getType() const override { return 11; }

  bool holdsPoints() const override { return true; }
  // False when the value is there already or the list is full. The caller keeps the order.
  bool addPoint(std::unique_ptr<Interval> point);
  bool append(std::unique_ptr<Interval> point) override { return addPoint(std::move(point)); }

  double mean() const override;
  double stdDev() const override;
  double cumulative(double x) const override;
  double density(double x) const override;  // the probability of the point

  // The first point whose cumulated weight lies above u; the last one for a u past the total. Needs no table.
  // Requires: a point.
  virtual double discreteInverse(double u) const;
  bool needsTable() const override { return false; }
  double value(double u) const override { return discreteInverse(u); }

 protected:
  Discrete(const Discrete&) = default;
};

}  // namespace tarvex
