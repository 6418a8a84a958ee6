#include "factors/Beta.h"

#include <cmath>

#include "base/TextReader.h"
#include "factors/NumericRoutines.h"
#include "factors/parameterRules.h"
#include "factors/properForm.h"

namespace tarvex {
namespace {

const char* fieldsProblem(double alfa, double beta, double lower, double upper) {
  return firstProblem({aboveZero(alfa, "Wrong negative value assigned to Alfa"),
                       aboveZero(beta, "Wrong negative value assigned to Beta"),
                       upper > lower ? nullptr : "Negative or null definition interval: check a and b"});
}

}  // namespace

Beta::Beta() : Distribution("Beta", "nonameBeta"), betaFunction_(std::exp(lnBeta(alfa_, beta_))) {}

std::unique_ptr<Factor> Beta::clone() const {
  return std::unique_ptr<Factor>(new Beta(*this));
}

std::vector<Parameter> Beta::parameters() const {
  return {{"alfa", refused_ ? refused_->alfa : alfa_},
          {"beta", refused_ ? refused_->beta : beta_},
          {"lower", refused_ ? refused_->lower : lower_},
          {"upper", refused_ ? refused_->upper : upper_}};
}

bool Beta::setParameters(double alfa, double beta, double lower, double upper) {
  if (!accept(fieldsProblem(alfa, beta, lower, upper))) return false;
  alfa_ = alfa;
  beta_ = beta;
  lower_ = lower;
  upper_ = upper;
  range_ = upper - lower;
  betaFunction_ = std::exp(lnBeta(alfa, beta));
  refused_.reset();
  return true;
}

const char* Beta::brokenRule() const {
  return refused_ ? fieldsProblem(refused_->alfa, refused_->beta, refused_->lower, refused_->upper) : nullptr;
}

// Kept: the lower bound isn't added. Views show this number, and the search for the inverse starts from it.
// The quotient first where the product leaves the range of doubles.
double Beta::mean() const {
  return properForm(range_ * alfa_ / (alfa_ + beta_), range_ * (alfa_ / (alfa_ + beta_)));
}

// sqrt(alfa beta range^2 / ((alfa + beta + 1) (alfa + beta)^2)); by quotients where a product leaves the range.
double Beta::stdDev() const {
  const double sum = alfa_ + beta_;
  return properForm(std::sqrt(alfa_ * beta_ * range_ * range_ / ((sum + 1.0) * (sum * sum))),
                    range_ * std::sqrt(alfa_ / sum * (beta_ / sum) / (sum + 1.0)));
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

// With z the place in the interval: (1-z)^(beta-1) z^(alfa-1) / (B(alfa, beta) range). For shapes above some hundreds
// its factors vanish one by one; there the derivative of the incomplete beta ratio, any shapes, relative error below
// 1e-10.
double Beta::density(double x) const {
  if (x < lower_ || x > upper_) return 0.0;
  const double z = (x - lower_) / range_;
  const double formula = std::pow(1.0 - z, beta_ - 1.0) * std::pow(z, alfa_ - 1.0) / (betaFunction_ * range_);
  return properForm(formula, betaSlope(alfa_, beta_, z) / range_);
}

// Bad parameters leave the fields and the reason; the list is read on, nothing is sampled from the factor, and its
// record is written as it was read.
void Beta::readParameters(TextReader& in) {
  Fields read{};
  in.expect("alfa") >> read.alfa;
  in.expect("beta") >> read.beta;
  in.expect("the lower end") >> read.lower;
  in.expect("the upper end") >> read.upper;
  if (in.ok() && !setParameters(read.alfa, read.beta, read.lower, read.upper)) refused_ = read;
}

}  // namespace tarvex
