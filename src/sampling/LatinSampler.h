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

  // What a phase walks over: every factor that counts, its cells one after the other.
  std::int64_t cellsAFactor() const;
  std::int32_t factorsOfPhase() const;
  // The progress when `cells` of the phase are done.
  float progressAt(std::int64_t cells) const;
  std::int32_t nextStretch(double target) const;
  void leave(std::int32_t cells);
  // The run of a stretch's cell `k`.
  std::int32_t row(std::int32_t k) const { return static_cast<std::int32_t>(cell_) + k; }

  // Each works on the next cells of one factor; false when the store refuses, and after a stop.
  bool visit(std::int32_t cells, DiagonalBand& diagonalBand, sampValues& store, const FactorList& factors);
  bool stratify(std::int32_t cells, sampValues& store, const FactorList& factors);
  bool exchange(std::int32_t pairs, sampValues& store, const FactorList& factors);
  bool finish(std::int32_t cells, DiagonalBand& diagonalBand, sampValues& store, const FactorList& factors);
  bool order(std::int32_t cells, sampValues& store, const FactorList& factors);
  void stratifyCells(std::int32_t cells, double* points);
  void releaseColumns();

  Phase phase_ = kStratify;
  bool ranked_ = false;  // the columns are put in the order of a rank table
  std::int32_t numStochastic_ = 0;
  std::int64_t cell_ = 0;      // of the current factor: a run, or an exchange
  DesignColumn parentColumn_;  // of the factor that is being made, in the dependence tree
  RankOrdering ordering_;
};

// A random point of stratum `stratum` of `strata`, all equally likely.
double pointOfStratum(std::int32_t stratum, std::int32_t strata, double random);

}  // namespace tarvex
