#include "sampling/RandomSampler.h"

#include "base/uniformRandom.h"
#include "factors/Constant.h"
#include "factors/FactorList.h"

namespace tarvex {

namespace {

constexpr float kDrawn = 25.0f;  // percent at which drawn columns are put in order, where a rank table asks for it

}  // namespace

std::string RandomSampler::warningBefore(const FactorList& factors) const {
  return matrixRefusal(factors);
}

bool RandomSampler::fill(double target, sampValues& store, FactorList& factors) {
  numFactors = factors.factorCount();
  if (!requireSamples()) return false;
  if (isAtStart()) ranked_ = factors.correlationMode == kImanConover && matrixRefusal(factors).empty();
  const float drawingEnd = ranked_ ? kDrawn : kComplete;
  while (progress < target) {
    if (!goesOn(1)) return false;
    if (progress < drawingEnd) {
      if (!drawCell(store, factors)) return false;
      setProgress(share() * drawingEnd, drawingEnd, factorPosition == numFactors);
    } else {
      if (!orderCell(store, factors)) return false;
      setProgress((share() + 1.0) * 25.0, kComplete, factorPosition == numFactors);
    }
    if (factorPosition == numFactors) factorPosition = 0;
  }
  if (progress == kComplete) releaseColumns();
  return true;
}

// Of the cells of the table, those that the phase has done.
double RandomSampler::share() const {
  const double rows = numSamples;
  return (factorPosition * rows + sampleIndex) / (rows * numFactors);
}

// Factors in the order of their dependences: a parent's column stands before its child asks for it.
bool RandomSampler::drawCell(sampValues& store, const FactorList& factors) {
  const std::int32_t factor = factors.factorAt(factorPosition);
  const std::int32_t parent = factors.parentOf(factor);
  if (sampleIndex == 0) {
    column_.start(numSamples);
    if (parent >= 0) {
      if (!checkStore(parentColumn_.load(store, parent), store)) return false;
      diagonalBand_.setCorrelation(factors.node(factor).correlation);
    }
  }
  if (parent >= 0)
    column_[sampleIndex] = diagonalBand_.sampleConditional(parentColumn_[sampleIndex]);
  else if (factors.isCorrelatable(factor) == 1)
    column_[sampleIndex] = uniformRandom(randomState);
  else if (factors.isConstant(factor) == 1)
    column_[sampleIndex] = static_cast<const Constant&>(factors.factor(factor)).value();
  nextCell(numSamples);
  return sampleIndex > 0 || checkStore(column_.finish(store, factor, within()), store);
}

// Factors in list order.
bool RandomSampler::orderCell(sampValues& store, const FactorList& factors) {
  if (!ordering_.isStarted() && !ordering_.startImanConover(factors, numSamples, within(), errorText)) return false;
  if (sampleIndex == 0 && !ordering_.openColumn(factorPosition, store, factors, within(), errorText)) return false;
  const bool placed = ordering_.placeCell(factorPosition, sampleIndex, store, factors);
  nextCell(numSamples);
  return checkStore(placed, store);
}

void RandomSampler::releaseColumns() {
  column_.release();
  parentColumn_.release();
  ordering_.release();
}

void RandomSampler::reset() {
  Sampler::reset();
  ranked_ = false;
  diagonalBand_ = {};
  releaseColumns();
}

void RandomSampler::writeSection(TextWriter& out) const {
  writeCounts(out);
}

bool RandomSampler::readItems(TextReader& in) {
  return readCounts(in);
}

void RandomSampler::restoreDefaults() {
  *this = RandomSampler();
}

}  // namespace tarvex
