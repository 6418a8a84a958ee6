#pragma once

#include <array>
#include <complex>
#include <vector>

#include "levele/LaplaceInversion.h"

namespace levele {

struct Nuclide {
  double inventory = 0.0;   // mol, at time 0
  double decay = 0.0;       // 1/yr; decays into the next nuclide of its chain
  double doseFactor = 0.0;  // Sv/mol
  double retention = 1.0;   // multiplies the retention of a layer
};

struct Layer {
  double velocity = 0.0;  // m/yr
  double length = 0.0;    // m
  double retention = 0.0;
  double dispersion = 0.0;  // dispersion length, m
};

// A decay chain of up to three nuclides: leached from the vault after the containment time, carried through two layers.
// All transforms are in closed form (see README.md); only the way back to time is numerical.
class ChainTransport {
 public:
  static constexpr std::size_t kLongestChain = 3;

  ChainTransport(std::vector<Nuclide> chain, double leachRate, double containment, const std::array<Layer, 2>& layers);

  // Sum of weight * outflow of each nuclide from the last layer, mol/yr, at a time in yr. Requires: a weight a nuclide,
  // none negative.
  double outflow(double time, const std::vector<double>& weights, int refinement = 0) const;

  // The same with the dose factors, Sv/yr * m3 / m3 of water.
  double doseFlow(double time, int refinement = 0) const;

 private:
  using Amounts = std::array<std::complex<double>, kLongestChain>;

  void decayInContainment();
  double rightmostSingularity() const;
  ScaledValue transform(std::complex<double> s, const std::vector<double>& weights) const;
  double passLayer(const Layer& layer, std::complex<double> s, Amounts& flow) const;

  std::vector<Nuclide> chain_;  // with the inventories at the end of containment
  double leachRate_;
  double containment_;
  std::array<Layer, 2> layers_;
};

}  // namespace levele
