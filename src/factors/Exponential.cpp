#include "factors/Exponential.h"

#include <cmath>

#include "base/TextReader.h"

namespace tarvex {

Exponential::Exponential() : TruncatedDistribution("Exponential", "nonameExpo") {
  leftTruncation_ = 0.0;
}

std::unique_ptr<Factor> Exponential::clone() const {
  return std::unique_ptr<Factor>(new Exponential(*this));
}

std::vector<Parameter> Exponential::parameters() const {
  return {{"lambda", lambda_}, {"b", b_}, {"right truncation", rightTruncation_}};
}

bool Exponential::setLambda(double value) {
  return assign(lambda_, value, value > 0.0, "Lambda must be > 0");
}

bool Exponential::setB(double value) {
  return assign(b_, value, value >= 0.0, "b must be >= 0");
}

bool Exponential::setRightTruncation(double value) {
  return assign(rightTruncation_, value, value > 0.0 && value < 1.0, "Truncation must be between 0 and 1");
}

double Exponential::mean() const {
  return 1.0 / lambda_ + b_;
}

double Exponential::stdDev() const {
  return 1.0 / lambda_;
}

double Exponential::cumulative(double x) const {
  return x < b_ ? 0.0 : 1.0 - std::exp(-(x - b_) * lambda_);
}

double Exponential::density(double x) const {
  return x < b_ ? 0.0 : lambda_ * std::exp(-(x - b_) * lambda_);
}

void Exponential::readParameters(TextReader& in) {
  in >> lambda_ >> b_ >> rightTruncation_;
}

}  // namespace tarvex
