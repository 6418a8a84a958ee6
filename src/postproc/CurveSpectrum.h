#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "base/Progress.h"

namespace tarvex {

// The Fourier spectrum of one variable along a FAST search curve, by direct sums in extended precision.
class CurveSpectrum {
 public:
  // Takes the `count` runs of one curve. False when stopped. Requires: count > 0.
  [[nodiscard]] bool load(const double* runs, std::int32_t count, const Progress& progress = {});

  // Sum of squares about the curve's own mean, over count - 1; a single run gives nan.
  long double variance() const { return variance_; }
  // 2 ((A / n)^2 + (B / n)^2), with A and B the sums with cosine and sine at a whole frequency.
  long double at(std::int64_t frequency) const;
  // Adds at() of frequency 1 up to `last` to `sum`, the cores sharing the work of a long curve. False when stopped.
  [[nodiscard]] bool addUpTo(std::int32_t last, long double& sum, const Progress& progress = {}) const;
  // at() of the frequencies f, 2f, 3f and 4f.
  long double harmonics(std::int64_t frequency) const;

 private:
  struct Wave {
    double cosine;
    double sine;
  };
  class Sums;

  bool prepareWaves(std::int32_t count, const Progress& progress);
  // at() of frequency first + 1 up to `last`, each into its place of `found`.
  void fill(std::size_t first, std::size_t last, std::vector<long double>& found) const;
  std::size_t stepOf(std::int64_t frequency) const;  // through waves_, from run to run

  std::int32_t count_ = 0;
  long double variance_ = 0.0L;
  double middle_ = 0.0;  // of an odd curve
  // The two halves of the curve folded about its middle: sums and differences of the runs at the same distance.
  std::vector<double> sums_;
  std::vector<double> differences_;
  // One turn in count_ steps. Angles are whole multiples of a step, so the sums never call a library function.
  std::vector<Wave> waves_;
};

}  // namespace tarvex
