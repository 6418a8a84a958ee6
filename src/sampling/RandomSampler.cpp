#include "sampling/RandomSampler.h"

#include <algorithm>

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
  while (progress < target) {
    const std::int32_t cells = nextStretch(target);
    if (!goesOn(cells)) return false;
    if (!(isOrdering() ? order(cells, store, factors) : draw(cells, store, factors))) return false;
    leave(cells);
  }
  if (progress == kComplete) releaseColumns();
  return true;
}

// The progress stays below a phase's end until all cells are done.
bool RandomSampler::isOrdering() const {
  return ranked_ && progress >= kDrawn;
}

float RandomSampler::progressAt(std::int64_t cells) const {
  const std::int64_t whole = std::int64_t{numSamples} * numFactors;
  const double share = static_cast<double>(cells) / static_cast<double>(whole);
  const bool phaseDone = cells == whole;
  if (ranked_ && !isOrdering()) return progressOf(share * kDrawn, kDrawn, phaseDone);
  return progressOf(isOrdering() ? (share + 1.0) * kDrawn : share * kComplete, kComplete, phaseDone);
}

// Of one factor, and none beyond the target.
std::int32_t RandomSampler::nextStretch(double target) const {
  const auto most = static_cast<std::int32_t>(std::min<std::int64_t>(numSamples - sampleIndex, kStretch));
  return cellsUntil(target, most, [this](std::int32_t cells) { return progressAt(cellsBefore() + cells); });
}

// Behind the last factor the next phase begins.
void RandomSampler::leave(std::int32_t cells) {
  progress = progressAt(cellsBefore() + cells);
  sampleIndex += cells;
  if (sampleIndex < numSamples) return;
  sampleIndex = 0;
  if (++factorPosition == numFactors) factorPosition = 0;
}

// Factors in the order of their dependences: a parent's column stands before its child asks for it.
bool RandomSampler::draw(std::int32_t cells, sampValues& store, const FactorList& factors) {
  const std::int32_t factor = factors.factorAt(factorPosition);
  const std::int32_t parent = factors.parentOf(factor);
  if (sampleIndex == 0 && parent >= 0) {
    if (!checkStore(parentColumn_.load(store, parent), store)) return false;
    diagonalBand_.setCorrelation(factors.node(factor).correlation);
  }
  double* const column = designColumn(store, factor, numSamples);
  if (column == nullptr) return checkStore(false, store);
  const std::int32_t end = sampleIndex + cells;
  if (parent >= 0) {
    for (std::int32_t run = sampleIndex; run < end; ++run)
      column[run] = diagonalBand_.sampleConditional(parentColumn_[run]);
  } else if (factors.isCorrelatable(factor) == 1) {
    uniformRandom(randomState, column + sampleIndex, static_cast<std::size_t>(cells));
  } else if (factors.isConstant(factor) == 1) {
    std::fill_n(column + sampleIndex, cells, static_cast<const Constant&>(factors.factor(factor)).value());
  }
  return true;
}

// Factors in list order.
bool RandomSampler::order(std::int32_t cells, sampValues& store, const FactorList& factors) {
  if (!ordering_.isStarted() && !ordering_.startImanConover(factors, store, within(), errorText)) return false;
  if (sampleIndex == 0 && !ordering_.openColumn(factorPosition, store, factors, within(), errorText)) return false;
  return ordering_.placeCells(factorPosition, sampleIndex, cells, store, factors, errorText);
}

void RandomSampler::releaseColumns() {
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
