#pragma once

#include <cstddef>
#include <memory>
#include <vector>

#include "factors/Interval.h"

namespace tarvex {

// Where a walk along a list of intervals from its start would stop, found in the logarithm of its length, and the
// weights summed on the way. The lists of files needn't be in order, so what is searched is the running maximum of a
// bound: it passes a value where the first of them does.
class IntervalIndex {
 public:
  void clear();
  // Takes in the intervals behind those that it knows. They stay as they are until clear().
  void extend(const std::vector<std::unique_ptr<Interval>>& intervals);

  // The place of the first interval ...; the number of intervals when there is none.
  std::size_t firstRightFrom(double x) const;  // whose right end isn't below x
  std::size_t firstLeftAbove(double x) const;  // whose left end is above x
  std::size_t firstSumAbove(double u) const;   // with which the sum of weights is above u

  // The sum of the weights in front of the place, added in the order of the list.
  double weightBefore(std::size_t place) const { return sums_[place]; }
  double weight() const { return sums_.back(); }

 private:
  std::vector<double> lefts_, rights_;  // running maxima; a nan ends every walk
  std::vector<double> sums_{0.0};       // one more than intervals
  std::vector<double> reached_;         // running maximum of the sums that include the interval
};

}  // namespace tarvex
