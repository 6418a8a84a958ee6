#pragma once

#include "postproc/SensitivityStats.h"

namespace tarvex {

class RepLatinSampler;

// Share of the variance explained by each factor, from the means over runs that share one of its levels.
class ImportanceStats : public SensitivityStats {
 public:
  static constexpr std::int32_t kSlots = 1;  // per variable

  ImportanceStats() : SensitivityStats(kImportance) {}
  std::unique_ptr<SensitivityStats> clone() const override { return std::make_unique<ImportanceStats>(*this); }
  std::int32_t slotsOf(const IndexRecord&) const override { return kSlots; }

 protected:
  // True, with `computed` false, for a design that doesn't know the runs of each level.
  bool computeAll(const PrepConfiguration& prep, const OutputTable& outputs, const Progress& progress) override;

 private:
  bool computeVariable(std::int32_t variable, const RepLatinSampler& design, std::vector<double> runs,
                       const Progress& progress);
};

}  // namespace tarvex
