#include "factors/Interval.h"

namespace tarvex {

std::unique_ptr<Interval> Interval::clone() const {
  return std::unique_ptr<Interval>(new Interval(*this));
}

bool Interval::setBounds(double newLeft, double newRight) {
  if (!(newLeft < newRight)) {
    errorText = "left bound >= of right bound";
    return false;
  }
  left = newLeft;
  right = newRight;
  return true;
}

std::unique_ptr<Interval> LogInterval::clone() const {
  return std::unique_ptr<Interval>(new LogInterval(*this));
}

bool LogInterval::setBounds(double newLeft, double newRight) {
  if (!(newLeft > 0.0)) {
    errorText = "left bound < 0";
    return false;
  }
  return Interval::setBounds(newLeft, newRight);
}

}  // namespace tarvex
