#include "factors/InverseSearch.h"

#include <cmath>

#include "factors/properForm.h"

namespace tarvex {
namespace {

constexpr double kSearchTolerance = 1e-11;   // of a cumulative, and the lower end's own cumulative
constexpr double kUpperEnd = 0.99999999999;  // the upper end's
constexpr double kPercent = 0.01;

// The pass counter of one loop of the counted search. Every entry of a loop takes a new one.
class PassCounter {
 public:
  // To be asked after each pass.
  bool expired() { return passes_++ > kMaxPasses; }

 private:
  static constexpr int kMaxPasses = 1000;
  int passes_ = 0;
};

// The steps of the counted search. The order of its operations is part of the result: it stays as it is.
class CountedSearch {
 public:
  CountedSearch(const Distribution& distribution, std::vector<TablePoint>& points)
      : distribution_(distribution), points_(points), stdDev_(distribution.stdDev()) {}

  bool run() { return bracket() && lowerEnd() && percentiles() && upperEnd() && !sawNan_; }

 private:
  // A nan ends every loop below as if it had arrived.
  double cumulative(double x) {
    const double p = distribution_.cumulative(x);
    sawNan_ = sawNan_ || std::isnan(p);
    return p;
  }

  bool bracket() {
    const double mean = distribution_.mean();
    lo_ = mean - stdDev_;
    for (PassCounter counter; cumulative(lo_) > kSearchTolerance;) {
      lo_ -= stdDev_;
      if (counter.expired()) return false;
    }
    hi_ = mean + stdDev_;
    for (PassCounter counter; cumulative(hi_) < kUpperEnd;) {
      hi_ += stdDev_;
      if (counter.expired()) return false;
    }
    return true;
  }

  bool lowerEnd() {
    x_ = lo_ + stdDev_;
    double step = x_ - lo_;
    p_ = cumulative(x_);
    for (PassCounter counter; p_ > kSearchTolerance;) {
      p_ = cumulative(x_);
      for (PassCounter inner; p_ <= 0.0;) {
        x_ += step;
        step /= 2.0;
        p_ = cumulative(x_);
        if (inner.expired()) return false;
      }
      x_ -= step;
      if (counter.expired()) return false;
    }
    x_ += step;
    points_.push_back({x_, p_});
    return true;
  }

  bool percentiles() {
    xPrevious_ = x_;
    pPrevious_ = 0.0;
    const double firstStep = (hi_ - xPrevious_) * 0.001;
    x_ = xPrevious_ + firstStep;
    for (target_ = kPercent; target_ < 1.0; target_ += kPercent) {
      if (!stepPast(firstStep) || !narrow()) return false;
      points_.push_back({x_, p_});
    }
    return true;
  }

  // Walks up until the cumulative reaches the target, faster where it is flat.
  bool stepPast(double step) {
    p_ = cumulative(x_);
    for (PassCounter counter; p_ < target_;) {
      if ((p_ - pPrevious_) / (x_ - xPrevious_) < 0.1) step *= 2.0;
      xPrevious_ = x_;
      pPrevious_ = p_;
      x_ += step;
      p_ = cumulative(x_);
      if (counter.expired()) return false;
    }
    return true;
  }

  // Bisects the last step.
  bool narrow() {
    for (PassCounter counter; std::fabs(p_ - pPrevious_) > kSearchTolerance;) {
      const double m = (xPrevious_ + x_) / 2.0;
      const double pm = cumulative(m);
      if (pm < target_) {
        xPrevious_ = m;
        pPrevious_ = pm;
      } else {
        x_ = m;
        p_ = pm;
      }
      if (counter.expired()) return false;
    }
    return true;
  }

  bool upperEnd() {
    double step = (hi_ - x_) * 0.1;
    // The target is what the sum of a hundred percents came to: just above 1.
    for (PassCounter counter; std::fabs(p_ - target_) > kSearchTolerance;) {
      p_ = cumulative(x_);
      for (PassCounter inner; p_ >= 1.0;) {
        x_ -= step;
        step /= 2.0;
        p_ = cumulative(x_);
        if (inner.expired()) return false;
      }
      x_ += step;
      if (counter.expired()) return false;
    }
    points_.push_back({x_ - step, p_});
    return true;
  }

  const Distribution& distribution_;
  std::vector<TablePoint>& points_;
  const double stdDev_;
  bool sawNan_ = false;
  double lo_ = 0.0;
  double hi_ = 0.0;
  double x_ = 0.0;
  double p_ = 0.0;
  double xPrevious_ = 0.0;
  double pPrevious_ = 0.0;
  double target_ = 0.0;
};

struct Bracket {
  TablePoint lo;
  TablePoint hi;
};

// Halves the bracket: `below` tells the points that belong under the target, `done` when it is narrow enough. Ends at
// neighbouring doubles at the latest. False at a point without a cumulative.
template <class Below, class Done>
[[nodiscard]] bool bisect(const Distribution& distribution, Bracket& bracket, Below below, Done done) {
  while (!done(bracket)) {
    const double m = middle(bracket.lo.x, bracket.hi.x);
    if (m == bracket.lo.x || m == bracket.hi.x) return true;
    const double pm = distribution.cumulative(m);
    if (!(pm >= 0.0)) return false;
    (below(pm) ? bracket.lo : bracket.hi) = {m, pm};
  }
  return true;
}

// A point beyond which the cumulative has reached its end on one side, found by doubling the distance from the mean.
template <class Reached>
bool findEnd(const Distribution& distribution, double distance, Reached reached, TablePoint& end) {
  const double mean = distribution.mean();
  for (;; distance *= 2.0) {
    end.x = mean + distance;
    if (!std::isfinite(end.x)) return false;
    end.p = distribution.cumulative(end.x);
    if (reached(end.p)) return true;
  }
}

}  // namespace

bool countedSearch(const Distribution& distribution, std::vector<TablePoint>& points) {
  return CountedSearch(distribution, points).run();
}

bool boundedSearch(const Distribution& distribution, std::vector<TablePoint>& points) {
  const double stdDev = distribution.stdDev();
  if (!(stdDev > 0.0)) return false;
  TablePoint lowest;
  TablePoint highest;
  if (!findEnd(
          distribution, -stdDev, [](double p) { return p >= 0.0 && p <= kSearchTolerance; }, lowest))
    return false;
  if (!findEnd(
          distribution, stdDev, [](double p) { return p >= kUpperEnd; }, highest))
    return false;

  // Both ends lie inside the support: the lowest point with a cumulative above 0, the highest with one below 1.
  Bracket bracket{lowest, highest};
  if (!bisect(
          distribution, bracket, [](double p) { return p <= 0.0; },
          [](const Bracket& b) { return b.hi.p <= kSearchTolerance; }))
    return false;
  points.push_back(bracket.hi);
  for (double target = kPercent; target < 1.0; target += kPercent) {
    bracket.hi = highest;
    if (!bisect(
            distribution, bracket, [target](double p) { return p < target; },
            [target](const Bracket& b) {
              return b.hi.p - target <= kSearchTolerance || b.hi.p - b.lo.p <= kSearchTolerance;
            }))
      return false;
    points.push_back(bracket.hi);
  }
  bracket.hi = highest;
  if (!bisect(
          distribution, bracket, [](double p) { return p < 1.0; },
          [](const Bracket& b) { return 1.0 - b.lo.p <= kSearchTolerance; }))
    return false;
  points.push_back(bracket.lo);
  return true;
}

}  // namespace tarvex
