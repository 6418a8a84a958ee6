#pragma once

#include <string_view>
#include <vector>

#include "sampling/FactorGroups.h"
#include "sampling/Sampler.h"
#include "sampling/classicFrequencies.h"

namespace tarvex {

// One row of the design: a factor's frequency in the classic test, a block of runs in the extended ones.
struct FastBlock {
  std::int32_t frequency = 0;    // the factor's; of a block its highest, that of the factor or group under test
  std::int32_t resamples = 0;    // curves of the block; 1 in the classic test
  std::int32_t curveLength = 0;  // runs of one curve; all runs in the classic test
  std::int32_t blockLength = 0;  // runs of the block; all runs in the classic test

  bool operator==(const FastBlock&) const = default;
};

// The search curves of the Fourier amplitude sensitivity test: the classic one (R. I. Cukier et al., J. Chem. Phys. 59,
// 1973), one curve with a frequency a factor, and the extended one (A. Saltelli, S. Tarantola, K. Chan, Technometrics
// 41, 1999), a block of runs per factor or group of factors.
class FastSampler : public Sampler {
 public:
  enum AnalysisMode : std::int32_t { kClassic = 0, kExtended = 1, kGroups = 2 };
  static constexpr std::int32_t kMaxClassicFactors = kMaxFrequencies;

  FastSampler() : Sampler(kFast, 1, 1) {}
  std::unique_ptr<Sampler> clone(std::string& /*message*/) const override {
    return std::make_unique<FastSampler>(*this);
  }

  std::int32_t analysisMode() const { return analysisMode_; }
  [[nodiscard]] bool setAnalysisMode(std::int32_t mode);

  // The groups of mode 2. A change of them drops the design table. Operations on unknown names, and on names that can't
  // be kept, return false; errorText says which.
  [[nodiscard]] bool addGroup(const std::string& name);
  [[nodiscard]] bool removeGroup(std::string_view name);
  [[nodiscard]] bool addElement(std::string_view groupName, const std::string& factorName);
  [[nodiscard]] bool removeElement(std::string_view factorName);
  std::int32_t groupSize(std::string_view name) const { return groups_.groupSize(name); }
  const std::string* groupElement(std::string_view name, std::int32_t i) const { return groups_.groupElement(name, i); }
  bool isInGroup(std::string_view factorName) const { return groups_.groupOf(factorName) >= 0; }
  const std::vector<std::string>& groupNames() const { return groups_.groupNames(); }
  const std::vector<std::string>& elementNames() const { return groups_.elementNames(); }
  const std::vector<std::int32_t>& elementGroups() const { return groups_.elementGroups(); }
  // Whether every group has members, each a stochastic factor of the list and in one group only. The reason against is
  // in errorText.
  [[nodiscard]] bool checkGroups(const FactorList& factors);

  // Whether numSamples is enough for that many stochastic factors; the text with the least size in errorText.
  [[nodiscard]] bool checkSampleSize(std::int32_t stochasticCount);

  std::int64_t designRuns(const FactorList& factors) const override;

  // The design of the last generation; empty when there is none. In the classic and the extended test a row per
  // stochastic factor in list order; in the test on groups a row per group, then one per stochastic factor in no group.
  const std::vector<FastBlock>& designTable() const { return designTable_; }

  std::int64_t recordedRuns() const override;

  void reset() override;
  void writeSection(TextWriter& out) const override;

 private:
  bool fill(double target, sampValues& store, FactorList& factors) override;
  bool readItems(TextReader& in) override;
  void restoreDefaults() override;

  std::int64_t unitCount(std::int64_t stochasticCount) const;
  std::int64_t designRows() const;
  bool hasDesign() const;
  bool changeGroups(bool done, std::string_view name);

  bool beginClassic(const FactorList& factors);
  bool beginExtended(const FactorList& factors);
  void assignUnits(const FactorList& factors);
  bool openBlock();
  std::int32_t membersOf(std::int32_t unit) const;
  void assignFrequencies(std::int32_t memberCount);
  void drawPhases();
  void fillRows(std::int32_t run, std::int32_t count, double* rows) const;
  void fillRow(double s, double* row) const;

  bool readDesignTable(TextReader& in);

  std::int32_t analysisMode_ = kClassic;
  FactorGroups groups_;
  std::vector<FastBlock> designTable_;

  std::int32_t numStochastic_ = 0;
  std::vector<std::int32_t> frequencies_;  // per factor of the list; 0 for constants and relations
  std::vector<double> phases_;             // per factor of the list

  // Of the extended tests: the block that is being made.
  std::int32_t samplesPerUnit_ = 0;  // its budget of runs
  FastBlock block_;                  // in the classic test the length of its curve
  std::int32_t blockStart_ = 0;
  std::int32_t blockEnd_ = 0;
  std::int32_t currentUnit_ = -1;
  std::vector<std::int32_t> units_;  // per factor of the list, the block that tests it
};

}  // namespace tarvex
