#pragma once

#include <cstdint>
#include <functional>
#include <vector>

namespace tarvex {

// The variance of a function of independent inputs, split by the inputs that cause it (I. M. Sobol', MMCE 1, 1993). A
// set of inputs is a mask: bit i stands for input i.
struct VarianceDecomposition {
  using Mask = std::uint32_t;

  int inputs = 0;
  double mean = 0.0;
  // The part due to the interaction of exactly these inputs.
  std::function<double(Mask)> partialVariance = nullptr;

  double variance() const;
  // The index of one interaction; of a single input its first order index.
  double index(Mask mask) const { return partialVariance(mask) / variance(); }
  double firstOrder(int input) const { return index(Mask{1} << input); }
  // Everything that the inputs of the mask explain among themselves.
  double closed(Mask mask) const;
  // Everything that they take part in.
  double total(Mask mask) const { return 1.0 - closed(((Mask{1} << inputs) - 1) & ~mask); }
  double totalOrder(int input) const { return total(Mask{1} << input); }
};

// Functions whose answers are known in closed form: what the measures of a sample of them are held against.

// sin x1 + a sin^2 x2 + b x3^4 sin x1 on (-pi, pi) (T. Ishigami, T. Homma, ISUMA 1990).
VarianceDecomposition ishigamiDecomposition(double a, double b);

// The g function, product of (|4 x - 2| + a) / (1 + a) on (0, 1) (A. Saltelli, I. M. Sobol', RESS 50, 1995).
VarianceDecomposition gDecomposition(const std::vector<double>& a);

// Sum of c x on (0, 1): every index is c squared over the sum of squares.
VarianceDecomposition linearDecomposition(const std::vector<double>& c);

// Distribution of a factor's absolute elementary effects.
struct EffectMoments {
  double mean = 0.0;
  double spread = 0.0;
  double kurtosis = 3.0;  // fourth central moment over the squared variance
};

// Those of the g function in a Morris design of an even number of levels, the midpoints of as many strata.
EffectMoments gEffectMoments(const std::vector<double>& a, std::size_t input, int levels);

}  // namespace tarvex
