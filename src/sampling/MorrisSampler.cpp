#include "sampling/MorrisSampler.h"

#include <algorithm>
#include <cmath>
#include <iterator>

#include "base/TextReader.h"
#include "base/TextWriter.h"
#include "base/sampValues.h"
#include "base/uniformRandom.h"
#include "factors/FactorList.h"
#include "sampling/designRows.h"

namespace tarvex {

namespace {

constexpr std::string_view kEffects = "Elementary effects";
constexpr std::string_view kNoEffects = "No elementary effects";

}  // namespace

bool MorrisSampler::setLevels(std::uint32_t count) {
  if (count == 0) return refuse("Num level must be a positive value");
  levels_ = count;
  return true;
}

bool MorrisSampler::setTrajectories(std::uint32_t count) {
  if (count == 0) return refuse("Num trajectories must be a positive value");
  trajectories_ = count;
  return true;
}

std::int64_t MorrisSampler::runCount(std::int64_t trajectories, std::int64_t stochasticCount) {
  return trajectories * (stochasticCount + 1);
}

// A generation that was stopped leaves an array that doesn't cover the design.
std::int64_t MorrisSampler::recordedRuns() const {
  return numSamples > 0 && std::ssize(changedFactor_) == numSamples ? numSamples : -1;
}

bool MorrisSampler::fill(double target, sampValues& store, FactorList& factors) {
  numFactors = factors.factorCount();
  const std::vector<std::int32_t> stochastic = stochasticFactors(factors);
  numStochastic_ = static_cast<std::int32_t>(stochastic.size());
  if (!checkSettings()) return false;
  std::vector<double> row = constantRow(factors);
  while (progress < target) {
    if (sampleIndex == 0) buildTrajectory();
    for (std::size_t column = 0; column < stochastic.size(); ++column)
      row[static_cast<std::size_t>(stochastic[column])] = cell(sampleIndex, static_cast<std::int32_t>(column));
    if (!addRun(store, row)) return false;
    if (++sampleIndex > numStochastic_) {
      sampleIndex = 0;
      ++factorPosition;  // counts trajectories here
    }
    setRunProgress(runCount(factorPosition, numStochastic_) + sampleIndex);
  }
  if (progress >= kComplete) trajectory_.clear();
  return true;
}

// A design that its settings don't describe would be misread by the measures: a half trajectory, or one without jumps.
bool MorrisSampler::checkSettings() {
  if (!requireSamples()) return false;
  if (levels_ < 2) return refuse("The number of levels must be at least 2");
  const std::int64_t needed = runCount(trajectories_, numStochastic_);
  return numSamples == needed ||
         refuse("The number of executions must be " + std::to_string(needed) + ": trajectories times factors plus one");
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
  if (recordedRuns() < 0) {
    out << kNoEffects << '\n';
    return;
  }
  out << kEffects << '\n';
  for (const std::int32_t factor : changedFactor_) out << factor << '\n';
}

bool MorrisSampler::readItems(TextReader& in) {
  constexpr std::size_t kMaxHeading = 99;
  in.expect("the number of levels") >> levels_;
  in.expect("the number of trajectories") >> trajectories_;
  if (!readRuns(in) || !readFactorCount(in) || !readSeed(in)) return false;
  in.skipLine();
  std::string heading;
  if (!in.expect("the elementary effects").readLineCut(heading, kMaxHeading)) return false;
  if (heading == kEffects) return readChanges(in);
  return heading == kNoEffects || in.refuse("the elementary effects were expected, not '" + heading + "'");
}

// The measures index factors and trajectories by these numbers.
bool MorrisSampler::readChanges(TextReader& in) {
  constexpr std::uint64_t kBytesEach = 2;  // a digit and its line's end
  if (!in.checkCount(numSamples, kBytesEach)) return false;
  std::int64_t started = 0;
  for (std::int32_t run = 0; run < numSamples; ++run) {
    std::int32_t factor = 0;
    in.expect("the factor that a run changes") >> factor;
    if (in.fail()) return false;
    if (factor < -1 || factor >= numFactors)
      return in.refuse("the factor that a run changes must be from -1 to " + std::to_string(numFactors - 1) + ", not " +
                       std::to_string(factor));
    if (factor == -1) ++started;
    if (started == 0) return in.refuse("the first run must begin a trajectory, with -1");
    if (started > trajectories_) return in.refuse("more than " + std::to_string(trajectories_) + " trajectories begin");
    changedFactor_.push_back(factor);
  }
  in.skipLine();
  return true;
}

void MorrisSampler::restoreDefaults() {
  constexpr std::int32_t kSeedAfterFailure = 5648423;
  *this = MorrisSampler();
  // Kept: a section that can't be read leaves this seed, not the class's own.
  seed = kSeedAfterFailure;
  randomState = -seed;
}

}  // namespace tarvex
