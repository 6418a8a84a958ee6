#pragma once

#include "postproc/SensitivityStats.h"

namespace tarvex {

class CurveSpectrum;
class FastSampler;
struct FastBlock;

// Fourier amplitude sensitivity: first order indices and, but for the classic form, total ones (there 0.0). In the test
// on groups the records are the groups, then the factors in none.
class FastStats : public SensitivityStats {
 public:
  enum Slot : std::int32_t { kFirstOrder = 0, kTotalOrder = 1 };
  static constexpr std::int32_t kSlots = 2;  // per variable

  FastStats() : SensitivityStats(kFast) {}
  std::unique_ptr<SensitivityStats> clone() const override { return std::make_unique<FastStats>(*this); }
  std::int32_t slotsOf(const IndexRecord&) const override { return kSlots; }

  std::int32_t recordCount = 0;  // factors, or groups and the factors in none

  // The classic test leaves all total orders at 0, and a file doesn't tell which test was made.
  bool hasTotals() const { return hasAny(kTotalOrder); }
  std::string notComputedReason(std::int32_t variable, std::int32_t slot) const override;

 protected:
  bool computeAll(const PrepConfiguration& prep, const OutputTable& outputs, const Progress& progress) override;
  void writeHeader(TextWriter& out) const override;
  void readHeader(TextReader& in) override;
  std::int32_t recordsInFile() const override { return recordCount; }

 private:
  bool hasAny(Slot slot) const;  // other than 0
  void makeRecords(const PrepConfiguration& prep, const FastSampler& design);
  bool checkDesign(const FastSampler& design);
  bool computeClassic(std::int32_t variable, const FastSampler& design, const double* runs, CurveSpectrum& spectrum,
                      const Progress& progress);
  bool computeBlocks(std::int32_t variable, const FastSampler& design, const double* runs, CurveSpectrum& spectrum,
                     const Progress& progress);
};

}  // namespace tarvex
