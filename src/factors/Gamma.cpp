#include "factors/Gamma.h"

#include <cmath>

#include "base/TextReader.h"
#include "factors/NumericRoutines.h"
#include "factors/parameterRules.h"
#include "factors/properForm.h"

namespace tarvex {
namespace {

const char* shapeProblem(double r) {
  return aboveZero(r, "r must be > 0");
}

const char* lambdaProblem(double lambda) {
  return aboveZero(lambda, "Lambda must be >= 0");  // Kept: zero is refused all the same
}

}  // namespace

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
  if (!assign(r_, value, shapeProblem(value))) return false;
  gammaOfR_ = std::exp(lnGamma(r_));
  return true;
}

bool Gamma::setLambda(double value) {
  return assign(lambda_, value, lambdaProblem(value));
}

bool Gamma::setB(double value) {
  return assign(b_, value, locationProblem(value));
}

bool Gamma::setRightTruncation(double value) {
  return assign(rightTruncation_, value, truncationProblem(value));
}

const char* Gamma::brokenRule() const {
  return firstProblem(
      {shapeProblem(r_), lambdaProblem(lambda_), locationProblem(b_), truncationProblem(rightTruncation_)});
}

double Gamma::mean() const {
  return r_ / lambda_ + b_;
}

// sqrt(r / lambda^2); sqrt(r) / lambda where the square leaves the range of doubles, lambda beyond 1e-154 to 1e154.
double Gamma::stdDev() const {
  return properForm(std::sqrt(r_ / (lambda_ * lambda_)), std::sqrt(r_) / lambda_);
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

// With t = (x - b) lambda: lambda / gamma(r) t^(r-1) exp(-t). Beyond r of about 140 its factors overflow one by one;
// there lambda times the derivative of the incomplete gamma ratio, any r and t, relative error below 1e-12.
double Gamma::density(double x) const {
  if (x < b_) return 0.0;
  const double t = (x - b_) * lambda_;
  const double formula = lambda_ / gammaOfR_ * std::pow(t, r_ - 1.0) * std::exp(-t);
  return properForm(formula, lambda_ * gammaSlope(r_, t));
}

void Gamma::readParameters(TextReader& in) {
  in.expect("r, the shape") >> r_;
  in.expect("lambda") >> lambda_;
  in.expect("b, the location") >> b_;
  in.expect("the right truncation") >> rightTruncation_;
  gammaOfR_ = std::exp(lnGamma(r_));
}

}  // namespace tarvex
