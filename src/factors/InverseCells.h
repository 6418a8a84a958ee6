#pragma once

#include <cstddef>
#include <vector>

#include "factors/QuantilePiece.h"

namespace tarvex {

class Distribution;
struct TablePoint;

// The bisections of an inverse table for a whole column: the doubles that Distribution::bisect() ends with, bit by bit,
// after few calls of the cumulative or none.
//
// Where a bisection ends is decided by the quantile alone, but for the rounding of the cumulative. For pieces of the
// table's cells the quantile is interpolated in the cumulative probability; `reach` is far more than what the
// interpolation and the cumulative's own rounding were seen to err by. A middle farther than that from the interpolated
// quantile lies on the side that the quantile says, and so does the cumulative of it; a nearer one is decided by the
// cumulative. In the same way a bracket clearly wider or narrower than the last one may be decides the end by its width
// alone. So the cell is halved around the interpolated quantile as often as its width asks for, and what is left is
// judged once: no middle on the way was nearer to the quantile than the ends of the last bracket. What can't be
// interpolated (ends of the support, kinks) is bisected.
class InverseCells {
 public:
  // One bisection: table cell `cell` is halved around the cumulative probability `target`.
  struct Search {
    std::size_t cell;
    double target;
  };
  static constexpr std::size_t kLanes = 32;  // searches that are carried on side by side

  // `count` of kLanes at most. Requires: the table is the one of all calls before.
  void find(const Distribution& distribution, const Search* searches, double* x, std::size_t count);

 private:
  struct Cell {
    int uses = 0;
    std::vector<QuantilePiece> pieces;
  };
  struct Lanes;

  const QuantilePiece* pieceFor(const Distribution& distribution, const Search& search);
  static void halve(Lanes& lanes, double tolerance);
  static void halveWide(Lanes& lanes, double tolerance);
  static void halveTogether(Lanes& lanes, double tolerance);
  static double findSlowly(const Distribution& distribution, const Search& search,
                           const QuantilePiece::Quantile& quantile);

  std::vector<Cell> cells_;
};

}  // namespace tarvex
