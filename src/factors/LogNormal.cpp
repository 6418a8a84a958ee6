#include "factors/LogNormal.h"

#include <cmath>

#include "factors/properForm.h"

namespace tarvex {

std::unique_ptr<Factor> LogNormal::clone() const {
  return std::unique_ptr<Factor>(new LogNormal(*this));
}

double LogNormal::mean() const {
  return std::exp(meanField() + stdDeviation() * stdDeviation() / 2.0);
}

// With v the variance of the logarithm: sqrt(exp(2 mu + 2v) - exp(2 mu + v)). It cancels for small v and overflows
// before its root does; there exp(mu + v) sqrt(1 - exp(-v)), any mu and v.
double LogNormal::stdDev() const {
  const double mu = meanField();
  const double variance = stdDeviation() * stdDeviation();
  return properForm(std::sqrt(std::exp(2.0 * mu + 2.0 * variance) - std::exp(2.0 * mu + variance)),
                    std::exp(mu + variance) * std::sqrt(-std::expm1(-variance)));
}

double LogNormal::cumulative(double x) const {
  return x < 0.0 ? 0.0 : Normal::cumulative(std::log(x));
}

// At 0, where the quotient is 0/0, its limit.
double LogNormal::density(double x) const {
  return x <= 0.0 ? 0.0 : Normal::density(std::log(x)) / x;
}

}  // namespace tarvex
