#include "postproc/TestFunctions.h"

#include <bit>
#include <cmath>
#include <numbers>

namespace tarvex {

namespace {

// One factor of the g function.
double gFactor(double a, double x) {
  return (std::fabs(4.0 * x - 2.0) + a) / (1.0 + a);
}

double levelMidpoint(int level, int levels) {
  return (level + 0.5) / levels;
}

}  // namespace

double VarianceDecomposition::variance() const {
  double sum = 0.0;
  for (Mask mask = 1; mask < (Mask{1} << inputs); ++mask) sum += partialVariance(mask);
  return sum;
}

double VarianceDecomposition::closed(Mask mask) const {
  double sum = 0.0;
  for (Mask part = 1; part < (Mask{1} << inputs); ++part)
    if ((part & ~mask) == 0) sum += partialVariance(part);
  return sum / variance();
}

VarianceDecomposition ishigamiDecomposition(double a, double b) {
  using std::numbers::pi;
  const auto part = [a, b](VarianceDecomposition::Mask mask) {
    if (mask == 0b001) return 0.5 * std::pow(1.0 + b * std::pow(pi, 4) / 5.0, 2);
    if (mask == 0b010) return a * a / 8.0;
    if (mask == 0b101) return 8.0 * b * b * std::pow(pi, 8) / 225.0;
    return 0.0;
  };
  return {3, a / 2.0, part};
}

VarianceDecomposition gDecomposition(const std::vector<double>& a) {
  const auto part = [a](VarianceDecomposition::Mask mask) {
    double product = mask ? 1.0 : 0.0;
    for (std::size_t i = 0; i < a.size(); ++i)
      if (mask >> i & 1) product *= 1.0 / (3.0 * (1.0 + a[i]) * (1.0 + a[i]));
    return product;
  };
  return {static_cast<int>(a.size()), 1.0, part};
}

VarianceDecomposition linearDecomposition(const std::vector<double>& c) {
  double mean = 0.0;
  for (const double coefficient : c) mean += coefficient / 2.0;
  const auto part = [c](VarianceDecomposition::Mask mask) {
    if (std::popcount(mask) != 1) return 0.0;
    const double coefficient = c[static_cast<std::size_t>(std::countr_zero(mask))];
    return coefficient * coefficient / 12.0;
  };
  return {static_cast<int>(c.size()), mean, part};
}

// The effect is twice the step of the factor's own part, times the other parts; each is independent of the others and
// visits its levels alike, so that every moment is a product of means over the grid.
EffectMoments gEffectMoments(const std::vector<double>& a, std::size_t input, int levels) {
  const int jump = levels / 2;
  double moment[5] = {1.0, 0.0, 0.0, 0.0, 0.0};
  for (int k = 1; k <= 4; ++k) {
    double step = 0.0;
    for (int level = 0; level < jump; ++level)
      step += std::pow(2.0 * std::fabs(gFactor(a[input], levelMidpoint(level + jump, levels)) -
                                       gFactor(a[input], levelMidpoint(level, levels))),
                       k);
    moment[k] = step / jump;
    for (std::size_t j = 0; j < a.size(); ++j) {
      if (j == input) continue;
      double sum = 0.0;
      for (int level = 0; level < levels; ++level) sum += std::pow(gFactor(a[j], levelMidpoint(level, levels)), k);
      moment[k] *= sum / levels;
    }
  }
  const double m = moment[1];
  const double variance = moment[2] - m * m;
  const double fourth = moment[4] - 4.0 * moment[3] * m + 6.0 * moment[2] * m * m - 3.0 * m * m * m * m;
  return {m, std::sqrt(variance), fourth / (variance * variance)};
}

}  // namespace tarvex
