#include "factors/TruncatedDistribution.h"

#include <limits>

namespace tarvex {
namespace {

constexpr double kTailTolerance = 1e-6;  // of a cumulative's size

}  // namespace

double TruncatedDistribution::defaultLeft_ = 0.001;
double TruncatedDistribution::defaultRight_ = 0.999;

// Kept: these setters, and the two of the defaults, look at what is stored and not at the new value. So the left
// truncation of a class that has it at 0 never changes, and any value enters where the stored one is good.
bool TruncatedDistribution::setLeftTruncation(double value) {
  const bool holds = leftTruncation_ > 0.0 && leftTruncation_ <= rightTruncation_;
  return assign(leftTruncation_, value,
                holds ? nullptr : "Left truncation cannot be less than 0.001 or greater than right truncation");
}

bool TruncatedDistribution::setRightTruncation(double value) {
  return assign(rightTruncation_, value, rightTruncationProblem());
}

const char* TruncatedDistribution::rightTruncationProblem() const {
  const bool holds = rightTruncation_ >= leftTruncation_ && rightTruncation_ < 1.0;
  return holds ? nullptr : "Right truncation cannot be less than left truncation or greater than 0.999";
}

bool TruncatedDistribution::setDefaultLeftTruncation(double value) {
  const bool holds = defaultLeft_ > 0.0 && defaultLeft_ <= defaultRight_;
  if (holds) defaultLeft_ = value;
  return holds;
}

bool TruncatedDistribution::setDefaultRightTruncation(double value) {
  const bool holds = defaultRight_ >= defaultLeft_ && defaultRight_ < 1.0;
  if (holds) defaultRight_ = value;
  return holds;
}

bool TruncatedDistribution::setDefaultTruncations(double left, double right) {
  const bool holds = left > 0.0 && right < 1.0 && left < right;
  if (holds) {
    defaultLeft_ = left;
    defaultRight_ = right;
  }
  return holds;
}

double TruncatedDistribution::inverse(double u) const {
  double x = std::numeric_limits<double>::quiet_NaN();
  InverseCells::Search search{};
  return hasTable() && searchFor(u, search, x) ? bisect(search, TruncatedDistribution::inverseRule()) : x;
}

InverseRule TruncatedDistribution::inverseRule() const {
  return {kTailTolerance, std::numeric_limits<int>::max()};
}

bool TruncatedDistribution::searchFor(double u, InverseCells::Search& search, double& x) const {
  const double v = (rightTruncation_ - leftTruncation_) * u + leftTruncation_;
  const double place = v * 100.0;
  // A file may hold truncations outside 0 to 1: what lies beyond the table is its end.
  x = table[100].x;
  if (!(place < 100.0)) return false;
  search = {place > 0.0 ? static_cast<std::size_t>(place) : 0, v};
  return true;
}

}  // namespace tarvex
