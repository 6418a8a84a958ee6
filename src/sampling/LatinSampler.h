#pragma once

#include "correlation/DiagonalBand.h"
#include "sampling/DesignColumn.h"
#include "sampling/RankOrdering.h"
#include "sampling/Sampler.h"

namespace tarvex {

// Latin hypercube (M.D. McKay, R.J. Beckman, W.J. Conover, Technometrics 21, 1979): the probability of each stochastic
// factor is cut in as many strata as there are runs, each stratum gets one random point, and the points of a factor are
// put in random order, or in the order that correlation demands.
class LatinSampler : public Sampler {
 public:
  LatinSampler() : Sampler(kLatin, 1, 1) {}
  std::unique_ptr<Sampler> clone() const override { return std::make_unique<LatinSampler>(*this); }

  double generate(double targetPercent, sampValues& store, FactorList& factors) override;
  void reset() override;

  void writeSection(TextWriter& out) const override;
  void readSection(TextReader& in) override;

 private:
  enum Phase : std::int32_t { kStratify = 0, kShuffle = 1, kFinish = 2 };

  bool independentStep(DiagonalBand& diagonalBand, sampValues& store, const FactorList& factors);
  bool rankedStep(sampValues& store, const FactorList& factors);
  void endStep(Phase next, float phaseEnd, std::int32_t phaseFactors, double percent);

  bool stratifyCell(sampValues& store, const FactorList& factors);
  bool stratifyCellToOrder(sampValues& store, const FactorList& factors);
  bool exchangePair(sampValues& store, const FactorList& factors);
  bool finishCell(DiagonalBand& diagonalBand, sampValues& store, const FactorList& factors);
  bool orderCell(sampValues& store, const FactorList& factors);
  bool startOrdering(const FactorList& factors);

  double stratumPoint();
  std::int32_t drawRow();
  double visited(double cellsPerFactor) const { return cellsPerFactor * factorPosition + sampleIndex; }
  void releaseColumns();

  Phase phase_ = kStratify;
  std::int32_t numStochastic_ = 0;
  DesignColumn column_;        // of the factor that is being worked on
  DesignColumn parentColumn_;  // of its parent in the dependence tree
  RankOrdering ordering_;
};

// A random point of stratum `stratum` of `strata`, all equally likely.
double pointOfStratum(std::int32_t stratum, std::int32_t strata, double random);

}  // namespace tarvex
