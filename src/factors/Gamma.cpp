#include "factors/Gamma.h"

#include <cmath>

#include "base/TextReader.h"
#include "factors/NumericRoutines.h"

namespace tarvex {

Gamma::Gamma() : TruncatedDistribution("Gamma", "nonameGamma") {
  leftTruncation_ = 0.0;
}

std::unique_ptr<Factor> Gamma::clone() const {
  return std::unique_ptr<Factor>(new Gamma(*this));
}

std::vector<Parameter> Gamma::parameters() const {
  return {{"r", r_}, {"lambda", lambda_}, {"b", b_}, {"right truncation", rightTruncation_}};
}

bool Gamma::setR(double value) {
  if (!assign(r_, value, value > 0.0, "r must be > 0")) return false;
  gammaOfR_ = std::exp(lnGamma(r_));
  return true;
}

bool Gamma::setLambda(double value) {
  return assign(lambda_, value, value > 0.0, "Lambda must be >= 0");
}

bool Gamma::setB(double value) {
  return assign(b_, value, value >= 0.0, "b must be >= 0");
}

bool Gamma::setRightTruncation(double value) {
  return assign(rightTruncation_, value, value > 0.0 && value < 1.0, "Truncation must be between 0 and 1");
}

double Gamma::mean() const {
  return r_ / lambda_ + b_;
}

double Gamma::stdDev() const {
  return std::sqrt(r_ / (lambda_ * lambda_));
}

double Gamma::cumulative(double x) const {
  if (x < b_) return 0.0;
  double p = 0.0;
  double q = 0.0;
  double bound = 0.0;
  int refused = 0;
  cdfGamma(1, p, q, x - b_, r_, lambda_, refused, bound);
  return refused == 0 ? p : -1.0;
}

double Gamma::density(double x) const {
  if (x < b_) return 0.0;
  const double t = (x - b_) * lambda_;
  return lambda_ / gammaOfR_ * std::pow(t, r_ - 1.0) * std::exp(-t);
}

void Gamma::readParameters(TextReader& in) {
  in >> r_ >> lambda_ >> b_ >> rightTruncation_;
  gammaOfR_ = std::exp(lnGamma(r_));
}

}  // namespace tarvex
