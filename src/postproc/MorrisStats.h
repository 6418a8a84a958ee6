#pragma once

#include "postproc/SensitivityStats.h"

namespace tarvex {

class MorrisSampler;

// Elementary effects along trajectories: the mean of the absolute effects and their spread.
class MorrisStats : public SensitivityStats {
 public:
  enum Slot : std::int32_t { kMean = 0, kSigma = 1 };
  static constexpr std::int32_t kSlots = 2;  // per variable

  MorrisStats() : SensitivityStats(kMorris) {}
  std::unique_ptr<SensitivityStats> clone() const override { return std::make_unique<MorrisStats>(*this); }
  std::int32_t slotsOf(const IndexRecord&) const override { return kSlots; }

 protected:
  bool computeAll(const PrepConfiguration& prep, const OutputTable& outputs, const Progress& progress) override;

 private:
  void computeVariable(std::int32_t variable, const MorrisSampler& design, const double* runs);
};

}  // namespace tarvex
