#include "factors/Discrete.h"

#include <algorithm>
#include <cmath>

namespace tarvex {

Discrete::Discrete() : IntervalDistribution("Discrete", "nonameDisc") {
  store(std::make_unique<Interval>(0.0, 1.0, 0.5));
  store(std::make_unique<Interval>(1.0, 2.0, 0.5));
}

std::unique_ptr<Factor> Discrete::clone() const {
  return std::unique_ptr<Factor>(new Discrete(*this));
}

bool Discrete::addPoint(std::unique_ptr<Interval> point) {
  if (!checkRoom()) return false;
  const bool isNew = std::none_of(intervals_.begin(), intervals_.end(),
                                  [&](const auto& stored) { return stored->left == point->left; });
  if (!accept(isNew, "The new point already exists")) return false;
  store(std::move(point));
  return true;
}

double Discrete::mean() const {
  double sum = 0.0;
  for (const auto& point : intervals_) sum += point->weight * point->left;
  return sum;
}

double Discrete::stdDev() const {
  double squares = 0.0;
  for (const auto& point : intervals_) squares += point->weight * point->left * point->left;
  const double m = mean();
  return std::sqrt(squares - m * m);
}

double Discrete::cumulative(double x) const {
  double sum = 0.0;
  for (const auto& point : intervals_) {
    if (point->left > x) break;
    sum += point->weight;
  }
  return sum;
}

double Discrete::density(double x) const {
  for (const auto& point : intervals_) {
    if (point->left == x) return point->weight;
  }
  return 0.0;
}

double Discrete::discreteInverse(double u) const {
  std::size_t i = 0;
  double sum = intervals_[0]->weight;
  while (!(u < sum) && i + 1 < count()) sum += intervals_[++i]->weight;
  return intervals_[i]->left;
}

}  // namespace tarvex
