#pragma once

#include <cmath>
#include <functional>
#include <numbers>
#include <string>
#include <vector>

#include "postproc/TestFunctions.h"

namespace tarvex {

// A model of independent uniform inputs whose variance decomposition is known in closed form.
struct AnalyticModel : VarianceDecomposition {
  std::string name;
  double lower = 0.0;  // range of every input
  double upper = 1.0;
  std::function<double(const double* x)> evaluate = nullptr;
};

inline AnalyticModel ishigamiModel(double a = 7.0, double b = 0.1) {
  using std::numbers::pi;
  AnalyticModel model{ishigamiDecomposition(a, b), "Ishigami", -pi, pi};
  model.evaluate = [a, b](const double* x) {
    return std::sin(x[0]) + a * std::pow(std::sin(x[1]), 2) + b * std::pow(x[2], 4) * std::sin(x[0]);
  };
  return model;
}

inline AnalyticModel gModel(const std::vector<double>& a) {
  AnalyticModel model{gDecomposition(a), "g"};
  model.evaluate = [a](const double* x) {
    double product = 1.0;
    for (std::size_t i = 0; i < a.size(); ++i) product *= (std::abs(4.0 * x[i] - 2.0) + a[i]) / (1.0 + a[i]);
    return product;
  };
  return model;
}

// R squared of its regression is 1.
inline AnalyticModel linearModel(const std::vector<double>& c) {
  AnalyticModel model{linearDecomposition(c), "linear"};
  model.evaluate = [c](const double* x) {
    double sum = 0.0;
    for (std::size_t i = 0; i < c.size(); ++i) sum += c[i] * x[i];
    return sum;
  };
  return model;
}

// 4 x1 x2 + 2 x3 + x4^2 on (0, 1): additive over the groups {x1, x2}, {x3}, {x4}, so that each group's closed index is
// its total one.
inline AnalyticModel additiveGroupsModel() {
  AnalyticModel model{{4}, "additive groups"};
  model.mean = 1.0 + 1.0 + 1.0 / 3.0;
  model.evaluate = [](const double* x) { return 4.0 * x[0] * x[1] + 2.0 * x[2] + x[3] * x[3]; };
  model.partialVariance = [](AnalyticModel::Mask mask) {
    switch (mask) {
      case 0b0001:
      case 0b0010:
        return 16.0 / 48.0;  // 16 times variance 1/12 times squared mean 1/4
      case 0b0011:
        return 16.0 / 144.0;
      case 0b0100:
        return 4.0 / 12.0;
      case 0b1000:
        return 4.0 / 45.0;  // 1/5 - 1/9
      default:
        return 0.0;
    }
  };
  return model;
}

}  // namespace tarvex
