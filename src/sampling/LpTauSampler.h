#pragma once

#include "sampling/LpTauSequence.h"
#include "sampling/Sampler.h"

namespace tarvex {

// Quasi-random sampling: the runs are points 1, 2, 3, ... of the LP-tau sequence. No seed; correlation plays no part.
// At most 370 stochastic factors.
class LpTauSampler : public Sampler {
 public:
  LpTauSampler();
  std::unique_ptr<Sampler> clone() const override;

  double generate(double targetPercent, sampValues& store, FactorList& factors) override;

  void writeSection(TextWriter& out) const override;
  void readSection(TextReader& in) override;

 private:
  bool readItems(TextReader& in);

  LpTauSequence sequence_;
};

}  // namespace tarvex
