#pragma once

#include <array>

#include "postproc/ColumnCorrelations.h"
#include "postproc/SensitivityStats.h"

namespace tarvex {

class RankColumns;

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
  void clear() override;
  std::int32_t slotsOf(const IndexRecord&) const override { return kSlots; }
  // A singular correlation matrix ends the computation at its variable; flags of measures without a test mean nothing.
  std::string notComputedReason(std::int32_t variable, std::int32_t slot) const override;
  // Whether the flag of a measure says that it lies significantly above 0 (at `alpha`, one-sided).
  bool hasTest(std::int32_t measure) const;

  // "PEAR" to "Smirnov" as panels and tables name a measure; "ERROR" for any other number.
  static std::string_view measureName(std::int32_t measure);

  // Takes another confidence and decides the significance anew. False when nothing is computed, the level is the one in
  // force, sample and outputs don't fit the measures, or it was stopped; nothing is changed then.
  [[nodiscard]] bool applyAlpha(float value, const PrepConfiguration& prep, const OutputTable& outputs,
                                const Progress& progress = {});

  // R squared on raw data and on ranks. False when out of range.
  [[nodiscard]] bool determination(std::int32_t variable, double& raw, double& ranks) const;
  [[nodiscard]] bool determinationAdjusted(std::int32_t variable, double& raw, double& ranks) const;

  float alpha = 0.95f;           // confidence of the tests
  std::int32_t activeCount = 0;  // records of kind Uncertain
  // Factors, then variables.
  std::vector<ColumnMoments> factorMoments;
  std::vector<ColumnMoments> rankMoments;

 protected:
  bool computeAll(const PrepConfiguration& prep, const OutputTable& outputs, const Progress& progress) override;
  void writeHeader(TextWriter& out) const override;
  void readHeader(TextReader& in) override;
  std::string_view kindSeparator() const override;
  void writeTail(TextWriter& out) const override;
  void readTail(TextReader& in) override;

 private:
  // A measure's number on raw data, plus the kind, is its number on that kind.
  using DataKind = std::int32_t;
  static constexpr DataKind kRaw = 0;
  static constexpr DataKind kRanks = 1;

  static constexpr std::int32_t kNone = -1;
  static constexpr double kSingularValue = 1.0;  // of all measures where the matrix can't be inverted
  static constexpr double kNoDistance = -1.0;    // of Smirnov where one of the two sets of runs is empty

  bool allAre(double value, std::int32_t variable, std::int32_t slot) const;
  void findSingular();
  std::vector<std::size_t> activeFactors() const;

  void markCollinear(const ColumnCorrelations& raw);
  // Measures and determination of all variables on one kind of data. False when stopped, or when a matrix is singular:
  // that variable has the singular result, those behind it keep zeros.
  bool deriveMeasures(const ColumnCorrelations& correlations, std::int32_t runs, DataKind kind,
                      const Progress& progress);
  void setSingular(std::int32_t variable, DataKind kind);
  bool deriveRankMeasures(const PrepConfiguration& prep, const OutputTable& outputs, const Progress& progress);
  bool computeSmirnov(const RankColumns& ranks, std::int32_t runs, const Progress& progress);
  bool rankMeasures();

  bool decideSignificance(const sampValues& samples, const OutputTable& outputs, const Progress& progress);
  void flagCorrelations(std::int32_t variable, std::int32_t runs);
  void flagRegression(std::int32_t variable, DataKind kind, std::int32_t runs, double squaredError);
  // The coefficient of a factor in the model of a variable; 0.0 for a factor that is left out.
  double coefficient(std::size_t factor, std::int32_t variable, DataKind kind) const;
  // For each variable, raw and ranks in turn: the squared differences between model and output, summed over the runs.
  bool sumSquaredErrors(const sampValues& samples, const OutputTable& outputs, const Progress& progress,
                        std::vector<double>& errors) const;

  // R squared: raw, ranks, adjusted raw, adjusted ranks.
  std::vector<std::array<double, 4>> determinations_;
  std::array<std::int32_t, 2> singular_ = {kNone, kNone};  // the variable whose matrix was singular, raw and ranks
};

}  // namespace tarvex
