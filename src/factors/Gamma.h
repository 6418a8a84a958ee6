#pragma once

#include "factors/TruncatedDistribution.h"

namespace tarvex {

// Shape `r` and rate `lambda` above location `b`.
class Gamma : public TruncatedDistribution {
 public:
  Gamma();
  std::unique_ptr<Factor> clone() const override;
  std::int32_t getType() const override { return 7; }
  std::vector<Parameter> parameters() const override;

  double r() const { return r_; }
  double lambda() const { return lambda_; }
  double b() const { return b_; }
  [[nodiscard]] bool setR(double value);
  [[nodiscard]] bool setLambda(double value);
  [[nodiscard]] bool setB(double value);
  [[nodiscard]] bool setRightTruncation(double value) override;

  double mean() const override;
  double stdDev() const override;
  double cumulative(double x) const override;
  double density(double x) const override;

 protected:
  Gamma(const Gamma&) = default;
  const char* brokenRule() const override;
  void readParameters(TextReader& in) override;

 private:
  double r_ = 1.0;
  double lambda_ = 1.0;
  double b_ = 0.0;
  double gammaOfR_ = 1.0;  // the gamma function at r
};

}  // namespace tarvex
