#include "correlation/DiagonalBand.h"

#include <cmath>
#include <initializer_list>

#include "base/uniformRandom.h"

namespace tarvex {

namespace {

constexpr double kBandTolerance = 1e-5;   // of the correlation that a band gives
constexpr double kMassTolerance = 0.001;  // Kept: loose, but every sample with a tree was drawn with it.

// A stretch of the child's axis on which its density is 1 / width.
struct Segment {
  double low;
  double high;
  double width;
  bool present = true;

  double mass() const { return high / width - low / width; }
  // The point that has `mass` between itself and the segment's start.
  double pointAt(double mass) const {
    const double density = 1.0 / width;
    double below = low;
    double above = high;
    for (;;) {
      const double x = (below + above) / 2.0;
      const double reached = x * density - low * density;
      // The ends meet only where rounding has put the mass outside of the segment.
      if (!(std::abs(reached - mass) > kMassTolerance) || x == below || x == above) return x;
      (mass < reached ? above : below) = x;
    }
  }
};

// The child's value with the mass t below it. The segments follow each other from 0 to 1; the last one takes the rest.
double pointIn(std::initializer_list<Segment> segments, double t) {
  double before = 0.0;
  for (const Segment& segment : segments) {
    if (!segment.present) continue;
    const double reached = segment.mass() + before;
    if (t <= reached || &segment == segments.end() - 1) return segment.pointAt(t - before);
    before = reached;
  }
  return t;
}

double pointAlongRising(double u, double a, double t) {
  const double w = 1.0 - a;
  const double upper = (a - u) + 1.0;
  return pointIn(
      {{0.0, w - u, w, u < w}, {std::abs(w - u), u <= a ? w + u : upper, 2.0 * w, 0.0 < u && u < 1.0}, {upper, 1.0, w}},
      t);
}

double pointAlongFalling(double u, double a, double t) {
  const double w = 1.0 - a;
  const double upper = u + a;
  return pointIn({{0.0, u - a, w, u > a},
                  {std::abs(u - a), u < w ? upper : (w - u) + 1.0, 2.0 * w, 0.0 < u && u < 1.0},
                  {upper, 1.0, w}},
                 t);
}

}  // namespace

void DiagonalBand::setCorrelation(double correlation) {
  if (!(correlation >= -1.0 && correlation <= 1.0)) {
    rho_ = 0.0;
    band_ = 0.0;
    return;
  }
  if (correlation == rho_ && band_ > 0.0) return;
  rho_ = correlation;
  const double wanted = std::abs(correlation);
  double low = 0.0;
  double high = 1.0;
  for (;;) {
    band_ = (low + high) / 2.0;
    const double given = band_ - band_ * band_ * band_ + band_ * band_;  // rises from 0 to 1 over [0, 1]
    if (std::abs(given - wanted) <= kBandTolerance) return;
    (given > wanted ? high : low) = band_;
  }
}

double DiagonalBand::sampleConditional(double parent) {
  const double t = uniformRandom(seed_);
  if (rho_ == 1.0) return parent;
  if (rho_ == -1.0) return 1.0 - parent;
  if (rho_ == 0.0) return t;
  return rho_ > 0.0 ? pointAlongRising(parent, band_, t) : pointAlongFalling(parent, band_, t);
}

void DiagonalBand::sampleConditional(std::vector<double>& column) {
  for (double& value : column) value = sampleConditional(value);
}

}  // namespace tarvex
