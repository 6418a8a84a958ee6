#include "factors/IntervalIndex.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace tarvex {
namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();

void pushMaximum(std::vector<double>& maxima, double value) {
  maxima.push_back(maxima.empty() ? value : std::max(maxima.back(), value));
}

double nanAs(double replacement, double value) {
  return std::isnan(value) ? replacement : value;
}

template <class Passes>
std::size_t firstNotPassed(const std::vector<double>& maxima, Passes passes) {
  return static_cast<std::size_t>(std::partition_point(maxima.begin(), maxima.end(), passes) - maxima.begin());
}

}  // namespace

void IntervalIndex::clear() {
  lefts_.clear();
  rights_.clear();
  sums_.assign(1, 0.0);
  reached_.clear();
}

void IntervalIndex::extend(const std::vector<std::unique_ptr<Interval>>& intervals) {
  for (std::size_t i = lefts_.size(); i < intervals.size(); ++i) {
    const Interval& interval = *intervals[i];
    pushMaximum(lefts_, nanAs(kInfinity, interval.left));
    pushMaximum(rights_, nanAs(kInfinity, interval.right));
    sums_.push_back(sums_.back() + interval.weight);
    pushMaximum(reached_, nanAs(-kInfinity, sums_.back()));
  }
}

std::size_t IntervalIndex::firstRightFrom(double x) const {
  return firstNotPassed(rights_, [x](double right) { return right < x; });
}

std::size_t IntervalIndex::firstLeftAbove(double x) const {
  return firstNotPassed(lefts_, [x](double left) { return !(left > x); });
}

std::size_t IntervalIndex::firstSumAbove(double u) const {
  return firstNotPassed(reached_, [u](double sum) { return !(u < sum); });
}

}  // namespace tarvex
