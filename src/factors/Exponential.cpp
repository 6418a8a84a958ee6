#include "factors/Exponential.h"

#include <cmath>

#include "base/TextReader.h"
#include "factors/parameterRules.h"

namespace tarvex {
namespace {

const char* rateProblem(double lambda) {
  return aboveZero(lambda, "Lambda must be > 0");
}

}  // namespace

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
  return assign(lambda_, value, rateProblem(value));
}

bool Exponential::setB(double value) {
  return assign(b_, value, locationProblem(value));
}

bool Exponential::setRightTruncation(double value) {
  return assign(rightTruncation_, value, truncationProblem(value));
}

const char* Exponential::brokenRule() const {
  return firstProblem({rateProblem(lambda_), locationProblem(b_), truncationProblem(rightTruncation_)});
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
  in.expect("lambda") >> lambda_;
  in.expect("b, the location") >> b_;
  in.expect("the right truncation") >> rightTruncation_;
}

}  // namespace tarvex
