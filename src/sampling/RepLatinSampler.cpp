#include "sampling/RepLatinSampler.h"

#include <algorithm>
#include <limits>

#include "base/Memory.h"
#include "base/uniformRandom.h"
#include "base/zerosWatched.h"
#include "correlation/ImanConover.h"
#include "correlation/SteinRanks.h"
#include "factors/Constant.h"
#include "factors/FactorList.h"
#include "sampling/LatinSampler.h"
#include "sampling/RankOrdering.h"

namespace tarvex {

namespace {

// Percents at which the phases end.
constexpr float kBlockMade = 10.0f;

constexpr double kSeedRange = 30000.0;  // of the seeds of the replicates' ranks

}  // namespace

bool RepLatinSampler::setBaseDesign(std::int32_t m) {
  if (m < 1) return false;
  reset();
  baseDesign_ = m;
  updateSampleCount();
  return true;
}

void RepLatinSampler::setReplications(std::int32_t r) {
  if (r < 1) reset();
  if (r != replications_) runTable_ = {};
  replications_ = r;
  updateSampleCount();
}

// A product that no store could hold counts as nothing to generate.
void RepLatinSampler::updateSampleCount() {
  const std::int64_t product = static_cast<std::int64_t>(baseDesign_) * replications_;
  const bool fits = product > 0 && product <= std::numeric_limits<std::int32_t>::max();
  numSamples = fits ? static_cast<std::int32_t>(product) : 0;
}

void RepLatinSampler::setNumFactors(std::int32_t count) {
  if (count < 1) return;
  if (count != numFactors) runTable_ = {};
  numFactors = count;
}

void RepLatinSampler::synchronise(const FactorList& factors) {
  std::vector<RepElement> elements;
  for (std::int32_t i = 0; i < factors.factorCount(); ++i) {
    const std::string& name = factors.factor(i).name;
    const auto known = std::find_if(elements_.begin(), elements_.end(),
                                    [&name](const RepElement& element) { return element.name == name; });
    std::int32_t flag = -1;
    if (factors.isCorrelatable(i) == 1) flag = known == elements_.end() ? 0 : std::max(known->flag, 0);
    elements.push_back({name, flag});
  }
  elements_ = std::move(elements);
  setNumFactors(factors.factorCount());
}

std::int32_t RepLatinSampler::elementFlag(std::int32_t i) const {
  return i >= 0 && static_cast<std::size_t>(i) < elements_.size() ? elements_[static_cast<std::size_t>(i)].flag : -2;
}

const std::string* RepLatinSampler::elementName(std::int32_t i) const {
  return elementFlag(i) == -2 ? nullptr : &elements_[static_cast<std::size_t>(i)].name;
}

bool RepLatinSampler::setElementFlag(std::int32_t i, std::int32_t flag) {
  if (elementName(i) == nullptr) return refuse("index out of range");
  elements_[static_cast<std::size_t>(i)].flag = flag;
  return true;
}

bool RepLatinSampler::hasRunTable() const {
  return choice_ == 0 && std::any_of(runTable_.begin(), runTable_.end(), [](std::int32_t run) { return run != 0; });
}

const std::int32_t* RepLatinSampler::runOf(std::int32_t factor, std::int32_t valueRank) const {
  if (factor < 0 || factor >= numFactors || valueRank < 0 || valueRank >= baseDesign_ || replications_ < 1 ||
      runTable_.size() != runIndex(numFactors, 0))
    return nullptr;
  return &runTable_[runIndex(factor, valueRank)];
}

std::size_t RepLatinSampler::runIndex(std::int32_t factor, std::int32_t valueRank) const {
  return (static_cast<std::size_t>(factor) * static_cast<std::size_t>(baseDesign_) +
          static_cast<std::size_t>(valueRank)) *
         static_cast<std::size_t>(replications_);
}

std::int64_t RepLatinSampler::recordedRuns() const {
  return hasRunTable() ? static_cast<std::int64_t>(baseDesign_) * replications_ : -1;
}

bool RepLatinSampler::fill(double target, sampValues& store, FactorList& factors) {
  if (choice_ != 0) return true;
  if (isAtStart() && block_.empty() && !begin(factors)) return false;
  while (progress < target) {
    if (!goesOn(1)) return false;
    if (phase_ == kBaseBlock) {
      stratifyCell(factors);
      const bool phaseDone = factorPosition == numFactors;
      setProgress(visited() / (static_cast<double>(baseDesign_) * numFactors) * 10.0, kBlockMade, phaseDone);
      if (phaseDone) {
        phase_ = kReplicates;
        factorPosition = 0;
      }
    } else {
      if (!permuteCell(factors)) return false;
      if (factorPosition == numFactors && !endReplicate(store)) return false;
      const double before = static_cast<double>(replicate_) * numFactors * baseDesign_;
      setProgress((before + visited()) / (static_cast<double>(numSamples) * numFactors) * 40.0 + 10.0, kComplete,
                  replicate_ == replications_);
    }
  }
  return true;
}

bool RepLatinSampler::begin(const FactorList& factors) {
  synchronise(factors);
  numFactors = factors.factorCount();
  updateSampleCount();
  if (!requireSamples()) return false;
  if (factors.correlationMode == kImanConover) {
    if (const std::string refusal = matrixRefusal(factors); !refusal.empty()) return refuse(refusal);
  } else {
    const auto steinRanks = std::make_shared<SteinRanks>(factors, numSamples, baseDesign_, replications_, within());
    if (!steinRanks->isValid()) return refuse(steinRanks->errorText);
    ranks_ = steinRanks;
  }
  block_.resize(static_cast<std::size_t>(numFactors));
  for (DesignColumn& column : block_) column.start(baseDesign_);
  return true;
}

// The base block: one point in each of the m strata, in rising order.
void RepLatinSampler::stratifyCell(const FactorList& factors) {
  const std::int32_t factor = factors.factorAt(factorPosition);
  double& cell = block_[static_cast<std::size_t>(factor)][sampleIndex];
  if (factors.isConstant(factor) == 1)
    cell = static_cast<const Constant&>(factors.factor(factor)).value();
  else if (factors.isCorrelatable(factor) == 1)
    cell = pointOfStratum(sampleIndex, baseDesign_, uniformRandom(randomState));
  nextCell(baseDesign_);
}

// A cell of a replicate, factors in list order: the value that the rank table asks for, and its run in the table.
bool RepLatinSampler::permuteCell(const FactorList& factors) {
  const std::int32_t factor = factorPosition;
  if (factor == 0 && sampleIndex == 0 && !startReplicate(factors)) return false;
  if (factors.isCorrelatable(factor) == 1) {
    DesignColumn& column = block_[static_cast<std::size_t>(factor)];
    if (sampleIndex == 0) {
      stochasticIndex_ = stochasticIndexOf(factors, factor);
      sortedColumn_ = column;
      if (!sortedColumn_.sortAscending(within())) return refuse(kNotEnoughMemory);
    }
    const std::int32_t* const place = rankOfCell(factors);
    if (place == nullptr) return false;
    const std::int32_t rank = *place;
    column[sampleIndex] = sortedColumn_[rank];
    runTable_[runIndex(factor, rank) + static_cast<std::size_t>(replicate_)] = replicate_ * baseDesign_ + sampleIndex;
  }
  nextCell(baseDesign_);
  return true;
}

// Each replicate has rank correlations of its own; the Stein sample serves all of them, block by block.
bool RepLatinSampler::startReplicate(const FactorList& factors) {
  if (factors.correlationMode == kImanConover) {
    const auto seedOfRanks = static_cast<std::int32_t>(uniformRandom(randomState) * kSeedRange);
    const auto imanConover = std::make_shared<ImanConover>(factors, baseDesign_, seedOfRanks, within());
    if (!imanConover->isValid())
      return refuse(imanConover->errorText().empty() ? kRefusedMatrix : imanConover->errorText());
    ranks_ = imanConover;
  }
  return replicate_ > 0 || zerosWatched(runTable_, runIndex(numFactors, 0), within());
}

// Null, with the reason, when the table can't be read.
const std::int32_t* RepLatinSampler::rankOfCell(const FactorList& factors) {
  const bool perReplicate = factors.correlationMode == kImanConover;
  const std::int32_t row = perReplicate ? sampleIndex : replicate_ * baseDesign_ + sampleIndex;
  return ranks_->ranks(stochasticIndex_, row, 1, errorText);
}

// Appends the block to the store. It is also where the next replicate starts from.
bool RepLatinSampler::endReplicate(sampValues& store) {
  std::vector<double> row(block_.size());
  for (std::int32_t run = 0; run < baseDesign_; ++run) {
    for (std::size_t factor = 0; factor < block_.size(); ++factor) row[factor] = block_[factor][run];
    if (!addRun(store, row)) return false;
  }
  factorPosition = 0;
  if (++replicate_ < replications_) return true;
  block_ = {};
  ranks_.reset();
  sortedColumn_.release();
  return true;
}

void RepLatinSampler::reset() {
  // Kept: the word for uniformRandom stays, so that a second generation continues the stream.
  progress = 0.0f;
  sampleIndex = 0;
  factorPosition = 0;
  runTable_ = {};
  phase_ = kBaseBlock;
  replicate_ = 0;
  block_ = {};
  ranks_.reset();
  sortedColumn_.release();
}

}  // namespace tarvex
