#pragma once

#include "factors/Distribution.h"

namespace tarvex {

// A distribution of which only a span of cumulative probability is sampled. Truncation rescales the uniform number and
// nothing else: moments, cumulative and density are those of the whole distribution.
class TruncatedDistribution : public Distribution {
 public:
  double leftTruncation() const { return leftTruncation_; }
  double rightTruncation() const { return rightTruncation_; }
  [[nodiscard]] virtual bool setLeftTruncation(double value);
  [[nodiscard]] virtual bool setRightTruncation(double value);

  double inverse(double u) const override;
  InverseRule inverseRule() const override;

  // The truncations that new factors take. Each factor list that is read sets them.
  static double defaultLeftTruncation() { return defaultLeft_; }
  static double defaultRightTruncation() { return defaultRight_; }
  [[nodiscard]] static bool setDefaultLeftTruncation(double value);
  [[nodiscard]] static bool setDefaultRightTruncation(double value);
  [[nodiscard]] static bool setDefaultTruncations(double left, double right);

 protected:
  TruncatedDistribution(const char* type, const char* defaultName) : Distribution(type, defaultName) {}
  TruncatedDistribution(const TruncatedDistribution&) = default;

  bool searchFor(double u, InverseCells::Search& search, double& x) const override;

  const char* rightTruncationProblem() const;  // of what is stored

  double leftTruncation_ = defaultLeft_;
  double rightTruncation_ = defaultRight_;

 private:
  static double defaultLeft_;
  static double defaultRight_;
};

}  // namespace tarvex
