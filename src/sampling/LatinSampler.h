#pragma once

#include "correlation/DiagonalBand.h"
#include "sampling/DesignColumn.h"
#include "sampling/RankOrdering.h"
#include "sampling/Sampler.h"

namespace tarvex {

// Latin hypercube (M.D. McKay, R.J. Beckman, W.J. Conover, Technometrics 21, 1979): the probability of each stochastic
// factor is cut in as many strata as there are runs, each stratum gets one random point, and the points of a factor are
// put in random order, or in the order that correlation demands. Under a rank correlation matrix that is refused the
// sample is that of no correlation.
class LatinSampler : public Sampler {
 public:
  LatinSampler() : Sampler(kLatin, 1, 1) {}
  std::unique_ptr<Sampler> clone(std::string& /*message*/) const override {
    return std::make_unique<LatinSampler>(*this);
  }

  std::string warningBefore(const FactorList& factors) const override;
  void reset() override;
  void writeSection(TextWriter& out) const override;

 private:
  enum Phase : std::int32_t { kStratify = 0, kShuffle = 1, kFinish = 2 };

  bool fill(double target, sampValues& store, FactorList& factors) override;
  bool readItems(TextReader& in) override;
  void restoreDefaults() override;

  bool independentStep(DiagonalBand& diagonalBand, sampValues& store, const FactorList& factors);
  bool rankedStep(sampValues& store, const FactorList& factors);
  void endStep(Phase next, float phaseEnd, std::int32_t phaseFactors, double percent);

  bool stratifyCell(sampValues& store, const FactorList& factors);
  bool stratifyCellToOrder(sampValues& store, const FactorList& factors);
  bool exchangePair(sampValues& store, const FactorList& factors);
  bool finishCell(DiagonalBand& diagonalBand, sampValues& store, const FactorList& factors);
  bool orderCell(sampValues& store, const FactorList& factors);

  double stratumPoint();
  std::int32_t drawRow();
  void nextExchange();
  double visited(double cellsPerFactor, std::int64_t inFactor) const;
  void releaseColumns();

  Phase phase_ = kStratify;
  bool ranked_ = false;  // the columns are put in the order of a rank table
  std::int32_t numStochastic_ = 0;
  std::int64_t exchanges_ = 0;  // made in the current column
  DesignColumn column_;         // of the factor that is being worked on
  DesignColumn parentColumn_;   // of its parent in the dependence tree
  RankOrdering ordering_;
};

// A random point of stratum `stratum` of `strata`, all equally likely.
double pointOfStratum(std::int32_t stratum, std::int32_t strata, double random);

}  // namespace tarvex
