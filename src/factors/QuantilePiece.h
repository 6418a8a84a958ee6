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
  static constexpr std::size_t kNodes = 8;

  // The quantile is `x` but for `reach`. A bracket around it, whose cumulatives differ by no more than a tolerance of
  // the lower one, is narrower than `wide`; every bracket below `narrow` is one. For one target, or for some of them.
  template <class Number>
  struct QuantileOf {
    Number x;
    Number reach;
    Number narrow;
    Number wide;
  };
  using Quantile = QuantileOf<double>;

  static constexpr std::size_t kAlignment = 64;

  // What quantiles are computed from, of `kCount` pieces side by side.
  template <std::size_t kCount>
  struct Row {
    alignas(kAlignment) double centre[kCount], scale[kCount],
        coefficients[kNodes][kCount], reach[kCount], unsure[kCount];
  };

  // Appends pieces, in rising order, for what of the values from `low` to `high` can be interpolated well enough for
  // the tolerance. Requires: low < high, and their sizes below 1e300.
  static void append(const Distribution& distribution, double low, double high, double tolerance,
                     std::vector<QuantilePiece>& pieces);

  // The cumulative probabilities that it is for.
  double low() const { return low_; }
  double high() const { return high_; }
  template <std::size_t kCount>
  void enter(Row<kCount>& row, std::size_t place) const {
    row.centre[place] = centre_;
    row.scale[place] = scale_;
    for (std::size_t i = 0; i < kNodes; ++i) row.coefficients[i][place] = coefficients_[i];
    row.reach[place] = reach_;
    row.unsure[place] = unsure_;
  }
  // Of the pieces from `place` on, as many as a Group holds. Requires: low() <= target <= high(), and the tolerance
  // that they were made for.
  template <class Group, std::size_t kCount>
  TARVEX_INLINE static QuantileOf<Group> at(const Row<kCount>& row, std::size_t place, const Group& targets,
                                            double tolerance) {
    const Group scale = of<Group>(row.scale + place);
    const Group t = (targets - of<Group>(row.centre + place)) * scale;
    Group x = of<Group>(row.coefficients[kNodes - 1] + place);
    Group slope = {};
    for (std::size_t k = kNodes - 1; k-- > 0;) {
      slope = slope * t + x;
      x = x * t + of<Group>(row.coefficients[k] + place);
    }
    const Group width = tolerance * targets * (slope * scale);
    // The cumulatives at both ends of a bracket may be out by what the reach stands for.
    const Group reach = of<Group>(row.reach + place);
    const Group band = width * of<Group>(row.unsure + place) + 4.0 * reach;
    return {x, reach, width - band, width + band};
  }

 private:
  // The quantile of a cumulative probability and its derivative.
  struct Place {
    double x;
    double slope;
  };
  struct Part;

  template <class Group>
  TARVEX_INLINE static const Group& of(const double* numbers) {
    return *reinterpret_cast<const Group*>(numbers);
  }
  Place placeAt(double p) const {
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
