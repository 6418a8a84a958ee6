#pragma once

#include "sampling/LpTauSequence.h"
#include "sampling/Sampler.h"

namespace tarvex {

// Quasi-random sampling: the runs are points 1, 2, 3, ... of the LP-tau sequence. No seed; correlation plays no part.
// At most 370 stochastic factors.
class LpTauSampler : public Sampler {
 public:
  LpTauSampler() : Sampler(kLpTau, 0, 1) {}
  std::unique_ptr<Sampler> clone(std::string& /*message*/) const override {
    return std::make_unique<LpTauSampler>(*this);
  }

  void writeSection(TextWriter& out) const override;

 private:
  bool fill(double target, sampValues& store, FactorList& factors) override;
  bool readItems(TextReader& in) override;
  void restoreDefaults() override;

  LpTauSequence sequence_;
};

}  // namespace tarvex
