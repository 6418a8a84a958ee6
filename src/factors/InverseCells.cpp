#include "factors/InverseCells.h"

#include <algorithm>
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

// Numbers of a vector register, and what their comparisons give.
typedef double Group __attribute__((vector_size(4 * sizeof(double)), may_alias));

using Flags = decltype(Group{} < Group{});

TARVEX_INLINE Group& groupAt(double* numbers, std::size_t place) {
  return *reinterpret_cast<Group*>(numbers + place);
}

// Results of these stand in an argument: returned they would need the wide registers outside of wide functions, too.

TARVEX_INLINE void findSize(const Group& a, const Group& b, Group& size) {
  const Group sizeOfA = a < 0.0 ? -a : a;
  const Group sizeOfB = b < 0.0 ? -b : b;
  size = sizeOfA < sizeOfB ? sizeOfB : sizeOfA;
}

// The least counts of halvings that bring widths below those of `narrow`, but for the rounding of the quotients; 0
// where no few of them do.
TARVEX_INLINE void findHalvings(const Group& narrow, const Group& width, Flags& halvings) {
  constexpr int kFractionBits = 52;
  constexpr int kExponentOfHalf = 1022;
  const Group quotient = width / narrow;
  // A sign makes the exponent one of those that are too large.
  const Flags upper = __builtin_bit_cast(Flags, quotient) >> kFractionBits & 0xfff;
  const Flags exponent = upper - kExponentOfHalf;
  const Flags none = {};
  halvings = exponent > 0 ? exponent : none;
  halvings = exponent <= kMostHalvings ? halvings : none;
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

// Searches side by side. A lane without an interpolated quantile isn't looked at.
struct InverseCells::Lanes {
  QuantilePiece::Row<kLanes> pieces;
  bool isInterpolated[kLanes];
  // Of the cells and their targets.
  alignas(QuantilePiece::kAlignment) double low[kLanes], high[kLanes], target[kLanes];
  // The quantiles, and the brackets around them that are left.
  alignas(QuantilePiece::kAlignment) double x[kLanes], reach[kLanes], narrow[kLanes], wide[kLanes], lo[kLanes],
      hi[kLanes];
  alignas(QuantilePiece::kAlignment) std::int64_t halvings[kLanes];
  // 1 where the bisection of the cell ends with this bracket, else 0.
  alignas(QuantilePiece::kAlignment) double isCertain[kLanes];

  QuantilePiece::Quantile quantile(std::size_t k) const { return {x[k], reach[k], narrow[k], wide[k]}; }
};

TARVEX_INLINE void InverseCells::halve(Lanes& lanes, double tolerance) {
  constexpr std::size_t kWidth = sizeof(Group) / sizeof(double);
  constexpr std::size_t kGroups = 4;  // as many as the registers hold
  for (std::size_t k = 0; k < kLanes; k += kWidth) {
    const auto quantile = QuantilePiece::at<Group>(lanes.pieces, k, groupAt(lanes.target, k), tolerance);
    groupAt(lanes.x, k) = quantile.x;
    groupAt(lanes.reach, k) = quantile.reach;
    groupAt(lanes.narrow, k) = quantile.narrow;
    groupAt(lanes.wide, k) = quantile.wide;
    findHalvings(quantile.narrow, groupAt(lanes.high, k) - groupAt(lanes.low, k),
                 reinterpret_cast<Flags&>(lanes.halvings[k]));
  }
  for (std::size_t first = 0; first < kLanes; first += kGroups * kWidth) {
    std::int64_t least = kMostHalvings;
    std::int64_t most = 0;
    Group lo[kGroups];
    Group hi[kGroups];
    Group x[kGroups];
    for (std::size_t k = first; k < first + kGroups * kWidth; ++k) {
      if (!lanes.isInterpolated[k]) continue;
      least = std::min(least, lanes.halvings[k]);
      most = std::max(most, lanes.halvings[k]);
    }
    for (std::size_t i = 0; i < kGroups; ++i) {
      lo[i] = groupAt(lanes.low, first + i * kWidth);
      hi[i] = groupAt(lanes.high, first + i * kWidth);
      x[i] = groupAt(lanes.x, first + i * kWidth);
    }
    std::int64_t pass = 0;
    for (; pass < least; ++pass)
      for (std::size_t i = 0; i < kGroups; ++i) {
        const Group m = (lo[i] + hi[i]) * 0.5;
        const auto isBelow = m < x[i];
        lo[i] = isBelow ? m : lo[i];
        hi[i] = isBelow ? hi[i] : m;
      }
    for (; pass < most; ++pass)
      for (std::size_t i = 0; i < kGroups; ++i) {
        const Group m = (lo[i] + hi[i]) * 0.5;
        const auto& asked = reinterpret_cast<const Flags&>(lanes.halvings[first + i * kWidth]);
        const Group below = m < x[i] ? m : lo[i];
        const Group above = m < x[i] ? hi[i] : m;
        lo[i] = asked > pass ? below : lo[i];
        hi[i] = asked > pass ? above : hi[i];
      }
    // Certain is what was judged rightly all the way: both ends were middles, farther from the quantile than its reach;
    // the width is one to end with, the width before it was not; and it has doubles enough to be halved further.
    for (std::size_t i = 0; i < kGroups; ++i) {
      const std::size_t k = first + i * kWidth;
      const Group reach = groupAt(lanes.reach, k);
      const Group width = hi[i] - lo[i];
      Group rounding = {};
      findSize(lo[i], hi[i], rounding);
      rounding *= kRoundings * kUnit;
      const Group no = {};
      Group certain = no + 1.0;
      certain = x[i] - lo[i] > reach ? certain : no;
      certain = hi[i] - x[i] > reach ? certain : no;
      certain = width < groupAt(lanes.narrow, k) ? certain : no;
      certain = 2.0 * width - rounding > groupAt(lanes.wide, k) ? certain : no;
      certain = width >= rounding ? certain : no;
      certain = lo[i] != groupAt(lanes.low, k) ? certain : no;
      certain = hi[i] != groupAt(lanes.high, k) ? certain : no;
      groupAt(lanes.isCertain, k) = certain;
      groupAt(lanes.lo, k) = lo[i];
      groupAt(lanes.hi, k) = hi[i];
    }
  }
}

TARVEX_WIDE void InverseCells::halveWide(Lanes& lanes, double tolerance) {
  halve(lanes, tolerance);
}

void InverseCells::halveTogether(Lanes& lanes, double tolerance) {
  if (hasWideUnits())
    halveWide(lanes, tolerance);
  else
    halve(lanes, tolerance);
}

void InverseCells::find(const Distribution& distribution, const Search* searches, double* x, std::size_t count) {
  static const QuantilePiece kNone;
  const TablePoint* const table = distribution.table.data();
  Lanes lanes;
  bool isAny = false;
  for (std::size_t k = 0; k < kLanes; ++k) {
    const QuantilePiece* const piece = k < count ? pieceFor(distribution, searches[k]) : nullptr;
    const TablePoint* const cell = table + (piece != nullptr ? searches[k].cell : 0);
    lanes.isInterpolated[k] = piece != nullptr;
    isAny = isAny || piece != nullptr;
    (piece != nullptr ? piece : &kNone)->enter(lanes.pieces, k);
    lanes.low[k] = cell[0].x;
    lanes.high[k] = cell[1].x;
    lanes.target[k] = piece != nullptr ? searches[k].target : 0.0;
  }
  if (isAny) halveTogether(lanes, distribution.inverseRule().tolerance);
  for (std::size_t k = 0; k < count; ++k) {
    if (!lanes.isInterpolated[k])
      x[k] = distribution.bisect(searches[k], distribution.inverseRule());
    else if (lanes.isCertain[k] != 0.0)
      x[k] = middle(lanes.lo[k], lanes.hi[k]);
    else
      x[k] = findSlowly(distribution, searches[k], lanes.quantile(k));
  }
}

}  // namespace tarvex
