#include "factors/LogNormal.h"

#include <cmath>

namespace tarvex {

std::unique_ptr<Factor> LogNormal::clone() const {
  return std::unique_ptr<Factor>(new LogNormal(*this));
}

double LogNormal::mean() const {
  return std::exp(meanField() + stdDeviation() * stdDeviation() / 2.0);
}

double LogNormal::stdDev() const {
  const double mu = meanField();
  const double variance = stdDeviation() * stdDeviation();
  return std::sqrt(std::exp(2.0 * mu + 2.0 * variance) - std::exp(2.0 * mu + variance));
}

double LogNormal::cumulative(double x) const {
  return x < 0.0 ? 0.0 : Normal::cumulative(std::log(x));
}

double LogNormal::density(double x) const {
  return x < 0.0 ? 0.0 : Normal::density(std::log(x)) / x;
}

}  // namespace tarvex
