#pragma once

#include <unordered_map>

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
  [[nodiscard]] bool addPoint(std::unique_ptr<Interval> point);
  bool append(std::unique_ptr<Interval> point) override { return addPoint(std::move(point)); }

  double mean() const override;
  double stdDev() const override;
  double cumulative(double x) const override;
  double density(double x) const override;  // the probability of the point

  // The first point whose cumulated weight lies above u; the last one for a u past the total, nan without points. Needs
  // no table.
  virtual double discreteInverse(double u) const;
  bool needsTable() const override { return false; }
  double value(double u) const override { return discreteInverse(u); }

 protected:
  Discrete(const Discrete& other) : IntervalDistribution(other) {}

  const char* placeProblem(const Interval& point, std::size_t place) const override;
  Moments momentsOf(const Interval& point) const override { return {point.left, 0.0}; }

 private:
  void listChanged() override {
    places_.clear();
    placed_ = 0;
  }
  // Where the first point of the value stands; count() for a value that no point has.
  std::size_t placeOf(double value) const;

  mutable std::unordered_map<double, std::size_t> places_;  // of the values of the list or of its beginning
  mutable std::size_t placed_ = 0;                          // points that places_ knows
};

}  // namespace tarvex
