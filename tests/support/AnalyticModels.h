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

}  // namespace tarvex
