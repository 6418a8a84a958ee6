#pragma once

#include <vector>

#include "correlation/RankTable.h"
#include "sampling/DesignColumn.h"
#include "sampling/Sampler.h"

namespace tarvex {

// A factor's place in a replicated design.
struct RepElement {
  std::string name;
  std::int32_t flag = 0;  // 0 or 1 for a stochastic factor, -1 for any other
};

// Replicated Latin hypercube (M.D. McKay, Evaluating prediction uncertainty, NUREG/CR-6311, 1995): a base Latin
// hypercube of m runs and r replicates of it, in each of which every factor keeps the same m values in another order.
// `runTable` records where each value went. There is no such design without correlation: a rank correlation matrix that
// isn't positive semidefinite is an error.
class RepLatinSampler : public Sampler {
 public:
  RepLatinSampler() : Sampler(kRepLatin, 1, 5648423) {}
  std::unique_ptr<Sampler> clone(std::string& /*message*/) const override {
    return std::make_unique<RepLatinSampler>(*this);
  }

  std::int32_t baseDesign() const { return baseDesign_; }
  std::int32_t replications() const { return replications_; }
  std::int32_t choice() const { return choice_; }
  // m above 0, else nothing changes. A set m drops the run table.
  [[nodiscard]] bool setBaseDesign(std::int32_t m);
  // Another r than before drops the run table. Below 1 there is nothing to generate.
  void setReplications(std::int32_t r);
  // Anything but 0 keeps generate() from making rows.
  void setChoice(std::int32_t choice) { choice_ = choice; }

  // One element per factor: a stochastic one known by name keeps its flag, a new one gets 0, every other factor -1.
  void synchronise(const FactorList& factors);
  const std::vector<RepElement>& elements() const { return elements_; }
  std::int32_t elementFlag(std::int32_t i) const;        // -2 out of range
  const std::string* elementName(std::int32_t i) const;  // null out of range
  [[nodiscard]] bool setElementFlag(std::int32_t i, std::int32_t flag);

  // False before a generation, and for a table that holds nothing.
  bool hasRunTable() const;
  // The runs, one in each replicate, at which a factor took its valueRank-th smallest value, from 0. Null when the
  // table is absent or an argument out of range.
  const std::int32_t* runOf(std::int32_t factor, std::int32_t valueRank) const;
  std::int64_t recordedRuns() const override;

  // Another count than before drops the run table; 0 and less change nothing.
  void setNumFactors(std::int32_t count) override;
  // The stream of random numbers goes on.
  void reset() override;
  void writeSection(TextWriter& out) const override;

 private:
  enum Phase : std::int32_t { kBaseBlock = 0, kReplicates = 1 };

  bool fill(double target, sampValues& store, FactorList& factors) override;
  bool readItems(TextReader& in) override;
  void restoreDefaults() override;

  bool begin(const FactorList& factors);
  void stratifyCell(const FactorList& factors);
  bool permuteCell(const FactorList& factors);
  bool startReplicate(const FactorList& factors);
  const std::int32_t* rankOfCell(const FactorList& factors);
  bool endReplicate(sampValues& store);
  double visited() const { return static_cast<double>(baseDesign_) * factorPosition + sampleIndex; }
  std::size_t runIndex(std::int32_t factor, std::int32_t valueRank) const;
  void updateSampleCount();

  bool readElements(TextReader& in);
  bool readRunTable(TextReader& in);

  std::int32_t baseDesign_ = 1;
  std::int32_t replications_ = 1;
  std::int32_t choice_ = 0;
  std::vector<RepElement> elements_;
  std::vector<std::int32_t> runTable_;  // by factor, value rank, replicate; empty when there is none

  Phase phase_ = kBaseBlock;
  std::int32_t replicate_ = 0;
  std::vector<DesignColumn> block_;  // the replicate in work, a column per factor
  std::shared_ptr<const RankTable> ranks_;
  DesignColumn sortedColumn_;         // the m values of the current factor
  std::int32_t stochasticIndex_ = 0;  // of the current factor, among the stochastic ones
};

}  // namespace tarvex
