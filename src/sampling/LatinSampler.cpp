#include "sampling/LatinSampler.h"

#include <algorithm>

#include "base/uniformRandom.h"
#include "factors/Constant.h"
#include "factors/FactorList.h"

namespace tarvex {

namespace {

// Percents at which the phases end.
constexpr float kStratified = 25.0f;
constexpr float kShuffled = 45.0f;

constexpr int kExchangesPerRow = 2;  // random exchanges that shuffle a column, for each row

}  // namespace

double pointOfStratum(std::int32_t stratum, std::int32_t strata, double random) {
  // Kept: the count as a divisor is in single precision.
  const double divisor = static_cast<double>(static_cast<float>(strata));
  return random / divisor + stratum / divisor;
}

std::string LatinSampler::warningBefore(const FactorList& factors) const {
  return matrixRefusal(factors);
}

bool LatinSampler::fill(double target, sampValues& store, FactorList& factors) {
  numFactors = factors.factorCount();
  numStochastic_ = factors.correlatableCount();
  if (!requireSamples()) return false;
  if (isAtStart()) {
    const bool byMatrix = factors.correlationMode == kImanConover && matrixRefusal(factors).empty();
    ranked_ = byMatrix || factors.correlationMode == kSteinSample;
  }
  // Kept: a fresh one in each call, so what a tree's children get depends on the steps of the targets.
  DiagonalBand diagonalBand;
  while (progress < target) {
    if (!goesOn(1)) return false;
    const bool done = ranked_ ? rankedStep(store, factors) : independentStep(diagonalBand, store, factors);
    if (!done) return false;
  }
  if (progress == kComplete) releaseColumns();
  return true;
}

// A cell of the walk without rank table: strata in rising order, then exchanges, then children and constants.
bool LatinSampler::independentStep(DiagonalBand& diagonalBand, sampValues& store, const FactorList& factors) {
  const double rows = numSamples;
  switch (phase_) {
    case kStratify:
      if (factorPosition < numStochastic_ && !stratifyCell(store, factors)) return false;
      endStep(kShuffle, kStratified, numStochastic_, visited(rows, sampleIndex) / (numStochastic_ * rows) * 25.0);
      break;
    case kShuffle:
      if (factorPosition < numStochastic_ && !exchangePair(store, factors)) return false;
      endStep(kFinish, kShuffled, numStochastic_,
              visited(2.0 * rows, exchanges_) / (2.0 * rows * numStochastic_) * 20.0 + 25.0);
      break;
    case kFinish:
      if (!finishCell(diagonalBand, store, factors)) return false;
      endStep(kFinish, kComplete, numFactors, visited(rows, sampleIndex) / (numFactors * rows) * 5.0 + 45.0);
      break;
  }
  return true;
}

bool LatinSampler::rankedStep(sampValues& store, const FactorList& factors) {
  const double rows = numSamples;
  if (phase_ == kStratify) {
    if (!stratifyCellToOrder(store, factors)) return false;
    endStep(kFinish, kStratified, numFactors, visited(rows, sampleIndex) / (numFactors * rows) * 25.0);
    return true;
  }
  if (!orderCell(store, factors)) return false;
  endStep(kFinish, kComplete, numFactors, (visited(rows, sampleIndex) / (numFactors * rows) + 1.0) * 25.0);
  return true;
}

double LatinSampler::visited(double cellsPerFactor, std::int64_t inFactor) const {
  return cellsPerFactor * factorPosition + static_cast<double>(inFactor);
}

// Takes the step's percent over; behind the last factor of a phase the next one begins.
void LatinSampler::endStep(Phase next, float phaseEnd, std::int32_t phaseFactors, double percent) {
  const bool phaseDone = factorPosition >= phaseFactors;
  setProgress(percent, phaseEnd, phaseDone);
  if (!phaseDone) return;
  phase_ = next;
  factorPosition = 0;
  sampleIndex = 0;
}

// One point in each stratum, in rising order. A child of the dependence tree isn't stratified.
bool LatinSampler::stratifyCell(sampValues& store, const FactorList& factors) {
  const std::int32_t factor = factors.factorAt(factorPosition);
  const bool isRoot = factors.parentOf(factor) == -1;
  if (sampleIndex == 0) column_.start(numSamples);
  if (isRoot) column_[sampleIndex] = stratumPoint();
  nextCell(numSamples);
  return sampleIndex > 0 || !isRoot || checkStore(column_.finish(store, factor, within()), store);
}

// The same over all factors, constants included, for columns that a rank table will put in order.
bool LatinSampler::stratifyCellToOrder(sampValues& store, const FactorList& factors) {
  const std::int32_t factor = factors.factorAt(factorPosition);
  if (sampleIndex == 0) column_.start(numSamples);
  if (factors.isConstant(factor) == 1)
    column_[sampleIndex] = static_cast<const Constant&>(factors.factor(factor)).value();
  else if (factors.isCorrelatable(factor) == 1)
    column_[sampleIndex] = stratumPoint();
  nextCell(numSamples);
  return sampleIndex > 0 || checkStore(column_.finish(store, factor, within()), store);
}

double LatinSampler::stratumPoint() {
  return pointOfStratum(sampleIndex, numSamples, uniformRandom(randomState));
}

// One of the random exchanges that shuffle a root's column.
bool LatinSampler::exchangePair(sampValues& store, const FactorList& factors) {
  const std::int32_t factor = factors.factorAt(factorPosition);
  const bool isRoot = factors.parentOf(factor) == -1;
  if (isRoot) {
    if (exchanges_ == 0 && !checkStore(column_.load(store, factor), store)) return false;
    const std::int32_t a = drawRow();
    const std::int32_t b = drawRow();
    std::swap(column_[a], column_[b]);
  }
  nextExchange();
  return exchanges_ > 0 || !isRoot || checkStore(column_.finish(store, factor, within()), store);
}

void LatinSampler::nextExchange() {
  if (++exchanges_ < kExchangesPerRow * std::int64_t{numSamples}) return;
  exchanges_ = 0;
  ++factorPosition;
}

std::int32_t LatinSampler::drawRow() {
  return std::min(static_cast<std::int32_t>(uniformRandom(randomState) * numSamples), numSamples - 1);
}

// Constants, and the children of the dependence tree, which follow their parents' shuffled columns.
bool LatinSampler::finishCell(DiagonalBand& diagonalBand, sampValues& store, const FactorList& factors) {
  const std::int32_t factor = factors.factorAt(factorPosition);
  const std::int32_t parent = factors.parentOf(factor);
  const bool isConstant = factors.isConstant(factor) == 1;
  if (sampleIndex == 0) {
    column_.start(numSamples);
    if (parent >= 0 && !checkStore(parentColumn_.load(store, parent), store)) return false;
  }
  if (parent >= 0) {
    diagonalBand.setCorrelation(factors.node(factor).correlation);
    column_[sampleIndex] = diagonalBand.sampleConditional(parentColumn_[sampleIndex]);
  } else if (isConstant) {
    column_[sampleIndex] = static_cast<const Constant&>(factors.factor(factor)).value();
  }
  nextCell(numSamples);
  // With no stochastic factor the rows are made here.
  const bool hasColumn = parent >= 0 || isConstant || store.rows() == 0;
  return sampleIndex > 0 || !hasColumn || checkStore(column_.finish(store, factor, within()), store);
}

// Factors in list order. False when the Stein sample can't serve.
bool LatinSampler::orderCell(sampValues& store, const FactorList& factors) {
  const bool byMatrix = factors.correlationMode == kImanConover;
  if (!ordering_.isStarted() && !(byMatrix ? ordering_.startImanConover(factors, numSamples, within(), errorText)
                                           : ordering_.startStein(factors, numSamples, within(), errorText)))
    return false;
  if (sampleIndex == 0 && !ordering_.openColumn(factorPosition, store, factors, within(), errorText)) return false;
  const bool placed = ordering_.placeCell(factorPosition, sampleIndex, store, factors);
  nextCell(numSamples);
  return checkStore(placed, store);
}

void LatinSampler::releaseColumns() {
  column_.release();
  parentColumn_.release();
  ordering_.release();
}

void LatinSampler::reset() {
  Sampler::reset();
  phase_ = kStratify;
  ranked_ = false;
  exchanges_ = 0;
  releaseColumns();
}

void LatinSampler::writeSection(TextWriter& out) const {
  writeCounts(out);
}

bool LatinSampler::readItems(TextReader& in) {
  return readCounts(in);
}

void LatinSampler::restoreDefaults() {
  *this = LatinSampler();
  numSamples = 0;
}

}  // namespace tarvex
