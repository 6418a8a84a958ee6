#include "factors/Discrete.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "factors/properForm.h"

namespace tarvex {

Discrete::Discrete() : IntervalDistribution("Discrete", "nonameDisc") {
  store(std::make_unique<Interval>(0.0, 1.0, 0.5));
  store(std::make_unique<Interval>(1.0, 2.0, 0.5));
}

std::unique_ptr<Factor> Discrete::clone() const {
  return std::unique_ptr<Factor>(new Discrete(*this));
}

bool Discrete::addPoint(std::unique_ptr<Interval> point) {
  if (!accept(roomProblem(count())) || !accept(placeProblem(*point, count()))) return false;
  store(std::move(point));
  return true;
}

const char* Discrete::placeProblem(const Interval& point, std::size_t place) const {
  return placeOf(point.left) < place ? "The new point already exists" : nullptr;
}

double Discrete::mean() const {
  double sum = 0.0;
  for (const auto& point : intervals_) sum += point->weight * point->left;
  return sum;
}

// The root of the mean square less the mean's square; around the mean where that cancels, far from 0.
double Discrete::stdDev() const {
  double squares = 0.0;
  for (const auto& point : intervals_) squares += point->weight * point->left * point->left;
  const double m = mean();
  return properForm(std::sqrt(squares - m * m), stableMoments().stdDev);
}

double Discrete::cumulative(double x) const {
  return index().weightBefore(index().firstLeftAbove(x));
}

double Discrete::density(double x) const {
  const Interval* point = intervalAt(placeOf(x));
  return point == nullptr ? 0.0 : point->weight;
}

double Discrete::discreteInverse(double u) const {
  if (intervals_.empty()) return std::numeric_limits<double>::quiet_NaN();
  return intervals_[std::min(index().firstSumAbove(u), count() - 1)]->left;
}

std::size_t Discrete::placeOf(double value) const {
  for (; placed_ < count(); ++placed_) places_.emplace(intervals_[placed_]->left, placed_);
  const auto found = places_.find(value);
  return found == places_.end() ? count() : found->second;
}

}  // namespace tarvex
