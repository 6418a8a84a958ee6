#pragma once

#include "correlation/DiagonalBand.h"
#include "sampling/DesignColumn.h"
#include "sampling/RankOrdering.h"
#include "sampling/Sampler.h"

namespace tarvex {

// Independent uniform numbers, arranged for the correlation method: each column by a rank table, or each child of the
// dependence tree drawn from its parent. Under a rank correlation matrix that is refused the sample is that of no
// correlation.
class RandomSampler : public Sampler {
 public:
  RandomSampler() : Sampler(kRandom, 0, 1) {}
  std::unique_ptr<Sampler> clone(std::string& /*message*/) const override {
    return std::make_unique<RandomSampler>(*this);
  }

  std::string warningBefore(const FactorList& factors) const override;
  void reset() override;
  void writeSection(TextWriter& out) const override;

 private:
  bool fill(double target, sampValues& store, FactorList& factors) override;
  bool readItems(TextReader& in) override;
  void restoreDefaults() override;

  // Of a phase: whether it is the second, the progress when `cells` of it are done, the cells that can be visited in
  // one piece.
  bool isOrdering() const;
  float progressAt(std::int64_t cells) const;
  std::int32_t nextStretch(double target) const;
  void leave(std::int32_t cells);
  std::int64_t cellsBefore() const { return std::int64_t{numSamples} * factorPosition + sampleIndex; }

  // Each works on the next cells of one factor; false when the store refuses, and after a stop.
  bool draw(std::int32_t cells, sampValues& store, const FactorList& factors);
  bool order(std::int32_t cells, sampValues& store, const FactorList& factors);
  void releaseColumns();

  bool ranked_ = false;        // the columns are put in order once they are drawn
  DiagonalBand diagonalBand_;  // one for the whole generation
  DesignColumn parentColumn_;  // of the factor that is being drawn, in the dependence tree
  RankOrdering ordering_;
};

}  // namespace tarvex
