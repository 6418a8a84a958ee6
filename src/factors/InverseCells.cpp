#include "factors/InverseCells.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>

#include "base/VectorUnits.h"
#include "factors/Distribution.h"
#include "factors/properForm.h"

namespace tarvex {
namespace {

constexpr double kUnit = std::numeric_limits<double>::epsilon();

constexpr int kUsesBefore = 2;      // searches in a cell that are bisected before its pieces pay
constexpr double kRoundings = 4.0;  // spacings of doubles by which a width may be out, and more
constexpr int kMostHalvings = 64;   // of a cell whose ends are no neighbours, nearly always
constexpr double kLargest = 1e300;  // sums of two values below it are finite

double size(double a, double b) {
  return std::max(std::fabs(a), std::fabs(b));
}

// The least count of halvings that brings `width` below `narrow`, but for the rounding of the quotient; 0 where no few
// of them do.
TARVEX_INLINE int halvingsTo(double narrow, double width) {
  constexpr int kExponentBits = 52;  // above the fraction
  constexpr int kExponentOfHalf = 1022;
  const int exponent =
      static_cast<int>(std::bit_cast<std::uint64_t>(width / narrow) >> kExponentBits) - kExponentOfHalf;
  return exponent > 0 && exponent <= kMostHalvings ? exponent : 0;
}

}  // namespace

const QuantilePiece* InverseCells::pieceFor(const Distribution& distribution, const Search& search) {
  if (cells_.empty()) cells_.resize(distribution.table.size() - 1);
  Cell& cell = cells_[search.cell];
  if (cell.uses <= kUsesBefore && cell.uses++ == kUsesBefore) {
    const double low = distribution.table[search.cell].x;
    const double high = distribution.table[search.cell + 1].x;
    if (low < high && size(low, high) < kLargest)
      QuantilePiece::append(distribution, low, high, distribution.inverseRule().tolerance, cell.pieces);
  }
  const auto found =
      std::partition_point(cell.pieces.begin(), cell.pieces.end(),
                           [&search](const QuantilePiece& piece) { return piece.high() < search.target; });
  return found != cell.pieces.end() && found->low() <= search.target ? &*found : nullptr;
}

// The bisection with the cumulatives that the quantile leaves open, and no others.
double InverseCells::findSlowly(const Distribution& distribution, const Search& search,
                                const QuantilePiece::Quantile& quantile) {
  struct End {
    TablePoint point;
    bool isKnown;
  };
  const auto know = [&distribution](End& end) {
    if (!end.isKnown) end.point.p = distribution.cumulative(end.point.x);
    end.isKnown = true;
    return end.point.p;
  };
  const InverseRule rule = distribution.inverseRule();
  End lo{distribution.table[search.cell], true};
  End hi{distribution.table[search.cell + 1], true};
  for (int pass = 0; pass < rule.maxPasses; ++pass) {
    const double width = hi.point.x - lo.point.x;
    if (width < quantile.narrow && !lo.isKnown && !hi.isKnown) break;
    if (width <= quantile.wide) {
      const double below = know(lo);
      if (!(std::fabs(below - know(hi)) > std::fabs(below) * rule.tolerance)) break;
    }
    const double m = middle(lo.point.x, hi.point.x);
    if (m == lo.point.x || m == hi.point.x) break;
    const bool isNear = std::fabs(m - quantile.x) <= quantile.reach;
    End end{{m, 0.0}, false};
    const bool isBelow = isNear ? know(end) <= search.target : m < quantile.x;
    (isBelow ? lo : hi) = end;
  }
  return middle(lo.point.x, hi.point.x);
}

// Searches side by side, in groups for vector registers. A lane without an interpolated quantile stands still.
struct InverseCells::Lanes {
  static constexpr std::size_t kWidth = 4;
  static constexpr std::size_t kGroups = kLanes / kWidth;
  typedef double Group __attribute__((vector_size(kWidth * sizeof(double))));
  using Groups = Group[kGroups];

  static double& at(Groups& groups, std::size_t lane) { return reinterpret_cast<double*>(groups)[lane]; }

  Groups lo = {};
  Groups hi = {};
  Groups x = {};
  Groups halvings = {};  // that are asked for
  int least = kMostHalvings;
  int most = 0;
};

TARVEX_INLINE void InverseCells::halve(Lanes& lanes) {
  using Group = Lanes::Group;
  Lanes::Groups lo;
  Lanes::Groups hi;
  for (std::size_t k = 0; k < Lanes::kGroups; ++k) {
    lo[k] = lanes.lo[k];
    hi[k] = lanes.hi[k];
  }
  int pass = 0;
  for (; pass < lanes.least; ++pass)
    for (std::size_t k = 0; k < Lanes::kGroups; ++k) {
      const Group m = (lo[k] + hi[k]) * 0.5;
      const auto isBelow = m < lanes.x[k];
      lo[k] = isBelow ? m : lo[k];
      hi[k] = isBelow ? hi[k] : m;
    }
  for (; pass < lanes.most; ++pass)
    for (std::size_t k = 0; k < Lanes::kGroups; ++k) {
      const Group m = (lo[k] + hi[k]) * 0.5;
      const auto goesOn = lanes.halvings[k] > static_cast<double>(pass);
      const auto isBelow = m < lanes.x[k];
      lo[k] = goesOn & isBelow ? m : lo[k];
      hi[k] = goesOn & ~isBelow ? m : hi[k];
    }
  for (std::size_t k = 0; k < Lanes::kGroups; ++k) {
    lanes.lo[k] = lo[k];
    lanes.hi[k] = hi[k];
  }
}

TARVEX_WIDE void InverseCells::halveWide(Lanes& lanes) {
  halve(lanes);
}

void InverseCells::halveTogether(Lanes& lanes) {
  if (hasWideUnits())
    halveWide(lanes);
  else
    halve(lanes);
}

// Whether the bisection of a cell ends with this bracket around the quantile: both ends were middles, farther from the
// quantile than its reach; the width is one to end with, the width before it was not; and it has doubles enough to be
// halved further.
TARVEX_INLINE bool InverseCells::isCertain(const QuantilePiece::Quantile& quantile, const TablePoint* cell, double lo,
                                           double hi) {
  const double rounding = kRoundings * kUnit * size(lo, hi);
  const double width = hi - lo;
  return quantile.x - lo > quantile.reach && hi - quantile.x > quantile.reach && width < quantile.narrow &&
         2.0 * width - rounding > quantile.wide && width >= rounding && lo != cell[0].x && hi != cell[1].x;
}

void InverseCells::find(const Distribution& distribution, const Search* searches, double* x, std::size_t count) {
  const TablePoint* const table = distribution.table.data();
  const double tolerance = distribution.inverseRule().tolerance;
  Lanes lanes;
  QuantilePiece::Quantile quantiles[kLanes];
  bool isInterpolated[kLanes] = {};
  for (std::size_t k = 0; k < count; ++k) {
    const QuantilePiece* piece = pieceFor(distribution, searches[k]);
    if (piece == nullptr) continue;
    quantiles[k] = piece->at(searches[k].target, tolerance);
    const TablePoint* const cell = table + searches[k].cell;
    const int halvings = halvingsTo(quantiles[k].narrow, cell[1].x - cell[0].x);
    isInterpolated[k] = true;
    Lanes::at(lanes.lo, k) = cell[0].x;
    Lanes::at(lanes.hi, k) = cell[1].x;
    Lanes::at(lanes.x, k) = quantiles[k].x;
    Lanes::at(lanes.halvings, k) = halvings;
    lanes.least = std::min(lanes.least, halvings);
    lanes.most = std::max(lanes.most, halvings);
  }
  if (lanes.most > 0) halveTogether(lanes);
  for (std::size_t k = 0; k < count; ++k) {
    const double lo = Lanes::at(lanes.lo, k);
    const double hi = Lanes::at(lanes.hi, k);
    if (!isInterpolated[k])
      x[k] = distribution.bisect(searches[k], distribution.inverseRule());
    else if (isCertain(quantiles[k], table + searches[k].cell, lo, hi))
      x[k] = middle(lo, hi);
    else
      x[k] = findSlowly(distribution, searches[k], quantiles[k]);
  }
}

}  // namespace tarvex
