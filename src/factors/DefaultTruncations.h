#pragma once

#include "factors/TruncatedDistribution.h"

namespace tarvex {

// The class-wide default truncations as they were when this was made: files that are read and panels change them, and
// who takes such a change back brings them back.
class DefaultTruncations {
 public:
  DefaultTruncations()
      : left_(TruncatedDistribution::defaultLeftTruncation()),
        right_(TruncatedDistribution::defaultRightTruncation()) {}

  // Puts them in force again.
  void restore() const {
    static_cast<void>(TruncatedDistribution::setDefaultTruncations(left_, right_));  // they were in force
  }

 private:
  double left_, right_;
};

}  // namespace tarvex
