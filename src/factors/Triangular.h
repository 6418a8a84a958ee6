#pragma once

#include <optional>

#include "factors/Distribution.h"

namespace tarvex {

// Left end `alfa`, mode `beta`, right end `gamma`.
class Triangular : public Distribution {
 public:
  Triangular();
  std::unique_ptr<Factor> clone() const override;
  std::int32_t getType() const override { return 9; }
  std::vector<Parameter> parameters() const override;

  double alfa() const { return alfa_; }
  double beta() const { return beta_; }
  double gamma() const { return gamma_; }
  // All three at once: alfa < beta < gamma. False, with nothing changed, otherwise.
  [[nodiscard]] bool setParameters(double alfa, double beta, double gamma);

  double mean() const override;
  double stdDev() const override;
  double cumulative(double x) const override;
  double density(double x) const override;
  bool isSmooth(double low, double high) const override { return high <= beta_ || low >= beta_; }

 protected:
  Triangular(const Triangular&) = default;
  const char* brokenRule() const override;
  void readParameters(TextReader& in) override;

 private:
  struct Fields {
    double alfa, beta, gamma;
  };

  double moment(int order) const;
  double spread() const;  // the standard deviation by a form that neither cancels nor overflows

  double alfa_ = 0.0;
  double beta_ = 1.0;
  double gamma_ = 2.0;
  double areaLeft_ = 0.5;          // the probability left of the mode
  double height_ = 1.0;            // the density at the mode
  std::optional<Fields> refused_;  // what a file holds in place of the fields
};

}  // namespace tarvex
