#include "sampling/MorrisSampler.h"

#include <algorithm>
#include <cmath>

#include "base/TextReader.h"
#include "base/TextWriter.h"
#include "base/sampValues.h"
#include "base/uniformRandom.h"
#include "factors/FactorList.h"
#include "sampling/designRows.h"

namespace tarvex {

MorrisSampler::MorrisSampler() : Sampler(kMorris, 0, 1) {}

std::unique_ptr<Sampler> MorrisSampler::clone() const {
  return std::make_unique<MorrisSampler>(*this);
}

bool MorrisSampler::setLevels(std::uint32_t count) {
  if (count == 0) {
    errorText = "Num level must be a positive value";
    return false;
  }
  levels_ = count;
  return true;
}

bool MorrisSampler::setTrajectories(std::uint32_t count) {
  if (count == 0) {
    errorText = "Num trajectories must be a positive value";
    return false;
  }
  trajectories_ = count;
  return true;
}

std::int64_t MorrisSampler::runCount(std::int64_t trajectories, std::int64_t stochasticCount) {
  return trajectories * (stochasticCount + 1);
}

double MorrisSampler::generate(double targetPercent, sampValues& store, FactorList& factors) {
  numFactors = factors.factorCount();
  const std::vector<std::int32_t> stochastic = stochasticFactors(factors);
  numStochastic_ = static_cast<std::int32_t>(stochastic.size());
  if (!checkSettings()) return -1.0;
  std::vector<double> row = constantRow(factors);
  while (progress < targetPercent) {
    if (sampleIndex == 0) buildTrajectory();
    for (std::size_t column = 0; column < stochastic.size(); ++column)
      row[static_cast<std::size_t>(stochastic[column])] = cell(sampleIndex, static_cast<std::int32_t>(column));
    if (!addRun(store, row, errorText)) return -1.0;
    if (++sampleIndex > numStochastic_) {
      sampleIndex = 0;
      ++factorPosition;  // counts trajectories here
    }
    setRunProgress(runCount(factorPosition, numStochastic_) + sampleIndex);
  }
  if (progress >= 50.0f) trajectory_.clear();
  return progress;
}

// A design that its settings don't describe would be misread by the measures: a half trajectory, or one without jumps.
bool MorrisSampler::checkSettings() {
  if (!hasSamples()) return false;
  if (levels_ < 2) {
    errorText = "The number of levels must be at least 2";
    return false;
  }
  const std::int64_t needed = runCount(trajectories_, numStochastic_);
  if (numSamples == needed) return true;
  errorText = "The number of executions must be " + std::to_string(needed) + ": trajectories times factors plus one";
  return false;
}

// The trajectory is made in whole levels; the last stage turns them into probabilities.
void MorrisSampler::buildTrajectory() {
  const auto columns = static_cast<std::size_t>(numStochastic_);
  trajectory_.assign((columns + 1) * columns, 0.0);
  chooseDirections();
  addBasePoint();
  shuffleColumns();
  recordChanges();
}

// Each column jumps once, column j between the runs j and j + 1, up or down by half the levels.
void MorrisSampler::chooseDirections() {
  for (std::int32_t column = 0; column < numStochastic_; ++column) {
    const bool up = uniformRandom(randomState) + 0.5 < 1.0;
    for (std::int32_t run = 0; run <= numStochastic_; ++run) cell(run, column) = (run > column) == up ? jump() : 0.0;
  }
}

void MorrisSampler::addBasePoint() {
  for (std::int32_t column = 0; column < numStochastic_; ++column) {
    double base = std::floor(levels_ * uniformRandom(randomState) * 0.5);
    if (base == jump()) base -= 1.0;  // of an odd number of levels
    for (std::int32_t run = 0; run <= numStochastic_; ++run) cell(run, column) += base;
  }
}

// As many random exchanges as there are columns.
void MorrisSampler::shuffleColumns() {
  for (std::int32_t i = 0; i < numStochastic_; ++i) {
    const std::int32_t a = drawColumn();
    const std::int32_t b = drawColumn();
    for (std::int32_t run = 0; run <= numStochastic_; ++run) std::swap(cell(run, a), cell(run, b));
  }
}

std::int32_t MorrisSampler::drawColumn() {
  return std::min(static_cast<std::int32_t>(uniformRandom(randomState) * numStochastic_), numStochastic_ - 1);
}

void MorrisSampler::recordChanges() {
  changedFactor_.push_back(-1);
  for (std::int32_t run = 1; run <= numStochastic_; ++run)
    for (std::int32_t column = 0; column < numStochastic_; ++column)
      if (cell(run - 1, column) != cell(run, column)) changedFactor_.push_back(column);
  for (double& level : trajectory_) level = levelMidpoint(level);
}

// The middle of one of `levels_` equal strata of probability.
double MorrisSampler::levelMidpoint(double level) const {
  const double p = levels_;
  return (100.0 / p * level + 100.0 / (2.0 * p)) * 0.01;
}

double& MorrisSampler::cell(std::int32_t run, std::int32_t column) {
  return trajectory_[static_cast<std::size_t>(run) * static_cast<std::size_t>(numStochastic_) +
                     static_cast<std::size_t>(column)];
}

void MorrisSampler::reset() {
  Sampler::reset();
  trajectory_.clear();
  changedFactor_.clear();
}

void MorrisSampler::writeSection(TextWriter& out) const {
  out << levels_ << '\n' << trajectories_ << '\n' << numSamples << '\n' << numFactors << '\n' << seed << '\n';
  // A generation that was stopped leaves an array that doesn't cover the design.
  if (numSamples == 0 || changedFactor_.size() != static_cast<std::size_t>(numSamples)) {
    out << "No elementary effects\n";
    return;
  }
  out << "Elementary effects\n";
  for (const std::int32_t factor : changedFactor_) out << factor << '\n';
}

void MorrisSampler::readSection(TextReader& in) {
  constexpr std::int32_t kSeedAfterFailure = 5648423;
  if (!readItems(in)) {
    in.setFail();
    *this = MorrisSampler();
    // Kept: a section that can't be read leaves this seed, not the class's own.
    static_cast<void>(setSeed(kSeedAfterFailure));
  }
}

bool MorrisSampler::readItems(TextReader& in) {
  constexpr std::size_t kMaxHeading = 99;
  constexpr std::uint64_t kBytesEach = 2;  // a digit and its line's end
  std::int32_t storedSeed = 0;
  in >> levels_ >> trajectories_ >> numSamples >> numFactors >> storedSeed;
  if (in.fail() || !noneNegative({numSamples, numFactors}) || !setSeed(storedSeed)) return false;

  in.skipLine();
  std::string heading;
  if (!in.readLineCut(heading, kMaxHeading)) return false;
  changedFactor_.clear();
  if (heading != "Elementary effects") return true;
  if (!in.checkCount(numSamples, kBytesEach)) return false;
  for (std::int32_t i = 0; i < numSamples; ++i) {
    std::int32_t factor = 0;
    in >> factor;
    // The measures index factors and trajectories by these numbers.
    if (in.fail() || factor < -1 || factor >= numFactors || (i == 0 && factor != -1)) return false;
    changedFactor_.push_back(factor);
  }
  in.skipLine();
  return std::count(changedFactor_.begin(), changedFactor_.end(), -1) <= std::int64_t{trajectories_};
}

}  // namespace tarvex
