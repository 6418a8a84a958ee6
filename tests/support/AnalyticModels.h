#pragma once

#include <bit>
#include <cmath>
#include <cstdint>
#include <functional>
#include <numbers>
#include <string>
#include <vector>

namespace tarvex {

// A model of independent uniform inputs whose variance decomposition is known in closed form. A set of inputs is a
// mask: bit i stands for input i.
struct AnalyticModel {
  using Mask = std::uint32_t;

  std::string name;
  int inputs = 0;
  double lower = 0.0;  // range of every input
  double upper = 1.0;
  std::function<double(const double* x)> evaluate = nullptr;
  double mean = 0.0;
  // The part of the variance due to the interaction of exactly these inputs (I. M. Sobol', MMCE 1, 1993).
  std::function<double(Mask)> partialVariance = nullptr;
  std::string equation = {};  // over x1, x2, ..., as an internal model has it

  double variance() const {
    double sum = 0.0;
    for (Mask mask = 1; mask < (Mask{1} << inputs); ++mask) sum += partialVariance(mask);
    return sum;
  }
  // The index of one interaction; of a single input its first order index.
  double index(Mask mask) const { return partialVariance(mask) / variance(); }
  double firstOrder(int input) const { return index(Mask{1} << input); }
  // Everything that the inputs of the mask explain among themselves.
  double closed(Mask mask) const {
    double sum = 0.0;
    for (Mask part = 1; part < (Mask{1} << inputs); ++part)
      if ((part & ~mask) == 0) sum += partialVariance(part);
    return sum / variance();
  }
  // Everything that they take part in.
  double total(Mask mask) const { return 1.0 - closed(((Mask{1} << inputs) - 1) & ~mask); }
  double totalOrder(int input) const { return total(Mask{1} << input); }
};

// sin x1 + a sin^2 x2 + b x3^4 sin x1 on (-pi, pi) (T. Ishigami, T. Homma, ISUMA 1990).
inline AnalyticModel ishigamiModel(double a = 7.0, double b = 0.1) {
  using std::numbers::pi;
  AnalyticModel model{.name = "Ishigami", .inputs = 3, .lower = -pi, .upper = pi};
  model.evaluate = [a, b](const double* x) {
    return std::sin(x[0]) + a * std::pow(std::sin(x[1]), 2) + b * std::pow(x[2], 4) * std::sin(x[0]);
  };
  model.mean = a / 2.0;
  model.partialVariance = [a, b](AnalyticModel::Mask mask) {
    if (mask == 0b001) return 0.5 * std::pow(1.0 + b * std::pow(pi, 4) / 5.0, 2);
    if (mask == 0b010) return a * a / 8.0;
    if (mask == 0b101) return 8.0 * b * b * std::pow(pi, 8) / 225.0;
    return 0.0;
  };
  model.equation = "sin(x1) + " + std::to_string(a) + " * sin(x2) ** 2 + " + std::to_string(b) + " * x3 ** 4 * sin(x1)";
  return model;
}

// Product of (|4 x - 2| + a) / (1 + a) on (0, 1) (A. Saltelli, I. M. Sobol', RESS 50, 1995).
inline AnalyticModel gModel(std::vector<double> a) {
  AnalyticModel model{.name = "g", .inputs = static_cast<int>(a.size())};
  for (std::size_t i = 0; i < a.size(); ++i) {
    const std::string x = "x" + std::to_string(i + 1);
    const std::string ai = std::to_string(a[i]);
    model.equation += (i ? " * " : "") + ("(abs(4 * " + x + " - 2) + " + ai + ") / (1 + " + ai + ")");
  }
  model.mean = 1.0;
  model.evaluate = [a](const double* x) {
    double product = 1.0;
    for (std::size_t i = 0; i < a.size(); ++i) product *= (std::abs(4.0 * x[i] - 2.0) + a[i]) / (1.0 + a[i]);
    return product;
  };
  model.partialVariance = [a](AnalyticModel::Mask mask) {
    double product = mask ? 1.0 : 0.0;
    for (std::size_t i = 0; i < a.size(); ++i)
      if (mask >> i & 1) product *= 1.0 / (3.0 * (1.0 + a[i]) * (1.0 + a[i]));
    return product;
  };
  return model;
}

// Sum of c x on (0, 1): every index is c squared over the sum of squares, R squared is 1.
inline AnalyticModel linearModel(std::vector<double> c) {
  AnalyticModel model{.name = "linear", .inputs = static_cast<int>(c.size())};
  for (std::size_t i = 0; i < c.size(); ++i) {
    model.mean += c[i] / 2.0;
    model.equation += (i ? " + " : "") + std::to_string(c[i]) + " * x" + std::to_string(i + 1);
  }
  model.evaluate = [c](const double* x) {
    double sum = 0.0;
    for (std::size_t i = 0; i < c.size(); ++i) sum += c[i] * x[i];
    return sum;
  };
  model.partialVariance = [c](AnalyticModel::Mask mask) {
    if (std::popcount(mask) != 1) return 0.0;
    const double factor = c[static_cast<std::size_t>(std::countr_zero(mask))];
    return factor * factor / 12.0;
  };
  return model;
}

// Product of the inputs on (0, 1): an input of the term brings its variance 1/12, any other its squared mean 1/4.
inline AnalyticModel productModel(int inputs) {
  AnalyticModel model{.name = "product", .inputs = inputs};
  for (int i = 1; i <= inputs; ++i) model.equation += (i > 1 ? " * x" : "x") + std::to_string(i);
  model.mean = std::pow(0.5, inputs);
  model.evaluate = [inputs](const double* x) {
    double product = 1.0;
    for (int i = 0; i < inputs; ++i) product *= x[i];
    return product;
  };
  model.partialVariance = [inputs](AnalyticModel::Mask mask) {
    const int in = std::popcount(mask);
    return in ? std::pow(1.0 / 12.0, in) * std::pow(0.25, inputs - in) : 0.0;
  };
  return model;
}

// 4 x1 x2 + 2 x3 + x4^2 on (0, 1): additive over the groups {x1, x2}, {x3}, {x4}, so that each group's closed index is
// its total one.
inline AnalyticModel additiveGroupsModel() {
  AnalyticModel model{.name = "additive groups", .inputs = 4};
  model.equation = "4 * x1 * x2 + 2 * x3 + x4 ** 2";
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
