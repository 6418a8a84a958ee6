#include "factors/Weibull.h"

#include <cmath>

#include "base/TextReader.h"
#include "factors/NumericRoutines.h"
#include "factors/parameterRules.h"
#include "factors/properForm.h"

namespace tarvex {
namespace {

const char* betaProblem(double beta) {
  return aboveZero(beta, "Beta must be > 0");
}

const char* scaleProblem(double n) {
  return aboveZero(n, "n must be > 0");
}

double gammaFunction(double a) {
  return std::exp(lnGamma(a));
}

// ln gamma(1 + 2h) - 2 ln gamma(1 + h), h > 0. Up to h = 1/64 by the difference of the two power series of
// ln gamma(1 + z), sum of (-1)^k zeta(k) z^k / k beside -Euler's z (M. Abramowitz, I. A. Stegun, 6.1.33 in powers of
// z): its first term left out is below 1e-14 of the sum. Above, as it stands, relative error below 1e-13.
double logGammaGap(double h) {
  constexpr double kSeries = 1.0 / 64.0;
  constexpr double kZeta[] = {1.6449340668482264, 1.2020569031595943, 1.0823232337111382,
                              1.0369277551433699, 1.0173430619844491, 1.0083492773819228,
                              1.0040773561979443, 1.0020083928260822, 1.0009945751278181};  // of 2, 3, ...
  if (h > kSeries) return lnGamma(1.0 + 2.0 * h) - 2.0 * lnGamma(1.0 + h);
  double sum = 0.0;
  double sign = 1.0;
  double power = h * h;
  double twos = 4.0;
  int k = 2;
  for (const double zeta : kZeta) {
    sum += sign * zeta / k++ * (twos - 2.0) * power;
    sign = -sign;
    power *= h;
    twos *= 2.0;
  }
  return sum;
}

// The logarithm of exp(x) - 1, x > 0.
double logExpm1(double x) {
  return x > 1.0 ? x + std::log1p(-std::exp(-x)) : std::log(std::expm1(x));
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
  return assign(beta_, value, betaProblem(value));
}

bool Weibull::setN(double value) {
  return assign(n_, value, scaleProblem(value));
}

bool Weibull::setB(double value) {
  return assign(b_, value, locationProblem(value));
}

const char* Weibull::brokenRule() const {
  return firstProblem({betaProblem(beta_), scaleProblem(n_), locationProblem(b_), rightTruncationProblem()});
}

// gamma(1 + 1/beta) n + b; the product by logarithms where the gamma function overflows and a small n brings it back.
double Weibull::mean() const {
  const double formula = gammaFunction(1.0 + 1.0 / beta_) * n_ + b_;
  return std::isfinite(formula) ? formula : std::exp(lnGamma(1.0 + 1.0 / beta_) + std::log(n_)) + b_;
}

// sqrt((gamma(1 + 2/beta) - gamma(1 + 1/beta)^2) n^2). The difference cancels for large beta, the gamma functions
// overflow for small ones, the square of n beyond 1e-154 to 1e154: there n gamma(1 + 1/beta) sqrt(exp(g) - 1), g being
// the logarithm of the quotient of the two terms, by logarithms. Relative error below 1e-12 times its logarithm.
double Weibull::stdDev() const {
  const double h = 1.0 / beta_;
  const double first = gammaFunction(1.0 + h);
  const double formula = std::sqrt((gammaFunction(1.0 + 2.0 / beta_) - first * first) * (n_ * n_));
  return properForm(formula, std::exp(std::log(n_) + lnGamma(1.0 + h) + logExpm1(logGammaGap(h)) / 2.0));
}

double Weibull::cumulative(double x) const {
  return x <= b_ ? 0.0 : 1.0 - std::exp(-power(x));
}

// beta/n ((x-b)/n)^(beta-1) exp(-(x-b)^beta / n^beta), and by logarithms where a factor of it leaves the range.
// Kept: x isn't tested against b, so below it the density is what the power of a negative number gives.
double Weibull::density(double x) const {
  const double z = (x - b_) / n_;
  const double formula = beta_ / n_ * std::pow(z, beta_ - 1.0) * std::exp(-power(x));
  const double stable = std::exp(std::log(beta_) - std::log(n_) + (beta_ - 1.0) * std::log(z) - std::pow(z, beta_));
  return properForm(formula, stable);
}

// (x-b)^beta / n^beta. Where one of the powers leaves the range of normal doubles, the power of the quotient, whose
// relative error is beta times that of a division.
double Weibull::power(double x) const {
  const double above = std::pow(x - b_, beta_);
  const double below = std::pow(n_, beta_);
  return std::isnormal(above) && std::isnormal(below) ? above / below : std::pow((x - b_) / n_, beta_);
}

void Weibull::readParameters(TextReader& in) {
  in.expect("beta, the shape") >> beta_;
  in.expect("n, the scale") >> n_;
  in.expect("b, the location") >> b_;
  in.expect("the right truncation") >> rightTruncation_;
}

}  // namespace tarvex
