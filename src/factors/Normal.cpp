#include "factors/Normal.h"

#include <cmath>

#include "base/TextReader.h"
#include "factors/NumericRoutines.h"
#include "factors/parameterRules.h"
#include "factors/properForm.h"

namespace tarvex {
namespace {

const double kSqrt2Pi = std::sqrt(2.0 * 3.14159265358979323846);

const char* deviationProblem(double deviation) {
  return deviation >= 0.0 ? nullptr : "Standard deviation must be >= 0";
}

const char* truncationsProblem(double left, double right) {
  return firstProblem({left <= right ? nullptr : "Left Truncation must be less than right truncation",
                       right < 1.0 ? nullptr : "Right Truncation must be less than 1",
                       left > 0.0 ? nullptr : "Left Truncation must be greater than 0"});
}

}  // namespace

std::unique_ptr<Factor> Normal::clone() const {
  return std::unique_ptr<Factor>(new Normal(*this));
}

std::vector<Parameter> Normal::parameters() const {
  return {{"mean", mean_},
          {"standard deviation", stdDeviation_},
          {"left truncation", leftTruncation_},
          {"right truncation", rightTruncation_}};
}

bool Normal::setStdDeviation(double value) {
  return assign(stdDeviation_, value, deviationProblem(value));
}

bool Normal::setTruncations(double left, double right) {
  if (!accept(truncationsProblem(left, right))) return false;
  leftTruncation_ = left;
  rightTruncation_ = right;
  return true;
}

const char* Normal::brokenRule() const {
  return firstProblem({deviationProblem(stdDeviation_), truncationsProblem(leftTruncation_, rightTruncation_)});
}

double Normal::mean() const {
  return mean_;
}

double Normal::stdDev() const {
  return stdDeviation_;
}

double Normal::cumulative(double x) const {
  double p = 0.0;
  double q = 0.0;
  double bound = 0.0;
  int refused = 0;
  cdfNormal(1, p, q, x, mean_, stdDeviation_, refused, bound);
  return refused == 0 ? p : -1.0;
}

// exp(-d^2 / (2 s^2)) / (sqrt(2 pi) s); with (d/s)^2 where the squares overflow or vanish, s beyond 1e-154 to 1e154.
double Normal::density(double x) const {
  const double d = x - mean_;
  const double z = d / stdDeviation_;
  const double scale = kSqrt2Pi * stdDeviation_;
  return properForm(std::exp(-(d * d) / (2.0 * stdDeviation_ * stdDeviation_)) / scale, std::exp(-z * z / 2.0) / scale);
}

void Normal::readParameters(TextReader& in) {
  in.expect("the mean") >> mean_;
  in.expect("the standard deviation") >> stdDeviation_;
  in.expect("the left truncation") >> leftTruncation_;
  in.expect("the right truncation") >> rightTruncation_;
}

}  // namespace tarvex
