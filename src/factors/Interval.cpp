#include "factors/Interval.h"

namespace tarvex {

std::unique_ptr<Interval> Interval::clone() const {
  return std::unique_ptr<Interval>(new Interval(*this));
}

bool Interval::setBounds(double newLeft, double newRight) {
  if (const char* problem = boundsProblem(newLeft, newRight)) {
    errorText = problem;
    return false;
  }
  left = newLeft;
  right = newRight;
  return true;
}

const char* Interval::boundsProblem(double newLeft, double newRight) const {
  return newLeft < newRight ? nullptr : "left bound >= of right bound";
}

std::unique_ptr<Interval> LogInterval::clone() const {
  return std::unique_ptr<Interval>(new LogInterval(*this));
}

const char* LogInterval::boundsProblem(double newLeft, double newRight) const {
  return newLeft > 0.0 ? Interval::boundsProblem(newLeft, newRight) : "left bound < 0";
}

}  // namespace tarvex
