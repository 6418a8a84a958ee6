#pragma once

#include "factors/TruncatedDistribution.h"

namespace tarvex {

class Normal : public TruncatedDistribution {
 public:
  Normal() : Normal("Normal", "nonameNorm") {}
  std::unique_ptr<Factor> clone() const override;
  std::int32_t getType() const override { return 0; }
  std::vector<Parameter> parameters() const override;

  // The two fields; in a `LogNormal` they describe the logarithm.
  double meanField() const { return mean_; }
  double stdDeviation() const { return stdDeviation_; }
  void setMean(double value) { mean_ = value; }
  [[nodiscard]] bool setStdDeviation(double value);
  [[nodiscard]] bool setTruncations(double left, double right);

  double mean() const override;
  double stdDev() const override;
  double cumulative(double x) const override;
  double density(double x) const override;

 protected:
  Normal(const char* type, const char* defaultName) : TruncatedDistribution(type, defaultName) {}
  Normal(const Normal&) = default;
  const char* brokenRule() const override;
  void readParameters(TextReader& in) override;

 private:
  double mean_ = 0.0;
  double stdDeviation_ = 1.0;
};

}  // namespace tarvex
