#pragma once

#include <optional>

#include "factors/Distribution.h"

namespace tarvex {

// Shapes `alfa` and `beta` between `lower` and `upper`.
class Beta : public Distribution {
 public:
  Beta();
  std::unique_ptr<Factor> clone() const override;
  std::int32_t getType() const override { return 8; }
  std::vector<Parameter> parameters() const override;

  double alfa() const { return alfa_; }
  double beta() const { return beta_; }
  double lower() const { return lower_; }
  double upper() const { return upper_; }
  // All four at once: positive shapes and lower < upper. False, with nothing changed, otherwise.
  [[nodiscard]] bool setParameters(double alfa, double beta, double lower, double upper);

  double mean() const override;
  double stdDev() const override;
  double cumulative(double x) const override;
  double density(double x) const override;

 protected:
  Beta(const Beta&) = default;
  const char* brokenRule() const override;
  void readParameters(TextReader& in) override;

 private:
  struct Fields {
    double alfa, beta, lower, upper;
  };

  double alfa_ = 2.0;
  double beta_ = 2.0;
  double lower_ = 0.0;
  double upper_ = 1.0;
  double range_ = 1.0;
  double betaFunction_;            // of alfa and beta
  std::optional<Fields> refused_;  // what a file holds in place of the fields
};

}  // namespace tarvex
