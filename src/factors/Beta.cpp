#include "factors/Beta.h"

#include <cmath>

#include "base/TextReader.h"
#include "factors/NumericRoutines.h"

namespace tarvex {

Beta::Beta() : Distribution("Beta", "nonameBeta"), betaFunction_(std::exp(lnBeta(alfa_, beta_))) {}

std::unique_ptr<Factor> Beta::clone() const {
  return std::unique_ptr<Factor>(new Beta(*this));
}

std::vector<Parameter> Beta::parameters() const {
  return {{"alfa", alfa_}, {"beta", beta_}, {"lower", lower_}, {"upper", upper_}};
}

bool Beta::setParameters(double alfa, double beta, double lower, double upper) {
  if (!accept(alfa > 0.0, "Wrong negative value assigned to Alfa")) return false;
  if (!accept(beta > 0.0, "Wrong negative value assigned to Beta")) return false;
  if (!accept(upper > lower, "Negative or null definition interval: check a and b")) return false;
  alfa_ = alfa;
  beta_ = beta;
  lower_ = lower;
  upper_ = upper;
  range_ = upper - lower;
  betaFunction_ = std::exp(lnBeta(alfa, beta));
  return true;
}

// Kept: the lower bound isn't added. Views show this number, and the search for the inverse starts from it.
double Beta::mean() const {
  return range_ * alfa_ / (alfa_ + beta_);
}

double Beta::stdDev() const {
  const double sum = alfa_ + beta_;
  return std::sqrt(alfa_ * beta_ * range_ * range_ / ((sum + 1.0) * (sum * sum)));
}

double Beta::cumulative(double x) const {
  if (x > upper_) return 1.0;
  if (x < lower_) return 0.0;
  const double z = (x - lower_) / range_;
  double p = 0.0;
  double q = 0.0;
  double bound = 0.0;
  int refused = 0;
  cdfBeta(1, p, q, z, 1.0 - z, alfa_, beta_, refused, bound);
  return refused == 0 ? p : -1.0;
}

double Beta::density(double x) const {
  if (x < lower_ || x > upper_) return 0.0;
  const double z = (x - lower_) / range_;
  return std::pow(1.0 - z, beta_ - 1.0) * std::pow(z, alfa_ - 1.0) / (betaFunction_ * range_);
}

// Bad parameters leave the fields and the reason; the list is read on.
void Beta::readParameters(TextReader& in) {
  double alfa = 0.0;
  double beta = 0.0;
  double lower = 0.0;
  double upper = 0.0;
  in >> alfa >> beta >> lower >> upper;
  if (in.ok()) setParameters(alfa, beta, lower, upper);
}

}  // namespace tarvex
