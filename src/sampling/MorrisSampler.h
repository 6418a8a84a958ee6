#pragma once

#include <cstddef>
#include <vector>

#include "sampling/Sampler.h"

namespace tarvex {

// The one-at-a-time design of the elementary effects method (M. D. Morris, Technometrics 33, 1991). A trajectory has a
// run more than there are stochastic factors; each of its steps changes one factor by half the grid of levels.
class MorrisSampler : public Sampler {
 public:
  MorrisSampler() : Sampler(kMorris, 0, 1) {}
  std::unique_ptr<Sampler> clone(std::string& /*message*/) const override {
    return std::make_unique<MorrisSampler>(*this);
  }

  std::uint32_t levels() const { return levels_; }              // of the grid
  std::uint32_t trajectories() const { return trajectories_; }  // of the whole design
  [[nodiscard]] bool setLevels(std::uint32_t count);            // above 0
  [[nodiscard]] bool setTrajectories(std::uint32_t count);      // above 0
  // Runs of a design of that many trajectories over `stochasticCount` factors: what numSamples must be.
  static std::int64_t runCount(std::int64_t trajectories, std::int64_t stochasticCount);

  // Per run, the stochastic factor (counted in list order, from 0) in which it differs from the run before it; -1 at
  // the first run of a trajectory. Empty before a generation.
  const std::vector<std::int32_t>& changedFactor() const { return changedFactor_; }
  std::int64_t recordedRuns() const override;

  void reset() override;
  void writeSection(TextWriter& out) const override;

 private:
  bool fill(double target, sampValues& store, FactorList& factors) override;
  bool readItems(TextReader& in) override;
  void restoreDefaults() override;

  bool checkSettings();
  void buildTrajectory();
  void chooseDirections();
  void addBasePoint();
  void shuffleColumns();
  void recordChanges();
  std::int32_t drawColumn();
  double jump() const { return static_cast<double>(levels_ / 2); }  // in levels, of a step
  double levelMidpoint(double level) const;
  double& cell(std::int32_t run, std::int32_t column);
  bool readChanges(TextReader& in);

  std::uint32_t levels_ = 0;
  std::uint32_t trajectories_ = 0;
  std::int32_t numStochastic_ = 0;
  std::vector<double> trajectory_;  // numStochastic_ + 1 runs by numStochastic_ columns, under construction
  std::vector<std::int32_t> changedFactor_;
};

}  // namespace tarvex
