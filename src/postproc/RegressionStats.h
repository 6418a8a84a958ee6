#pragma once

#include <array>

#include "postproc/SensitivityStats.h"

namespace tarvex {

struct ColumnMoments {
  double mean = 0.0;
  double std = 0.0;
};

// Correlation and regression measures on raw data and on ranks, with the Smirnov distance, each with its rank among the
// factors and its significance. For Random, Latin hypercube, LpTau and fixed samples.
class RegressionStats : public SensitivityStats {
 public:
  enum Measure : std::int32_t { kPear = 0, kSpea, kPcc, kPrcc, kSrc, kSrrc, kSmirnov };
  static constexpr std::int32_t kMeasures = 7;
  // Slots of a variable: the measures, their ranks (1 is the strongest), their flags (1.0 or 0.0).
  static constexpr std::int32_t kRankSlots = kMeasures;
  static constexpr std::int32_t kFlagSlots = 2 * kMeasures;
  static constexpr std::int32_t kSlots = 3 * kMeasures;

  RegressionStats() : SensitivityStats(kRegression) {}
  std::unique_ptr<SensitivityStats> clone() const override { return std::make_unique<RegressionStats>(*this); }
  bool compute(const PrepConfiguration& prep, const OutputTable& outputs) override;
  void clear() override;
  std::int32_t slotsOf(const IndexRecord&) const override { return kSlots; }

  // "PEAR" to "Smirnov" as panels and tables name a measure; "ERROR" for any other number.
  static std::string_view measureName(std::int32_t measure);

  // Takes another confidence and decides the significance anew. False when nothing is computed, the level is the one in
  // force, or sample and outputs don't fit the measures; nothing is changed then.
  bool applyAlpha(float value, const PrepConfiguration& prep, const OutputTable& outputs);

  // R squared on raw data and on ranks. False when out of range.
  bool determination(std::int32_t variable, double& raw, double& ranks) const;
  bool determinationAdjusted(std::int32_t variable, double& raw, double& ranks) const;

  float alpha = 0.95f;           // confidence of the tests
  std::int32_t activeCount = 0;  // records of kind Uncertain
  // Factors, then variables.
  std::vector<ColumnMoments> factorMoments;
  std::vector<ColumnMoments> rankMoments;

 protected:
  void writeHeader(TextWriter& out) const override;
  void readHeader(TextReader& in) override;
  std::string_view kindSeparator() const override;
  void writeTail(TextWriter& out) const override;
  void readTail(TextReader& in) override;

 private:
  // R squared: raw, ranks, adjusted raw, adjusted ranks.
  std::vector<std::array<double, 4>> determinations_;
};

}  // namespace tarvex
