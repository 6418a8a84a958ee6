#include "factors/Normal.h"

#include <cmath>

#include "base/TextReader.h"
#include "factors/NumericRoutines.h"

namespace tarvex {
namespace {

const double kSqrt2Pi = std::sqrt(2.0 * 3.14159265358979323846);

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
  return assign(stdDeviation_, value, value >= 0.0, "Standard deviation must be >= 0");
}

bool Normal::setTruncations(double left, double right) {
  if (!accept(left <= right, "Left Truncation must be less than right truncation")) return false;
  if (!accept(right < 1.0, "Right Truncation must be less than 1")) return false;
  if (!accept(left > 0.0, "Left Truncation must be greater than 0")) return false;
  leftTruncation_ = left;
  rightTruncation_ = right;
  return true;
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

double Normal::density(double x) const {
  const double d = x - mean_;
  return std::exp(-(d * d) / (2.0 * stdDeviation_ * stdDeviation_)) / (kSqrt2Pi * stdDeviation_);
}

void Normal::readParameters(TextReader& in) {
  in >> mean_ >> stdDeviation_ >> leftTruncation_ >> rightTruncation_;
}

}  // namespace tarvex
