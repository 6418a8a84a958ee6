#pragma once

#include "factors/TruncatedDistribution.h"

namespace tarvex {

// Rate `lambda` above location `b`.
class Exponential : public TruncatedDistribution {
 public:
  Exponential();
  std::unique_ptr<Factor> clone() const override;
  std::int32_t getType() const override { return 6; }
  std::vector<Parameter> parameters() const override;

  double lambda() const { return lambda_; }
  double b() const { return b_; }
  [[nodiscard]] bool setLambda(double value);
  [[nodiscard]] bool setB(double value);
  [[nodiscard]] bool setRightTruncation(double value) override;

  double mean() const override;
  double stdDev() const override;
  double cumulative(double x) const override;
  double density(double x) const override;

 protected:
  Exponential(const Exponential&) = default;
  const char* brokenRule() const override;
  void readParameters(TextReader& in) override;

 private:
  double lambda_ = 1.0;
  double b_ = 0.0;
};

}  // namespace tarvex
