#include "factors/LogUniform.h"

#include <cmath>

namespace tarvex {
namespace {

double logWidth(const Interval& interval) {
  return std::log(interval.right) - std::log(interval.left);
}

}  // namespace

LogUniform::LogUniform() : Uniform("LogUniform", "nonameLogUnif") {
  store(LogUniform::newInterval());
}

std::unique_ptr<Factor> LogUniform::clone() const {
  return std::unique_ptr<Factor>(new LogUniform(*this));
}

std::unique_ptr<Interval> LogUniform::newInterval() const {
  return std::make_unique<LogInterval>();
}

double LogUniform::mean() const {
  double sum = 0.0;
  for (const auto& interval : intervals_) {
    sum += (interval->right - interval->left) * interval->weight / logWidth(*interval);
  }
  return sum;
}

double LogUniform::stdDev() const {
  double squares = 0.0;
  for (const auto& interval : intervals_) {
    const double a = interval->left;
    const double c = interval->right;
    squares += (c * c - a * a) * interval->weight / (2.0 * logWidth(*interval));
  }
  const double m = mean();
  return std::sqrt(squares - m * m);
}

double LogUniform::cumulative(double x) const {
  double below = 0.0;
  const Interval* interval = reach(x, below);
  if (interval == nullptr || !(interval->left <= x)) return below;
  return below + (std::log(x) - std::log(interval->left)) * interval->weight / logWidth(*interval);
}

double LogUniform::density(double x) const {
  const Interval* interval = holder(x);
  return interval == nullptr ? 0.0 : interval->weight / (logWidth(*interval) * x);
}

}  // namespace tarvex
