#pragma once

#include <optional>

#include "correlation/DiagonalBand.h"
#include "sampling/DesignColumn.h"
#include "sampling/RankOrdering.h"
#include "sampling/Sampler.h"

namespace tarvex {

// Independent uniform numbers, arranged for the correlation method: each column by a rank table, or each child of the
// dependence tree drawn from its parent.
class RandomSampler : public Sampler {
 public:
  RandomSampler() : Sampler(kRandom, 0, 1) {}
  std::unique_ptr<Sampler> clone() const override { return std::make_unique<RandomSampler>(*this); }

  double generate(double targetPercent, sampValues& store, FactorList& factors) override;
  void reset() override;

  void writeSection(TextWriter& out) const override;
  void readSection(TextReader& in) override;

 private:
  double share() const;
  bool drawCell(sampValues& store, const FactorList& factors);
  bool orderCell(sampValues& store, const FactorList& factors);
  void releaseColumns();

  DiagonalBand diagonalBand_;  // one for the whole generation
  DesignColumn column_;        // of the factor that is being drawn
  DesignColumn parentColumn_;  // of its parent in the dependence tree
  RankOrdering ordering_;
};

}  // namespace tarvex
