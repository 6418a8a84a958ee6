#include "factors/Triangular.h"

#include <algorithm>
#include <cmath>

#include "base/TextReader.h"
#include "factors/properForm.h"

namespace tarvex {
namespace {

double power(double x, int n) {
  double result = x;
  while (--n > 0) result *= x;
  return result;
}

const char* orderProblem(double alfa, double beta, double gamma) {
  if (alfa < beta && beta < gamma) return nullptr;
  return "Wrong values assigned to the distribution definition interval: check alfa beta and gamma";
}

}  // namespace

Triangular::Triangular() : Distribution("Triangular", "nonameTriang") {}

std::unique_ptr<Factor> Triangular::clone() const {
  return std::unique_ptr<Factor>(new Triangular(*this));
}

std::vector<Parameter> Triangular::parameters() const {
  return {{"alfa", refused_ ? refused_->alfa : alfa_},
          {"beta", refused_ ? refused_->beta : beta_},
          {"gamma", refused_ ? refused_->gamma : gamma_}};
}

bool Triangular::setParameters(double alfa, double beta, double gamma) {
  if (!accept(orderProblem(alfa, beta, gamma))) return false;
  alfa_ = alfa;
  beta_ = beta;
  gamma_ = gamma;
  height_ = 2.0 / (gamma - alfa);
  areaLeft_ = (beta - alfa) * height_ / 2.0;
  refused_.reset();
  return true;
}

const char* Triangular::brokenRule() const {
  return refused_ ? orderProblem(refused_->alfa, refused_->beta, refused_->gamma) : nullptr;
}

// The closed form of both moments cancels far from 0, with the third and fourth power of the distance in widths, and
// overflows above 1e77; there (alfa + beta + gamma) / 3 and the root of (l^2 + l r + r^2) / 18, l and r being the
// widths of the two branches, taken in units of the larger one.
double Triangular::mean() const {
  return properForm(moment(1), alfa_ / 3.0 + beta_ / 3.0 + gamma_ / 3.0, spread());
}

double Triangular::stdDev() const {
  const double m = moment(1);
  return properForm(std::sqrt(moment(2) - m * m), spread());
}

double Triangular::spread() const {
  const double unit = std::max(beta_ - alfa_, gamma_ - beta_);
  const double l = (beta_ - alfa_) / unit;
  const double r = (gamma_ - beta_) / unit;
  return unit * std::sqrt((l * l + l * r + r * r) / 18.0);
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

// (x - alfa) f(x) / 2 up to the mode, then areaLeft + (x - beta) (f(x) + height) / 2. Products of quotients below 1
// where those leave the range of doubles: widths beyond 1e-154 to 1e154.
double Triangular::cumulative(double x) const {
  if (x > gamma_) return 1.0;
  if (x < alfa_) return 0.0;
  if (x > beta_) {
    const double above = (gamma_ - x) / (gamma_ - beta_) * ((gamma_ - x) / (gamma_ - alfa_));
    return properForm((x - beta_) * (density(x) + height_) / 2.0 + areaLeft_, 1.0 - above, 1.0);
  }
  const double below = (x - alfa_) / (beta_ - alfa_) * ((x - alfa_) / (gamma_ - alfa_));
  return properForm((x - alfa_) * density(x) / 2.0, below, 1.0);
}

// The height times the share of the branch; the quotient first where the product of the widths leaves the range.
double Triangular::density(double x) const {
  if (x < alfa_ || x > gamma_) return 0.0;
  const double width = gamma_ - alfa_;
  if (x > beta_) {
    const double branch = gamma_ - beta_;
    return properForm(2.0 * (gamma_ - x) / (width * branch), 2.0 * ((gamma_ - x) / branch / width));
  }
  const double branch = beta_ - alfa_;
  return properForm(2.0 * (x - alfa_) / (width * branch), 2.0 * ((x - alfa_) / branch / width));
}

// Bad parameters leave the fields and the reason; the list is read on, nothing is sampled from the factor, and its
// record is written as it was read.
void Triangular::readParameters(TextReader& in) {
  Fields read{};
  in.expect("alfa, the left end") >> read.alfa;
  in.expect("beta, the mode") >> read.beta;
  in.expect("gamma, the right end") >> read.gamma;
  if (in.ok() && !setParameters(read.alfa, read.beta, read.gamma)) refused_ = read;
}

}  // namespace tarvex
