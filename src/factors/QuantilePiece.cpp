#include "factors/QuantilePiece.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "factors/Distribution.h"
#include "factors/properForm.h"

namespace tarvex {
namespace {

constexpr int kMaxDepth = 6;        // halvings of a cell into pieces
constexpr int kProbes = 17;         // places of a piece at which the interpolation is held against the cumulative
constexpr double kSafety = 16.0;    // the reach in the largest error of a probe
constexpr double kSpacings = 4.0;   // and in spacings of doubles
constexpr double kGood = 0.05;      // reach in last brackets below which a piece isn't halved
constexpr double kUseful = 1.0;     // and above which it is of no use
constexpr double kSteepness = 8.0;  // most that the slope may change by within a piece
constexpr double kSlopeError = 1e-7;

}  // namespace

// What a piece is to be made of: a span of values, the last bracket's tolerance, halvings so far.
struct QuantilePiece::Part {
  double low;
  double high;
  double tolerance;
  int depth;
};

void QuantilePiece::append(const Distribution& distribution, double low, double high, double tolerance,
                           std::vector<QuantilePiece>& pieces) {
  append(distribution, Part{low, high, tolerance, 0}, pieces);
}

void QuantilePiece::append(const Distribution& distribution, const Part& part, std::vector<QuantilePiece>& pieces) {
  QuantilePiece piece;
  const bool useful =
      distribution.isSmooth(part.low, part.high) && piece.fit(distribution, part) && piece.probe(distribution, part);
  const bool good = useful && piece.reach_ <= kGood * part.tolerance * piece.low_ * piece.placeAt(piece.low_).slope;
  const double centre = middle(part.low, part.high);
  if (good || part.depth == kMaxDepth || centre <= part.low || centre >= part.high) {
    if (useful) pieces.push_back(piece);
    return;
  }
  append(distribution, {part.low, centre, part.tolerance, part.depth + 1}, pieces);
  append(distribution, {centre, part.high, part.tolerance, part.depth + 1}, pieces);
}

// The polynomial through kNodes points of the cumulative. False where that doesn't rise. By divided differences, which
// Newton's form multiplied out turns into powers.
bool QuantilePiece::fit(const Distribution& distribution, const Part& part) {
  constexpr double kPi = 3.14159265358979323846;
  low_ = distribution.cumulative(part.low);
  high_ = distribution.cumulative(part.high);
  centre_ = middle(low_, high_);
  scale_ = 2.0 / (high_ - low_);
  const double centre = middle(part.low, part.high);
  const double half = part.high / 2.0 - part.low / 2.0;
  double before = high_;
  std::array<double, kNodes> nodes{};
  std::array<double, kNodes> differences{};
  for (std::size_t k = 0; k < kNodes; ++k) {
    differences[k] = centre + half * std::cos(kPi * (static_cast<double>(k) + 0.5) / kNodes);
    const double p = distribution.cumulative(differences[k]);
    if (!(p < before)) return false;
    before = p;
    nodes[k] = (p - centre_) * scale_;
  }
  if (!(low_ >= 0.0 && low_ < before)) return false;
  for (std::size_t order = 1; order < kNodes; ++order)
    for (std::size_t k = kNodes - 1; k >= order; --k)
      differences[k] = (differences[k] - differences[k - 1]) / (nodes[k] - nodes[k - order]);
  coefficients_ = {};
  for (std::size_t k = kNodes; k-- > 0;) {
    for (std::size_t i = kNodes - 1; i > 0; --i) coefficients_[i] = coefficients_[i - 1] - nodes[k] * coefficients_[i];
    coefficients_[0] = differences[k] - nodes[k] * coefficients_[0];
  }
  return true;
}

// Holds the polynomial against the cumulative between its points. False where it is of no use.
bool QuantilePiece::probe(const Distribution& distribution, const Part& part) {
  double error = 0.0;
  double flattest = std::numeric_limits<double>::infinity();
  double steepest = 0.0;
  double before = low_;
  for (int k = 0; k <= kProbes; ++k) {
    const double x = std::min(part.low + (part.high - part.low) * k / kProbes, part.high);
    const double p = distribution.cumulative(x);
    if (!(p >= before)) return false;
    before = p;
    const Place found = placeAt(p);
    error = std::max(error, std::fabs(found.x - x));
    flattest = std::min(flattest, found.slope);
    steepest = std::max(steepest, found.slope);
  }
  if (!(flattest > 0.0 && steepest < kSteepness * flattest)) return false;
  const double rounding = std::numeric_limits<double>::epsilon() * std::max(std::fabs(part.low), std::fabs(part.high));
  reach_ = kSafety * error + kSpacings * rounding;
  // The slope within a last bracket, by its change over the piece, and the error of the slope itself.
  const double bend = (steepest / flattest - 1.0) / (high_ - low_);
  unsure_ = 4.0 * part.tolerance * (1.0 + 4.0 * bend * high_) + 64.0 * reach_ / (part.high - part.low) + kSlopeError;
  return reach_ <= kUseful * part.tolerance * low_ * flattest;
}

}  // namespace tarvex
