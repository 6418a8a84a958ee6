#include "factors/Uniform.h"

#include <cmath>

namespace tarvex {

Uniform::Uniform() : Uniform("Uniform", "nonameUnif") {
  store(newInterval());
}

std::unique_ptr<Factor> Uniform::clone() const {
  return std::unique_ptr<Factor>(new Uniform(*this));
}

bool Uniform::addInterval(std::unique_ptr<Interval> interval) {
  if (!checkRoom()) return false;
  const bool behind = intervals_.empty() || !(interval->left < intervals_.back()->right);
  if (!accept(behind, "Interval to insert overloads previous intervals stored")) return false;
  store(std::move(interval));
  return true;
}

double Uniform::mean() const {
  double sum = 0.0;
  for (const auto& interval : intervals_) sum += (interval->left + interval->right) / 2.0 * interval->weight;
  return sum;
}

double Uniform::stdDev() const {
  double squares = 0.0;
  for (const auto& interval : intervals_) {
    const double a = interval->left;
    const double c = interval->right;
    squares += (c * c * c - a * a * a) * interval->weight / (3.0 * (c - a));
  }
  const double m = mean();
  return std::sqrt(squares - m * m);
}

double Uniform::cumulative(double x) const {
  double below = 0.0;
  const Interval* interval = reach(x, below);
  if (interval == nullptr || !(interval->left <= x)) return below;
  return below + (x - interval->left) * interval->weight / (interval->right - interval->left);
}

double Uniform::density(double x) const {
  const Interval* interval = holder(x);
  return interval == nullptr ? 0.0 : interval->weight / (interval->right - interval->left);
}

const Interval* Uniform::reach(double x, double& below) const {
  below = 0.0;
  for (const auto& interval : intervals_) {
    if (!(interval->right < x)) return interval.get();
    below += interval->weight;
  }
  return nullptr;
}

const Interval* Uniform::holder(double x) const {
  for (const auto& interval : intervals_) {
    if (!(interval->left <= x)) return nullptr;
    if (x <= interval->right) return interval.get();
  }
  return nullptr;
}

}  // namespace tarvex
