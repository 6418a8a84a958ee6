#pragma once

#include <array>
#include <cstddef>
#include <vector>

#include "base/VectorUnits.h"

namespace tarvex {

class Distribution;

// The quantile of a distribution over a span of cumulative probabilities, as the polynomial through points of the
// cumulative, with what it was seen to err by.
class QuantilePiece {
 public:
  // The quantile is `x` but for `reach`. A bracket around it, whose cumulatives differ by no more than a tolerance of
  // the lower one, is narrower than `wide`; every bracket below `narrow` is one.
  struct Quantile {
    double x;
    double reach;
    double narrow;
    double wide;
  };

  // Appends pieces, in rising order, for what of the values from `low` to `high` can be interpolated well enough for
  // the tolerance. Requires: low < high, and their sizes below 1e300.
  static void append(const Distribution& distribution, double low, double high, double tolerance,
                     std::vector<QuantilePiece>& pieces);

  // The cumulative probabilities that it is for.
  double low() const { return low_; }
  double high() const { return high_; }
  // Requires: low() <= target <= high(), and the tolerance that it was made for.
  TARVEX_INLINE Quantile at(double target, double tolerance) const {
    const Place place = placeAt(target);
    const double width = tolerance * target * place.slope;
    // The cumulatives at both ends of a bracket may be out by what the reach stands for.
    const double band = width * unsure_ + 4.0 * reach_;
    return {place.x, reach_, width - band, width + band};
  }

 private:
  static constexpr std::size_t kNodes = 8;

  // The quantile of a cumulative probability and its derivative.
  struct Place {
    double x;
    double slope;
  };
  struct Part;

  TARVEX_INLINE Place placeAt(double p) const {
    const double t = (p - centre_) * scale_;
    double x = coefficients_[kNodes - 1];
    double slope = 0.0;
    for (std::size_t k = kNodes - 1; k-- > 0;) {
      slope = slope * t + x;
      x = x * t + coefficients_[k];
    }
    return {x, slope * scale_};
  }
  static void append(const Distribution& distribution, const Part& part, std::vector<QuantilePiece>& pieces);
  bool fit(const Distribution& distribution, const Part& part);
  bool probe(const Distribution& distribution, const Part& part);

  double low_ = 0.0, high_ = 0.0;
  // In powers of t = (p - centre) * scale, from -1 to 1.
  double centre_ = 0.0, scale_ = 0.0;
  std::array<double, kNodes> coefficients_{};
  double reach_ = 0.0;
  double unsure_ = 0.0;  // share of a width by which the slope may be out, but for the rounding
};

}  // namespace tarvex
