#pragma once

#include <complex>
#include <functional>

namespace levele {

// value * exp(exponent): transforms of late breakthroughs lie far outside the range of a double.
struct ScaledValue {
  std::complex<double> value;
  double exponent = 0.0;
};

// What is to be transformed back: a function of time that is nowhere negative.
struct LaplaceTransform {
  std::function<ScaledValue(std::complex<double>)> at;
  double singularity = 0.0;  // right of it there is none; all others are real, too
  double reach = 0.0;        // sqrt(yr): the transform falls off no faster than exp(-reach * sqrt(s))
};

// The function at `time` > 0, to about eight digits of its own size however small it is; 0 where it underflows. Each
// `refinement` above 0 halves the step of the last integration once more.
double invertLaplace(const LaplaceTransform& transform, double time, int refinement = 0);

}  // namespace levele
