#pragma once

#include "factors/TruncatedDistribution.h"

namespace tarvex {

// Shape `beta` and scale `n` above location `b`.
class Weibull : public TruncatedDistribution {
 public:
  Weibull();
  std::unique_ptr<Factor> clone() const override;
  std::int32_t getType() const override { return 4; }
  std::vector<Parameter> parameters() const override;

  double beta() const { return beta_; }
  double n() const { return n_; }
  double b() const { return b_; }
  [[nodiscard]] bool setBeta(double value);
  [[nodiscard]] bool setN(double value);
  [[nodiscard]] bool setB(double value);

  double mean() const override;
  double stdDev() const override;
  double cumulative(double x) const override;
  double density(double x) const override;

 protected:
  Weibull(const Weibull&) = default;
  const char* brokenRule() const override;
  void readParameters(TextReader& in) override;

 private:
  double power(double x) const;  // ((x - b) / n)^beta

  double beta_ = 1.0;
  double n_ = 1.0;
  double b_ = 0.0;
};

}  // namespace tarvex
