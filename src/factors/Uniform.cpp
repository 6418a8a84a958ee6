#include "factors/Uniform.h"

#include <cmath>

#include "factors/properForm.h"

namespace tarvex {

Uniform::Uniform() : Uniform("Uniform", "nonameUnif") {
  store(newInterval());
}

std::unique_ptr<Factor> Uniform::clone() const {
  return std::unique_ptr<Factor>(new Uniform(*this));
}

bool Uniform::addInterval(std::unique_ptr<Interval> interval) {
  if (!accept(roomProblem(count())) || !accept(placeProblem(*interval, count()))) return false;
  store(std::move(interval));
  return true;
}

const char* Uniform::placeProblem(const Interval& interval, std::size_t place) const {
  const bool behind = place == 0 || !(interval.left < intervals_[place - 1]->right);
  return behind ? nullptr : "Interval to insert overloads previous intervals stored";
}

// The halves one by one where the sum of two ends overflows.
double Uniform::mean() const {
  double sum = 0.0;
  for (const auto& interval : intervals_) sum += middle(interval->left, interval->right) * interval->weight;
  return sum;
}

// The root of the mean square, from the cubes of the ends, less the mean's square. It cancels far from 0, with the
// third power of the distance in widths, and overflows above 1e102; there by the moments of the intervals.
double Uniform::stdDev() const {
  double squares = 0.0;
  for (const auto& interval : intervals_) {
    const double a = interval->left;
    const double c = interval->right;
    squares += (c * c * c - a * a * a) * interval->weight / (3.0 * (c - a));
  }
  const double m = mean();
  return properForm(std::sqrt(squares - m * m), stableMoments().stdDev);
}

IntervalDistribution::Moments Uniform::momentsOf(const Interval& interval) const {
  const double half = interval.right / 2.0 - interval.left / 2.0;
  return {middle(interval.left, interval.right), half / std::sqrt(3.0)};
}

// The weights of the intervals below and the share of the one reached; by halves where the width overflows.
double Uniform::cumulative(double x) const {
  double below = 0.0;
  const Interval* interval = reach(x, below);
  if (interval == nullptr || !(interval->left <= x)) return below;
  const double width = interval->right - interval->left;
  if (std::isfinite(width)) return below + (x - interval->left) * interval->weight / width;
  const double half = interval->left / 2.0;
  return below + (x / 2.0 - half) / (interval->right / 2.0 - half) * interval->weight;
}

double Uniform::density(double x) const {
  const Interval* interval = holder(x);
  if (interval == nullptr) return 0.0;
  const double width = interval->right - interval->left;
  return std::isfinite(width) ? interval->weight / width
                              : interval->weight / 2.0 / (interval->right / 2.0 - interval->left / 2.0);
}

bool Uniform::isSmooth(double low, double high) const {
  const Interval* interval = holder(low);
  return interval != nullptr && high <= interval->right;
}

const Interval* Uniform::reach(double x, double& below) const {
  const std::size_t place = index().firstRightFrom(x);
  below = index().weightBefore(place);
  return intervalAt(place);
}

const Interval* Uniform::holder(double x) const {
  const std::size_t place = index().firstRightFrom(x);
  return !std::isnan(x) && place < index().firstLeftAbove(x) ? intervalAt(place) : nullptr;
}

}  // namespace tarvex
