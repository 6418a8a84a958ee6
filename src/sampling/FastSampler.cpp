#include "sampling/FastSampler.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "base/TextReader.h"
#include "base/TextWriter.h"
#include "base/sampValues.h"
#include "base/uniformRandom.h"
#include "factors/FactorList.h"
#include "sampling/designRows.h"

namespace tarvex {

namespace {

constexpr std::int32_t kHarmonics = 4;  // of a frequency, that count as its factor's
// Runs of a curve for each unit of its highest frequency: two a period of the highest harmonic, so that it is seen.
constexpr std::int32_t kRunsPerFrequency = 2 * kHarmonics;
constexpr std::int32_t kLeastCurve = kRunsPerFrequency * kRunsPerFrequency + 1;  // room for one complementary frequency
constexpr std::int32_t kNoUnit = -1;                                             // of constants and relations
constexpr std::int32_t kGroupFrequency = kRunsPerFrequency;  // a group has the shortest curves, and more of them

}  // namespace

FastSampler::FastSampler() : Sampler(kFast, 1, 1) {}

std::unique_ptr<Sampler> FastSampler::clone() const {
  return std::make_unique<FastSampler>(*this);
}

bool FastSampler::setAnalysisMode(std::int32_t mode) {
  if (mode < kClassic || mode > kGroups) return false;
  if (mode != analysisMode_) designTable_.clear();
  analysisMode_ = mode;
  return true;
}

void FastSampler::addGroup(const std::string& name) {
  groups_.addGroup(name);
  designTable_.clear();
}

bool FastSampler::removeGroup(std::string_view name) {
  if (!groups_.removeGroup(name)) return false;
  designTable_.clear();
  return true;
}

bool FastSampler::addElement(std::string_view groupName, const std::string& factorName) {
  if (!groups_.addElement(groupName, factorName)) return false;
  designTable_.clear();
  return true;
}

bool FastSampler::removeElement(std::string_view factorName) {
  if (!groups_.removeElement(factorName)) return false;
  designTable_.clear();
  return true;
}

bool FastSampler::checkGroups(const FactorList& factors) {
  const std::string objection = groups_.objection(factors);
  if (objection.empty()) return true;
  errorText = objection;
  return false;
}

// Factors or groups that the test tells apart. Kept: groups count in the extended test without groups, too.
std::int64_t FastSampler::unitCount(std::int64_t stochasticCount) const {
  return stochasticCount - groups_.elementCount() + groups_.groupCount();
}

std::int64_t FastSampler::designRows() const {
  return analysisMode_ == kGroups ? unitCount(numStochastic_) : numStochastic_;
}

// Groups come first, then the factors in none, in list order.
void FastSampler::assignUnits(const FactorList& factors) {
  const bool byGroup = analysisMode_ == kGroups;
  std::int32_t loose = byGroup ? groups_.groupCount() : 0;
  units_.assign(static_cast<std::size_t>(numFactors), kNoUnit);
  for (const std::int32_t f : stochasticFactors(factors)) {
    const std::int32_t group = byGroup ? groups_.groupOf(factors.factor(f).name) : -1;
    units_[static_cast<std::size_t>(f)] = group >= 0 ? group : loose++;
  }
}

bool FastSampler::checkSampleSize(std::int32_t stochasticCount) {
  const auto refuse = [this](const std::string& text) {
    errorText = text;
    return false;
  };
  if (analysisMode_ != kClassic) {
    if (unitCount(stochasticCount) * kLeastCurve <= numSamples) return true;
    return refuse("Sample size too small\nThe sample size must be >= 65 per factor/group");
  }
  if (stochasticCount < 2) return refuse("The classic test needs at least two factors");
  if (stochasticCount > kMaxClassicFactors) return refuse("The classic test takes at most 50 factors");
  const std::int64_t least = std::int64_t{kRunsPerFrequency} * checkedClassicFrequency(stochasticCount) + 1;
  if (least <= numSamples) return true;
  return refuse("Sample size too small\nChoose sample size greater than or equal to " + std::to_string(least));
}

double FastSampler::generate(double targetPercent, sampValues& store, FactorList& factors) {
  numFactors = factors.factorCount();
  numStochastic_ = factors.correlatableCount();
  if (!hasSamples()) return -1.0;
  const bool classic = analysisMode_ == kClassic;
  if (sampleIndex == 0 && !(classic ? beginClassic(factors) : beginExtended(factors))) return -1.0;
  std::vector<double> row = constantRow(factors);
  while (progress < targetPercent) {
    if (!classic && sampleIndex == blockEnd_ && !openBlock()) return -1.0;
    const std::int32_t run = sampleIndex - blockStart_;
    if (run % curveLength_ == 0) drawPhases();
    // Frequencies are whole numbers: the curves of a block need no parameter of their own.
    const double s = (2.0 * run - curveLength_ + 1.0) * std::numbers::pi / curveLength_;
    fillRow(s, row);
    if (!addRun(store, row, errorText)) return -1.0;
    setRunProgress(++sampleIndex);
  }
  return progress;
}

// One curve of all runs, a row of the table per stochastic factor.
bool FastSampler::beginClassic(const FactorList& factors) {
  // Kept: no text of its own, the methods on offer prevent it.
  const std::vector<std::int32_t> frequencies = classicFrequencies(numStochastic_);
  if (frequencies.empty()) return false;
  designTable_.assign(frequencies.size(), {});
  frequencies_.assign(static_cast<std::size_t>(numFactors), 0);
  std::size_t next = 0;
  for (const std::int32_t f : stochasticFactors(factors)) {
    designTable_[next] = {frequencies[next], 1, numSamples, numSamples};
    frequencies_[static_cast<std::size_t>(f)] = frequencies[next++];
  }
  curveLength_ = numSamples;
  return true;
}

// Shares out the runs to the blocks; what doesn't divide is dropped.
bool FastSampler::beginExtended(const FactorList& factors) {
  // Kept: no text of its own for a test that has nothing to compare.
  if (unitCount(numStochastic_) == 1 || designRows() < 1) return false;
  if (analysisMode_ == kGroups && !checkGroups(factors)) return false;
  assignUnits(factors);
  const auto units = static_cast<std::int32_t>(designRows());
  designTable_.assign(static_cast<std::size_t>(units), {});
  samplesPerUnit_ = numSamples / units;
  numSamples = units * samplesPerUnit_;
  currentUnit_ = -1;
  return true;
}

// Sizes the next block and gives its factors their frequencies. The block may be shorter than its budget: numSamples
// follows.
bool FastSampler::openBlock() {
  ++currentUnit_;
  const bool grouped = analysisMode_ == kGroups && currentUnit_ < groups_.groupCount();
  const std::int32_t memberCount = grouped ? groupSize(groupNames()[static_cast<std::size_t>(currentUnit_)]) : 1;
  if (memberCount > 1) {
    resamples_ = samplesPerUnit_ / kLeastCurve;
    omegaMax_ = kGroupFrequency;
  } else {
    resamples_ = 1;
    omegaMax_ = (samplesPerUnit_ - 1) / kRunsPerFrequency;
  }
  // Below the frequency 8 there is no complementary frequency left.
  if (resamples_ < 1 || omegaMax_ < kRunsPerFrequency) {
    errorText = "Sample set to generate too small";
    return false;
  }
  curveLength_ = kRunsPerFrequency * omegaMax_ + 1;
  blockLength_ = resamples_ * curveLength_;
  numSamples += blockLength_ - samplesPerUnit_;
  assignFrequencies(memberCount);
  blockStart_ = sampleIndex;
  blockEnd_ = sampleIndex + blockLength_;
  designTable_[static_cast<std::size_t>(currentUnit_)] = {omegaMax_, resamples_, curveLength_, blockLength_};
  return true;
}

// The factors under test get the highest frequency; the others share low ones, spread over what its harmonics leave.
void FastSampler::assignFrequencies(std::int32_t memberCount) {
  const std::int32_t highest = omegaMax_ / kRunsPerFrequency;
  const std::int32_t distinct = std::min(highest, numStochastic_ - memberCount);
  const std::int32_t step = highest > 1 && distinct > 1 ? (highest - 1) / (distinct - 1) : 0;
  frequencies_.assign(units_.size(), 0);
  std::int32_t next = 0;
  for (std::size_t f = 0; f < units_.size(); ++f)
    if (units_[f] != kNoUnit) frequencies_[f] = units_[f] == currentUnit_ ? omegaMax_ : 1 + step * (next++ % distinct);
}

// A random phase for each factor of the list, stochastic or not.
void FastSampler::drawPhases() {
  phases_.resize(static_cast<std::size_t>(numFactors));
  for (double& phase : phases_) phase = 2.0 * std::numbers::pi * uniformRandom(randomState);
}

// The point of the search curve at s (A. Saltelli, S. Tarantola, K. Chan, 1999), uniform in each coordinate.
void FastSampler::fillRow(double s, std::vector<double>& row) const {
  for (std::size_t i = 0; i < row.size(); ++i)
    if (frequencies_[i] != 0)
      row[i] = 0.5 + std::asin(std::sin(frequencies_[i] * s + phases_[i])) * std::numbers::inv_pi;
}

void FastSampler::reset() {
  Sampler::reset();
  blockStart_ = 0;
  blockEnd_ = 0;
  designTable_.clear();
}

void FastSampler::writeSection(TextWriter& out) const {
  out << seed << '\n' << numSamples << '\n' << numFactors << '\n' << numStochastic_ << '\n' << analysisMode_ << '\n';
  groups_.write(out);
  // A reader counts the rows by what stands above.
  if (designTable_.empty() || std::ssize(designTable_) != designRows()) {
    out << "no group information\n";
    return;
  }
  out << "group information\n";
  for (const FastBlock& block : designTable_)
    out << block.frequency << '\t' << block.resamples << '\t' << block.curveLength << '\t' << block.blockLength << '\n';
}

void FastSampler::readSection(TextReader& in) {
  if (!readItems(in)) {
    in.setFail();
    *this = FastSampler();
  }
}

bool FastSampler::readItems(TextReader& in) {
  constexpr std::size_t kMaxHeading = 80;
  std::int32_t storedSeed = 0;
  std::int32_t mode = -1;
  in >> storedSeed >> numSamples >> numFactors >> numStochastic_ >> mode;
  if (in.fail() || !noneNegative({numSamples, numFactors, numStochastic_})) return false;
  if (!setSeed(storedSeed) || !setAnalysisMode(mode)) return false;
  in.skipLine();
  if (!groups_.read(in)) return false;
  frequencies_.clear();
  phases_.clear();
  designTable_.clear();
  std::string heading;
  if (!in.readLineCut(heading, kMaxHeading)) return false;
  return heading != "group information" || readDesignTable(in);
}

bool FastSampler::readDesignTable(TextReader& in) {
  constexpr std::uint64_t kLeastRow = 7;  // four digits and what separates them
  const std::int64_t rows = designRows();
  if (rows < (analysisMode_ == kGroups ? 1 : 0) || !in.checkCount(rows, kLeastRow)) return false;
  designTable_.resize(static_cast<std::size_t>(rows));
  for (FastBlock& block : designTable_) {
    in >> block.frequency >> block.resamples >> block.curveLength >> block.blockLength;
    if (in.fail() || !noneNegative({block.frequency, block.resamples, block.curveLength, block.blockLength}))
      return false;
  }
  in.skipLine();
  return true;
}

}  // namespace tarvex
