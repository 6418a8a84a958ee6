#include "factors/Triangular.h"

#include <cmath>

#include "base/TextReader.h"

namespace tarvex {
namespace {

double power(double x, int n) {
  double result = x;
  while (--n > 0) result *= x;
  return result;
}

}  // namespace

Triangular::Triangular() : Distribution("Triangular", "nonameTriang") {}

std::unique_ptr<Factor> Triangular::clone() const {
  return std::unique_ptr<Factor>(new Triangular(*this));
}

std::vector<Parameter> Triangular::parameters() const {
  return {{"alfa", alfa_}, {"beta", beta_}, {"gamma", gamma_}};
}

bool Triangular::setParameters(double alfa, double beta, double gamma) {
  if (!accept(alfa < beta && beta < gamma,
              "Wrong values assigned to the distribution definition interval: check alfa beta and gamma")) {
    return false;
  }
  alfa_ = alfa;
  beta_ = beta;
  gamma_ = gamma;
  height_ = 2.0 / (gamma - alfa);
  areaLeft_ = (beta - alfa) * height_ / 2.0;
  return true;
}

double Triangular::mean() const {
  return moment(1);
}

double Triangular::stdDev() const {
  const double m = mean();
  return std::sqrt(moment(2) - m * m);
}

// The integral of x^k f(x) over the two linear branches, s1 and s2 being their slopes.
double Triangular::moment(int k) const {
  const double s1 = height_ / (beta_ - alfa_);
  const double s2 = -height_ / (gamma_ - beta_);
  const double leftLow = power(beta_, k + 1) - power(alfa_, k + 1);
  const double rightLow = power(gamma_, k + 1) - power(beta_, k + 1);
  const double leftHigh = power(beta_, k + 2) - power(alfa_, k + 2);
  const double rightHigh = power(gamma_, k + 2) - power(beta_, k + 2);
  return (s1 * leftHigh + s2 * rightHigh) / (k + 2) +
         ((height_ - s2 * beta_) * rightLow - s1 * alfa_ * leftLow) / (k + 1);
}

double Triangular::cumulative(double x) const {
  if (x > gamma_) return 1.0;
  if (x < alfa_) return 0.0;
  if (x > beta_) return (x - beta_) * (density(x) + height_) / 2.0 + areaLeft_;
  return (x - alfa_) * density(x) / 2.0;
}

double Triangular::density(double x) const {
  if (x < alfa_ || x > gamma_) return 0.0;
  if (x > beta_) return 2.0 * (gamma_ - x) / ((gamma_ - alfa_) * (gamma_ - beta_));
  return 2.0 * (x - alfa_) / ((gamma_ - alfa_) * (beta_ - alfa_));
}

// Bad parameters leave the fields and the reason; the list is read on.
void Triangular::readParameters(TextReader& in) {
  double alfa = 0.0;
  double beta = 0.0;
  double gamma = 0.0;
  in >> alfa >> beta >> gamma;
  if (in.ok()) setParameters(alfa, beta, gamma);
}

}  // namespace tarvex
