#include "factors/changeKind.h"

#include <cmath>
#include <memory>

#include "factors/Beta.h"
#include "factors/Constant.h"
#include "factors/Discrete.h"
#include "factors/Exponential.h"
#include "factors/Gamma.h"
#include "factors/LogNormal.h"
#include "factors/LogUniform.h"
#include "factors/Triangular.h"
#include "factors/Weibull.h"
#include "factors/makeFactor.h"

namespace tarvex {
namespace {

// The argument at which a rising function reaches the target, between two where it lies below and above; the middle of
// neighbouring doubles, or after as many halves as a double has digits.
template <class Function>
double risingRoot(double low, double high, double target, Function function) {
  constexpr int kHalves = 64;
  for (int i = 0; i < kHalves; ++i) {
    const double middle = low + (high - low) / 2.0;
    (function(middle) < target ? low : high) = middle;
  }
  return low + (high - low) / 2.0;
}

bool setIntervals(IntervalDistribution& factor, double left, double right) {
  std::unique_ptr<Interval> interval = factor.newInterval();
  if (!interval->setBounds(left, right)) return false;
  factor.clear();
  return factor.append(std::move(interval));
}

bool match(Normal& factor, double mean, double deviation) {
  factor.setMean(mean);
  return factor.setStdDeviation(deviation);
}

// The logarithm has variance ln(1 + (d/m)^2) and mean ln m less half of that.
bool match(LogNormal& factor, double mean, double deviation) {
  if (!(mean > 0.0)) return false;
  const double variance = std::log1p(deviation / mean * (deviation / mean));
  factor.setMean(std::log(mean) - variance / 2.0);
  return factor.setStdDeviation(std::sqrt(variance));
}

bool match(Uniform& factor, double mean, double deviation) {
  const double half = std::sqrt(3.0) * deviation;
  return setIntervals(factor, mean - half, mean + half);
}

// With t the logarithm of the quotient of the ends, the mean square over the mean's square is (t/2) coth(t/2), and the
// mean is a (exp(t) - 1) / t.
bool match(LogUniform& factor, double mean, double deviation) {
  constexpr double kWidest = 600.0;  // exp() of it is still a double
  const double wanted = 1.0 + deviation / mean * (deviation / mean);
  const auto quotient = [](double t) { return t / 2.0 / std::tanh(t / 2.0); };
  if (!(mean > 0.0) || quotient(kWidest) < wanted) return false;
  const double t = risingRoot(0.0, kWidest, wanted, quotient);
  const double left = mean * t / std::expm1(t);
  return setIntervals(factor, left, left * std::exp(t));
}

// The quotient of deviation and mean depends on the shape alone and falls with it; the scale then gives the mean.
bool match(Weibull& factor, double mean, double deviation) {
  constexpr double kLowest = -3.0;   // of the logarithm of the shape: quotients from 1e5
  constexpr double kHighest = 12.0;  // down to 1e-5
  const auto negative = [&factor](double logShape) {
    return factor.setBeta(std::exp(logShape)) ? -factor.stdDev() / factor.mean() : 0.0;
  };
  if (!(mean > 0.0) || !factor.setB(0.0) || !factor.setN(1.0)) return false;
  const double wanted = -deviation / mean;
  if (negative(kLowest) > wanted || negative(kHighest) < wanted) return false;
  const double logShape = risingRoot(kLowest, kHighest, wanted, negative);
  return factor.setBeta(std::exp(logShape)) && factor.setN(mean / factor.mean());
}

bool match(Exponential& factor, double mean, double deviation) {
  return factor.setLambda(1.0 / deviation) && factor.setB(mean - deviation);
}

bool match(Gamma& factor, double mean, double deviation) {
  const double quotient = mean / deviation;
  return mean > 0.0 && factor.setB(0.0) && factor.setR(quotient * quotient) && factor.setLambda(quotient / deviation);
}

// Both shapes 2, so that the deviation is the range over the root of 20.
bool match(Beta& factor, double mean, double deviation) {
  const double half = std::sqrt(20.0) * deviation / 2.0;
  return factor.setParameters(2.0, 2.0, mean - half, mean + half);
}

bool match(Triangular& factor, double mean, double deviation) {
  const double half = std::sqrt(6.0) * deviation;
  return factor.setParameters(mean - half, mean, mean + half);
}

// Two points of one half each.
bool match(Discrete& factor, double mean, double deviation) {
  factor.clear();
  for (const double value : {mean - deviation, mean + deviation})
    if (!factor.addPoint(std::make_unique<Interval>(value, value + 1.0, 0.5))) return false;
  return true;
}

bool match(Constant& factor, double mean, double) {
  factor.setValue(mean);
  return true;
}

// True when the factor is of the kind and could be matched.
template <class Kind>
bool tryKind(Factor& factor, double mean, double deviation) {
  auto* const typed = dynamic_cast<Kind*>(&factor);
  return typed != nullptr && match(*typed, mean, deviation) && typed->parameterProblem().empty();
}

// On false the parameters may be anything.
bool matchMoments(Factor& factor, double mean, double deviation) {
  if (!std::isfinite(mean) || !std::isfinite(deviation)) return false;
  if (factor.isConstant()) return tryKind<Constant>(factor, mean, deviation);
  if (!(deviation > 0.0)) return false;
  // Kinds that derive from another one: where they fail, that one isn't tried.
  if (dynamic_cast<LogNormal*>(&factor) != nullptr) return tryKind<LogNormal>(factor, mean, deviation);
  if (dynamic_cast<LogUniform*>(&factor) != nullptr) return tryKind<LogUniform>(factor, mean, deviation);
  return tryKind<Normal>(factor, mean, deviation) || tryKind<Uniform>(factor, mean, deviation) ||
         tryKind<Weibull>(factor, mean, deviation) || tryKind<Exponential>(factor, mean, deviation) ||
         tryKind<Gamma>(factor, mean, deviation) || tryKind<Beta>(factor, mean, deviation) ||
         tryKind<Triangular>(factor, mean, deviation) || tryKind<Discrete>(factor, mean, deviation);
}

void keepTruncations(const Factor& from, Factor& to) {
  const auto* const normal = dynamic_cast<const Normal*>(&from);
  auto* const other = dynamic_cast<Normal*>(&to);
  if (normal != nullptr && other != nullptr)
    static_cast<void>(other->setTruncations(normal->leftTruncation(), normal->rightTruncation()));  // else the defaults
}

}  // namespace

double expectationOf(const Distribution& distribution) {
  const auto* const beta = dynamic_cast<const Beta*>(&distribution);
  return distribution.mean() + (beta != nullptr ? beta->lower() : 0.0);
}

std::unique_ptr<Factor> changeKind(const Factor& from, const std::string& typeName) {
  std::unique_ptr<Factor> to = makeFactor(typeName);
  if (!to) return nullptr;
  const auto* const distribution = dynamic_cast<const Distribution*>(&from);
  const auto* const constant = dynamic_cast<const Constant*>(&from);
  const bool matched = distribution != nullptr
                           ? matchMoments(*to, expectationOf(*distribution), distribution->stdDev())
                           : constant != nullptr && to->isConstant() && matchMoments(*to, constant->value(), 0.0);
  if (!matched) to = makeFactor(typeName);
  keepTruncations(from, *to);
  to->name = from.name;
  to->note = from.note;
  return to;
}

}  // namespace tarvex
