#include "factors/LogUniform.h"

#include <cmath>

#include "factors/properForm.h"

namespace tarvex {
namespace {

// Whether the ends are so near to each other that the roundings of their logarithms count for more than 1e-7 of the
// difference.
bool isNarrow(const Interval& interval) {
  constexpr double kLost = 2.2e-9;  // the spacing of doubles at 1, over 1e-7
  constexpr double kFar = 1e-4;     // spares the logarithms: none is above 745
  const double width = interval.right - interval.left;
  if (!(width < kFar * interval.left)) return false;
  return width < kLost * std::fabs(std::log(interval.left)) * interval.left;
}

// ln to - ln from, two places in one interval; in a narrow one ln(1 + (to - from) / from), of full precision.
double logRatio(double from, double to, bool narrow) {
  return narrow ? std::log1p((to - from) / from) : std::log(to) - std::log(from);
}

double logWidth(const Interval& interval) {
  return logRatio(interval.left, interval.right, isNarrow(interval));
}

// 1 - t / artanh(t), 0 < t < 1, artanh(t) being half of `width`. Below 0.1 by the series of artanh(t) / t, whose first
// term left out is below 1e-19.
double concaveness(double t, double width) {
  constexpr double kSeries = 0.1;
  constexpr int kTerms = 9;
  if (t >= kSeries) return 1.0 - 2.0 * t / width;
  double sum = 0.0;
  double power = 1.0;
  for (int j = 1; j <= kTerms; ++j) {
    power *= t * t;
    sum += power / (2 * j + 1);
  }
  return sum / (1.0 + sum);
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

// The sum of (c - a) w / (ln c - ln a); by the moments of the intervals where a logarithm's lost digits show in it.
double LogUniform::mean() const {
  double sum = 0.0;
  for (const auto& interval : intervals_) {
    sum += (interval->right - interval->left) * interval->weight / logWidth(*interval);
  }
  const Moments stable = stableMoments();
  return properForm(sum, stable.mean, stable.stdDev);
}

// The root of the mean square less the mean's square. It cancels for ends that are near to each other and overflows
// above 1e154; there by the moments of the intervals.
double LogUniform::stdDev() const {
  double squares = 0.0;
  for (const auto& interval : intervals_) {
    const double a = interval->left;
    const double c = interval->right;
    squares += (c * c - a * a) * interval->weight / (2.0 * logWidth(*interval));
  }
  const double m = mean();
  return properForm(std::sqrt(squares - m * m), stableMoments().stdDev);
}

// With M the middle of the interval, t half its width over M and q = t / artanh(t): mean M q, variance M^2 q (1 - q).
IntervalDistribution::Moments LogUniform::momentsOf(const Interval& interval) const {
  const double m = middle(interval.left, interval.right);
  const double t = (interval.right / 2.0 - interval.left / 2.0) / m;
  const double rest = concaveness(t, logWidth(interval));
  return {m * (1.0 - rest), m * std::sqrt((1.0 - rest) * rest)};
}

double LogUniform::cumulative(double x) const {
  double below = 0.0;
  const Interval* interval = reach(x, below);
  if (interval == nullptr || !(interval->left <= x)) return below;
  const bool narrow = isNarrow(*interval);
  const double share = logRatio(interval->left, x, narrow) * interval->weight;
  return below + share / logRatio(interval->left, interval->right, narrow);
}

double LogUniform::density(double x) const {
  const Interval* interval = holder(x);
  return interval == nullptr ? 0.0 : interval->weight / (logWidth(*interval) * x);
}

}  // namespace tarvex
