#include "factors/InverseCells.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "base/VectorUnits.h"
#include "factors/Distribution.h"
#include "factors/properForm.h"

namespace tarvex {
namespace {

constexpr double kUnit = std::numeric_limits<double>::epsilon();

constexpr int kUsesBefore = 2;      // searches in a cell that are bisected before its pieces pay
constexpr int kMaxDepth = 6;        // halvings of a cell into pieces
constexpr int kProbes = 17;         // places of a piece at which the interpolation is held against the cumulative
constexpr double kSafety = 16.0;    // the reach in the largest error of a probe
constexpr double kRoundings = 4;    // and in spacings of doubles
constexpr double kGood = 0.05;      // reach in last brackets below which a piece isn't halved
constexpr double kUseful = 1.0;     // and above which it is of no use
constexpr double kSteepness = 8.0;  // most that the slope may change by within a piece
constexpr double kSlopeError = 1e-7;
constexpr double kLargest = 1e300;  // sums of two values below it are finite

double size(double a, double b) {
  return std::max(std::fabs(a), std::fabs(b));
}

}  // namespace

// The quantile of a cumulative probability and its derivative.
struct InverseCells::Place {
  double x;
  double slope;
};

// Where a bisection ends: the quantile is `x` but for `reach`, and a bracket around it is one to end with below the
// width `narrow`, none above `wide`.
struct InverseCells::Quantile {
  double x;
  double reach;
  double narrow;
  double wide;
};

// What a piece is to be made of: a span of values, the last bracket's tolerance, halvings so far.
struct InverseCells::Part {
  double low;
  double high;
  double tolerance;
  int depth;
};

// The polynomial through kNodes points of the cumulative, probed between them.
bool InverseCells::interpolate(const Distribution& distribution, const Part& part, Piece& piece) {
  constexpr double kPi = 3.14159265358979323846;
  const double centre = middle(part.low, part.high);
  const double half = part.high / 2.0 - part.low / 2.0;
  std::array<double, kNodes> values{};
  for (std::size_t k = 0; k < kNodes; ++k) {
    values[k] = centre + half * std::cos(kPi * (static_cast<double>(k) + 0.5) / kNodes);
    piece.nodes[k] = distribution.cumulative(values[k]);
    if (k > 0 && !(piece.nodes[k] < piece.nodes[k - 1])) return false;
  }
  piece.low = distribution.cumulative(part.low);
  piece.high = distribution.cumulative(part.high);
  if (!(piece.low >= 0.0 && piece.low < piece.nodes.back() && piece.nodes.front() < piece.high)) return false;
  piece.coefficients = values;
  for (std::size_t order = 1; order < kNodes; ++order)
    for (std::size_t k = kNodes - 1; k >= order; --k)
      piece.coefficients[k] =
          (piece.coefficients[k] - piece.coefficients[k - 1]) / (piece.nodes[k] - piece.nodes[k - order]);

  double error = 0.0;
  double flattest = std::numeric_limits<double>::infinity();
  double steepest = 0.0;
  double before = piece.low;
  for (int k = 0; k <= kProbes; ++k) {
    const double x = std::min(part.low + 2.0 * half * k / kProbes, part.high);
    const double p = distribution.cumulative(x);
    if (!(p >= before)) return false;
    before = p;
    const Place found = placeAt(piece, p);
    error = std::max(error, std::fabs(found.x - x));
    flattest = std::min(flattest, found.slope);
    steepest = std::max(steepest, found.slope);
  }
  if (!(flattest > 0.0 && steepest < kSteepness * flattest)) return false;
  const double rounding = kUnit * size(part.low, part.high);
  piece.reach = kSafety * error + kRoundings * rounding;
  // The slope within a last bracket, by its change over the piece, and the error of the slope itself.
  const double bend = (steepest / flattest - 1.0) / (piece.high - piece.low);
  piece.unsure = 4.0 * part.tolerance * (1.0 + 4.0 * bend * piece.high) + 64.0 * piece.reach / (part.high - part.low) +
                 kSlopeError;
  return piece.reach <= kUseful * part.tolerance * piece.low * flattest;
}

InverseCells::Place InverseCells::placeAt(const Piece& piece, double p) {
  Place place{piece.coefficients[kNodes - 1], 0.0};
  for (std::size_t k = kNodes - 1; k-- > 0;) {
    const double step = p - piece.nodes[k];
    place.slope = place.slope * step + place.x;
    place.x = place.x * step + piece.coefficients[k];
  }
  return place;
}

InverseCells::Quantile InverseCells::quantileAt(const Piece& piece, double target, double tolerance) {
  const Place place = placeAt(piece, target);
  const double width = tolerance * target * place.slope;
  // The cumulatives at both ends of a bracket may be out by what the reach stands for.
  const double band = width * piece.unsure + 4.0 * piece.reach;
  return {place.x, piece.reach, width - band, width + band};
}

void InverseCells::addPieces(const Distribution& distribution, const Part& part, std::vector<Piece>& pieces) {
  Piece piece;
  const bool useful = distribution.isSmooth(part.low, part.high) && interpolate(distribution, part, piece);
  const bool good = useful && piece.reach <= kGood * part.tolerance * piece.low * placeAt(piece, piece.low).slope;
  const double centre = middle(part.low, part.high);
  if (good || part.depth == kMaxDepth || centre <= part.low || centre >= part.high) {
    if (useful) pieces.push_back(piece);
    return;
  }
  addPieces(distribution, {part.low, centre, part.tolerance, part.depth + 1}, pieces);
  addPieces(distribution, {centre, part.high, part.tolerance, part.depth + 1}, pieces);
}

const InverseCells::Piece* InverseCells::pieceFor(const Distribution& distribution, const Search& search) {
  if (cells_.empty()) cells_.resize(distribution.table.size() - 1);
  Cell& cell = cells_[search.cell];
  if (cell.uses <= kUsesBefore && cell.uses++ == kUsesBefore) {
    const double low = distribution.table[search.cell].x;
    const double high = distribution.table[search.cell + 1].x;
    if (low < high && size(low, high) < kLargest)
      addPieces(distribution, {low, high, distribution.inverseRule().tolerance, 0}, cell.pieces);
  }
  const auto found = std::partition_point(cell.pieces.begin(), cell.pieces.end(),
                                          [&search](const Piece& piece) { return piece.high < search.target; });
  return found != cell.pieces.end() && found->low <= search.target ? &*found : nullptr;
}

// The bisection with the cumulatives that the quantile leaves open, and no others.
double InverseCells::findSlowly(const Distribution& distribution, const Search& search, const Quantile& quantile) {
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
  typedef double Group __attribute__((vector_size(kWidth * sizeof(double))));

  static double& at(Group (&groups)[kLanes / kWidth], std::size_t lane) {
    return reinterpret_cast<double*>(groups)[lane];
  }

  Group lo[kLanes / kWidth] = {};
  Group hi[kLanes / kWidth] = {};
  Group x[kLanes / kWidth] = {};
  Group reach[kLanes / kWidth] = {};
  Group narrow[kLanes / kWidth];
  Group wide[kLanes / kWidth] = {};
  Group open[kLanes / kWidth] = {};  // not 0 where a middle or a width left something open
};

TARVEX_INLINE void InverseCells::halve(Lanes& lanes) {
  using Group = Lanes::Group;
  constexpr int kMaxPasses = 64;
  const Group one = {1.0, 1.0, 1.0, 1.0};
  const Group zero = {};
  bool isActive = true;
  for (int pass = 0; pass < kMaxPasses && isActive; ++pass) {
    Group active = zero;
    for (std::size_t k = 0; k < kLanes / Lanes::kWidth; ++k) {
      const Group lo = lanes.lo[k];
      const Group hi = lanes.hi[k];
      const Group x = lanes.x[k];
      const Group width = hi - lo;
      const Group m = (lo + hi) * 0.5;
      const auto goesOn = width >= lanes.narrow[k];
      const auto isNear = (m - x <= lanes.reach[k]) & (x - m <= lanes.reach[k]);
      const auto isOpen = (width <= lanes.wide[k]) | isNear;
      const auto isBelow = m < x;
      lanes.lo[k] = goesOn & isBelow ? m : lo;
      lanes.hi[k] = goesOn & ~isBelow ? m : hi;
      lanes.open[k] = goesOn & isOpen ? one : lanes.open[k];
      active = goesOn ? one : active;
    }
    isActive = active[0] + active[1] + active[2] + active[3] != 0.0;
  }
  for (std::size_t k = 0; isActive && k < kLanes / Lanes::kWidth; ++k) lanes.open[k] = one;
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

void InverseCells::find(const Distribution& distribution, const Search* searches, double* x, std::size_t count) {
  const std::vector<TablePoint>& table = distribution.table;
  const double tolerance = distribution.inverseRule().tolerance;
  Lanes lanes;
  bool isInterpolated[kLanes] = {};
  for (std::size_t k = 0; k < kLanes; ++k) Lanes::at(lanes.narrow, k) = kLargest;
  for (std::size_t k = 0; k < count; ++k) {
    const Piece* piece = pieceFor(distribution, searches[k]);
    if (piece == nullptr) continue;
    const Quantile quantile = quantileAt(*piece, searches[k].target, tolerance);
    isInterpolated[k] = true;
    Lanes::at(lanes.lo, k) = table[searches[k].cell].x;
    Lanes::at(lanes.hi, k) = table[searches[k].cell + 1].x;
    Lanes::at(lanes.x, k) = quantile.x;
    Lanes::at(lanes.reach, k) = quantile.reach;
    Lanes::at(lanes.narrow, k) = quantile.narrow;
    Lanes::at(lanes.wide, k) = quantile.wide;
  }
  halveTogether(lanes);
  for (std::size_t k = 0; k < count; ++k) {
    const Search& search = searches[k];
    const double lo = Lanes::at(lanes.lo, k);
    const double hi = Lanes::at(lanes.hi, k);
    if (!isInterpolated[k]) {
      x[k] = distribution.bisect(search, distribution.inverseRule());
    } else if (Lanes::at(lanes.open, k) == 0.0 && lo != table[search.cell].x && hi != table[search.cell + 1].x &&
               hi - lo >= kRoundings * kUnit * size(lo, hi)) {
      x[k] = middle(lo, hi);
    } else {
      const Quantile quantile{Lanes::at(lanes.x, k), Lanes::at(lanes.reach, k), Lanes::at(lanes.narrow, k),
                              Lanes::at(lanes.wide, k)};
      x[k] = findSlowly(distribution, search, quantile);
    }
  }
}

}  // namespace tarvex
