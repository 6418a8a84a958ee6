#pragma once

#include <array>
#include <cstddef>
#include <vector>

namespace tarvex {

class Distribution;

// The bisections of an inverse table for a whole column: the doubles that Distribution::bisect() ends with, bit by bit,
// after few calls of the cumulative or none.
//
// Where a bisection ends is decided by the quantile alone, but for the rounding of the cumulative. For pieces of the
// table's cells the quantile is interpolated in the cumulative probability; `reach` is far more than what the
// interpolation and the cumulative's own rounding were seen to err by. A middle farther than that from the interpolated
// quantile lies on the side that the quantile says, and so does the cumulative of it; a nearer one is decided by the
// cumulative. In the same way a bracket clearly wider or narrower than the last one may be decides the end by its width
// alone. What can't be interpolated (ends of the support, kinks) is bisected.
class InverseCells {
 public:
  // One bisection: table cell `cell` is halved around the cumulative probability `target`.
  struct Search {
    std::size_t cell;
    double target;
  };
  static constexpr std::size_t kLanes = 8;  // searches that are carried on side by side

  // `count` of kLanes at most. Requires: the table is the one of all calls before.
  void find(const Distribution& distribution, const Search* searches, double* x, std::size_t count);

 private:
  static constexpr std::size_t kNodes = 8;

  // The quantile between two cumulative probabilities, in Newton's form.
  struct Piece {
    double low = 0.0, high = 0.0;
    std::array<double, kNodes> nodes{};
    std::array<double, kNodes> coefficients{};
    double reach = 0.0;
    double unsure = 0.0;  // share of a width by which the slope may be out, but for the rounding
  };
  struct Cell {
    int uses = 0;
    std::vector<Piece> pieces;
  };
  struct Lanes;
  struct Place;
  struct Quantile;
  struct Part;

  const Piece* pieceFor(const Distribution& distribution, const Search& search);
  static void halve(Lanes& lanes);
  static void halveWide(Lanes& lanes);
  static void halveTogether(Lanes& lanes);
  static bool interpolate(const Distribution& distribution, const Part& part, Piece& piece);
  static void addPieces(const Distribution& distribution, const Part& part, std::vector<Piece>& pieces);
  static Place placeAt(const Piece& piece, double p);
  static Quantile quantileAt(const Piece& piece, double target, double tolerance);
  static double findSlowly(const Distribution& distribution, const Search& search, const Quantile& quantile);

  std::vector<Cell> cells_;
};

}  // namespace tarvex
