#pragma once

#include <cstdint>
#include <vector>

namespace tarvex {

// The diagonal band distribution on the unit square (R.M. Cooke and R. Waij, Monte Carlo sampling for generalized
// knowledge dependence, Risk Analysis 6, 1986): a band along a diagonal whose width sets the correlation of the two
// coordinates. It draws the child of a link in the dependence tree from the value of the parent.
class DiagonalBand {
 public:
  // Chooses the band for a correlation in [-1, 1]; anything else stands for independence.
  void setCorrelation(double correlation);
  // The child's uniform number for the parent's. Takes one draw, whatever the branch.
  double sampleConditional(double parent);
  // The same for each value of a column, in place.
  void sampleConditional(std::vector<double>& column);

  double rho() const { return rho_; }
  double band() const { return band_; }  // a in [0, 1]; 1 - a is the half-width of the band

 private:
  std::int32_t seed_ = -5648423;  // the word for uniformRandom
  double rho_ = 0.0;
  double band_ = 0.0;
};

}  // namespace tarvex
