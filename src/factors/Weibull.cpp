#include "factors/Weibull.h"

#include <cmath>

#include "base/TextReader.h"
#include "factors/NumericRoutines.h"

namespace tarvex {
namespace {

double gammaFunction(double a) {
  return std::exp(lnGamma(a));
}

}  // namespace

Weibull::Weibull() : TruncatedDistribution("Weibull", "nonameWeib") {
  leftTruncation_ = 0.0;
}

std::unique_ptr<Factor> Weibull::clone() const {
  return std::unique_ptr<Factor>(new Weibull(*this));
}

std::vector<Parameter> Weibull::parameters() const {
  return {{"beta", beta_}, {"n", n_}, {"b", b_}, {"right truncation", rightTruncation_}};
}

bool Weibull::setBeta(double value) {
  return assign(beta_, value, value > 0.0, "Beta must be > 0");
}

bool Weibull::setN(double value) {
  return assign(n_, value, value > 0.0, "n must be > 0");
}

bool Weibull::setB(double value) {
  return assign(b_, value, value >= 0.0, "b must be >= 0");
}

double Weibull::mean() const {
  return gammaFunction(1.0 + 1.0 / beta_) * n_ + b_;
}

double Weibull::stdDev() const {
  const double first = gammaFunction(1.0 + 1.0 / beta_);
  return std::sqrt((gammaFunction(1.0 + 2.0 / beta_) - first * first) * (n_ * n_));
}

double Weibull::cumulative(double x) const {
  return x <= b_ ? 0.0 : 1.0 - std::exp(-std::pow(x - b_, beta_) / std::pow(n_, beta_));
}

// Kept: x isn't tested against b, so below it the density is what the power of a negative number gives.
double Weibull::density(double x) const {
  return beta_ / n_ * std::pow((x - b_) / n_, beta_ - 1.0) * std::exp(-std::pow(x - b_, beta_) / std::pow(n_, beta_));
}

void Weibull::readParameters(TextReader& in) {
  in >> beta_ >> n_ >> b_ >> rightTruncation_;
}

}  // namespace tarvex
