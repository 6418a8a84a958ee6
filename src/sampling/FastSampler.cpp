#include "sampling/FastSampler.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <numbers>
#include <numeric>

#include "base/Cores.h"
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
constexpr std::size_t kCellsTogether = std::size_t{1} << 16;  // of rows made in one piece, some milliseconds
constexpr std::size_t kLeastCells = std::size_t{1} << 11;     // for a core of its own
constexpr std::string_view kDesign = "group information";
constexpr std::string_view kNoDesign = "no group information";
constexpr std::int32_t kGroupFrequency = kRunsPerFrequency;  // a group has the shortest curves, and more of them

// The block of a factor or group that has `budget` runs at its disposal. It may be shorter.
FastBlock blockOf(std::int32_t budget, std::int32_t memberCount) {
  FastBlock block{(budget - 1) / kRunsPerFrequency, 1, 0, 0};
  if (memberCount > 1) block = {kGroupFrequency, budget / kLeastCurve, 0, 0};
  block.curveLength = kRunsPerFrequency * block.frequency + 1;
  block.blockLength = block.resamples * block.curveLength;
  return block;
}

}  // namespace

bool FastSampler::setAnalysisMode(std::int32_t mode) {
  if (mode < kClassic || mode > kGroups)
    return refuse("The analysis mode must be from 0 to 2, not " + std::to_string(mode) + ".");
  if (mode != analysisMode_) designTable_.clear();
  analysisMode_ = mode;
  return true;
}

bool FastSampler::addGroup(const std::string& name) {
  return changeGroups(groups_.addGroup(name), name);
}

bool FastSampler::removeGroup(std::string_view name) {
  return changeGroups(groups_.removeGroup(name), name);
}

bool FastSampler::addElement(std::string_view groupName, const std::string& factorName) {
  return changeGroups(groups_.addElement(groupName, factorName), factorName);
}

bool FastSampler::removeElement(std::string_view factorName) {
  return changeGroups(groups_.removeElement(factorName), factorName);
}

// What every change of the groups ends with.
bool FastSampler::changeGroups(bool done, std::string_view name) {
  if (!done) return refuse("  Invalid name field.\n'" + std::string(name) + "'");
  designTable_.clear();
  return true;
}

bool FastSampler::checkGroups(const FactorList& factors) {
  const std::string objection = groups_.objection(factors);
  return objection.empty() || refuse(objection);
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

std::int64_t FastSampler::recordedRuns() const {
  if (!hasDesign()) return -1;
  if (analysisMode_ == kClassic) return designTable_.front().blockLength;
  return std::accumulate(designTable_.begin(), designTable_.end(), std::int64_t{0},
                         [](std::int64_t sum, const FastBlock& block) { return sum + block.blockLength; });
}

// A reader counts the rows by what stands above the table.
bool FastSampler::hasDesign() const {
  return !designTable_.empty() && std::ssize(designTable_) == designRows();
}

bool FastSampler::fill(double target, sampValues& store, FactorList& factors) {
  numFactors = factors.factorCount();
  numStochastic_ = factors.correlatableCount();
  if (!requireSamples()) return false;
  const bool classic = analysisMode_ == kClassic;
  if (isAtStart() && !(classic ? beginClassic(factors) : beginExtended(factors))) return false;
  const std::vector<double> constants = constantRow(factors);
  const auto together = static_cast<std::int32_t>(std::max<std::size_t>(kCellsTogether / constants.size(), 1));
  std::vector<double> rows;
  while (progress < target) {
    if (!classic && sampleIndex == blockEnd_ && !openBlock()) return false;
    const std::int32_t run = sampleIndex - blockStart_;
    const std::int32_t runOfCurve = run % block_.curveLength;
    if (runOfCurve == 0) drawPhases();
    // Within one curve, and none beyond the target. A block that is shorter than its budget may have reached it.
    const std::int32_t wanted = std::max(runsUntil(target) - sampleIndex, 1);
    const std::int32_t count = std::min({together, wanted, block_.curveLength - runOfCurve});
    while (rows.size() < static_cast<std::size_t>(count) * constants.size())
      rows.insert(rows.end(), constants.begin(), constants.end());
    fillRows(run, count, rows.data());
    if (!addRuns(store, rows.data(), count)) return false;
    setRunProgress(sampleIndex += count);
  }
  return true;
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
  block_.curveLength = numSamples;
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
  const std::int32_t memberCount = membersOf(currentUnit_);
  block_ = blockOf(samplesPerUnit_, memberCount);
  // Below the frequency 8 there is no complementary frequency left.
  if (block_.resamples < 1 || block_.frequency < kRunsPerFrequency) return refuse("Sample set to generate too small");
  numSamples += block_.blockLength - samplesPerUnit_;
  assignFrequencies(memberCount);
  blockStart_ = sampleIndex;
  blockEnd_ = sampleIndex + block_.blockLength;
  designTable_[static_cast<std::size_t>(currentUnit_)] = block_;
  return true;
}

std::int32_t FastSampler::membersOf(std::int32_t unit) const {
  const bool grouped = analysisMode_ == kGroups && unit < groups_.groupCount();
  return grouped ? groupSize(groupNames()[static_cast<std::size_t>(unit)]) : 1;
}

std::int64_t FastSampler::designRuns(const FactorList& factors) const {
  if (analysisMode_ == kClassic) return numSamples;
  const std::int64_t count = factors.correlatableCount();
  const std::int64_t units = analysisMode_ == kGroups ? unitCount(count) : count;
  std::int64_t runs = 0;
  for (std::int32_t unit = 0; unit < units; ++unit)
    runs += blockOf(static_cast<std::int32_t>(numSamples / units), membersOf(unit)).blockLength;
  return runs;
}

// The factors under test get the highest frequency; the others share low ones, spread over what its harmonics leave.
void FastSampler::assignFrequencies(std::int32_t memberCount) {
  const std::int32_t highest = block_.frequency / kRunsPerFrequency;
  const std::int32_t distinct = std::min(highest, numStochastic_ - memberCount);
  const std::int32_t step = highest > 1 && distinct > 1 ? (highest - 1) / (distinct - 1) : 0;
  frequencies_.assign(units_.size(), 0);
  std::int32_t next = 0;
  for (std::size_t f = 0; f < units_.size(); ++f)
    if (units_[f] != kNoUnit)
      frequencies_[f] = units_[f] == currentUnit_ ? block_.frequency : 1 + step * (next++ % distinct);
}

// A random phase for each factor of the list, stochastic or not.
void FastSampler::drawPhases() {
  phases_.resize(static_cast<std::size_t>(numFactors));
  for (double& phase : phases_) phase = 2.0 * std::numbers::pi * uniformRandom(randomState);
}

// Rows of a block from its run `run` on, split among the cores.
void FastSampler::fillRows(std::int32_t run, std::int32_t count, double* rows) const {
  const std::size_t width = frequencies_.size();
  inParts(static_cast<std::size_t>(count), std::max<std::size_t>(kLeastCells / width, 1),
          [&](std::size_t, std::size_t first, std::size_t last) {
            for (std::size_t row = first; row < last; ++row) {
              // Frequencies are whole numbers: the curves of a block need no parameter of their own.
              const double s = (2.0 * (run + static_cast<std::int32_t>(row)) - block_.curveLength + 1.0) *
                               std::numbers::pi / block_.curveLength;
              fillRow(s, rows + row * width);
            }
          });
}

// The point of the search curve at s (A. Saltelli, S. Tarantola, K. Chan, 1999), uniform in each coordinate.
void FastSampler::fillRow(double s, double* row) const {
  for (std::size_t i = 0; i < frequencies_.size(); ++i)
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
  if (!hasDesign()) {
    out << kNoDesign << '\n';
    return;
  }
  out << kDesign << '\n';
  for (const FastBlock& block : designTable_)
    out << block.frequency << '\t' << block.resamples << '\t' << block.curveLength << '\t' << block.blockLength << '\n';
}

bool FastSampler::readItems(TextReader& in) {
  constexpr std::size_t kMaxHeading = 80;
  std::int32_t mode = -1;
  if (!readSeed(in) || !readRuns(in) || !readFactorCount(in) ||
      !readAtLeast(in, "the number of sampled factors", 0, numStochastic_))
    return false;
  in.expect("the analysis mode") >> mode;
  if (in.ok() && !setAnalysisMode(mode))
    return in.refuse("the analysis mode must be from 0 to 2, not " + std::to_string(mode));
  in.skipLine();
  if (!groups_.read(in)) return false;
  frequencies_.clear();
  phases_.clear();
  std::string heading;
  if (!in.expect("the design").readLineCut(heading, kMaxHeading)) return false;
  if (heading == kDesign) return readDesignTable(in);
  return heading == kNoDesign || in.refuse("the design was expected, not '" + heading + "'");
}

bool FastSampler::readDesignTable(TextReader& in) {
  constexpr std::uint64_t kLeastRow = 8;  // four digits, each with what ends it
  const std::int64_t rows = designRows();
  if (analysisMode_ == kGroups && rows < 1) return in.refuse("a test on groups has no units");
  if (!in.checkCount(rows, kLeastRow)) return false;
  designTable_.resize(static_cast<std::size_t>(rows));
  for (FastBlock& block : designTable_)
    if (!readAtLeast(in, "a frequency", 0, block.frequency) ||
        !readAtLeast(in, "the curves of a block", 0, block.resamples) ||
        !readAtLeast(in, "the runs of a curve", 0, block.curveLength) ||
        !readAtLeast(in, "the runs of a block", 0, block.blockLength))
      return false;
  in.skipLine();
  return true;
}

void FastSampler::restoreDefaults() {
  *this = FastSampler();
}

}  // namespace tarvex
