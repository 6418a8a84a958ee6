#include "sampling/LatinSampler.h"

#include <algorithm>

#include "base/randomExchanges.h"
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
  if (isAtStart() && cell_ == 0) {
    const bool byMatrix = factors.correlationMode == kImanConover && matrixRefusal(factors).empty();
    ranked_ = byMatrix || factors.correlationMode == kSteinSample;
  }
  // Kept: a fresh one in each call, so what a tree's children get depends on the steps of the targets.
  DiagonalBand diagonalBand;
  while (progress < target) {
    const std::int32_t cells = nextStretch(target);
    if (!goesOn(cells) || !visit(cells, diagonalBand, store, factors)) return false;
    leave(cells);
  }
  if (progress == kComplete) releaseColumns();
  return true;
}

// Without a rank table: strata in rising order, then exchanges, then children and constants. With one: strata, then
// the order of the table.
bool LatinSampler::visit(std::int32_t cells, DiagonalBand& diagonalBand, sampValues& store, const FactorList& factors) {
  if (cells == 0) return true;  // a phase without factors
  switch (phase_) {
    case kStratify:
      return stratify(cells, store, factors);
    case kShuffle:
      return exchange(cells, store, factors);
    case kFinish:
      return ranked_ ? order(cells, store, factors) : finish(cells, diagonalBand, store, factors);
  }
  return true;
}

std::int64_t LatinSampler::cellsAFactor() const {
  return std::int64_t{numSamples} * (phase_ == kShuffle ? kExchangesPerRow : 1);
}

std::int32_t LatinSampler::factorsOfPhase() const {
  return ranked_ || phase_ == kFinish ? numFactors : numStochastic_;
}

float LatinSampler::progressAt(std::int64_t cells) const {
  const auto whole = static_cast<double>(cellsAFactor() * factorsOfPhase());
  const double share = static_cast<double>(cells) / whole;
  const bool phaseDone = static_cast<double>(cells) >= whole;
  if (phase_ == kStratify) return progressOf(share * 25.0, kStratified, phaseDone);
  if (phase_ == kShuffle) return progressOf(share * 20.0 + 25.0, kShuffled, phaseDone);
  return progressOf(ranked_ ? (share + 1.0) * 25.0 : share * 5.0 + 45.0, kComplete, phaseDone);
}

// Cells that can be visited in one piece: of one factor, and none beyond the target.
std::int32_t LatinSampler::nextStretch(double target) const {
  if (factorPosition >= factorsOfPhase()) return 0;
  const std::int64_t done = cellsAFactor() * factorPosition + cell_;
  const auto most = static_cast<std::int32_t>(std::min<std::int64_t>(cellsAFactor() - cell_, kStretch));
  return cellsUntil(target, most, [&](std::int32_t cells) { return progressAt(done + cells); });
}

// Behind the last factor of a phase the next one begins.
void LatinSampler::leave(std::int32_t cells) {
  cell_ += cells;
  progress = progressAt(cellsAFactor() * factorPosition + cell_);
  if (cell_ == cellsAFactor()) {
    cell_ = 0;
    ++factorPosition;
  }
  if (factorPosition < factorsOfPhase()) return;
  phase_ = phase_ == kStratify && !ranked_ ? kShuffle : kFinish;
  factorPosition = 0;
}

// One point in each stratum, in rising order. A child of the dependence tree isn't stratified; columns that a rank
// table will put in order include constants.
bool LatinSampler::stratify(std::int32_t cells, sampValues& store, const FactorList& factors) {
  const std::int32_t factor = factors.factorAt(factorPosition);
  if (!ranked_ && factors.parentOf(factor) != -1) return true;
  double* const column = designColumn(store, factor, numSamples);
  if (column == nullptr) return checkStore(false, store);
  if (ranked_ && factors.isConstant(factor) == 1)
    std::fill_n(column + row(0), cells, static_cast<const Constant&>(factors.factor(factor)).value());
  else if (!ranked_ || factors.isCorrelatable(factor) == 1)
    stratifyCells(cells, column + row(0));
  return true;
}

void LatinSampler::stratifyCells(std::int32_t cells, double* points) {
  uniformRandom(randomState, points, static_cast<std::size_t>(cells));
  for (std::int32_t k = 0; k < cells; ++k) points[k] = pointOfStratum(row(k), numSamples, points[k]);
}

// Random exchanges, which shuffle a root's column.
bool LatinSampler::exchange(std::int32_t pairs, sampValues& store, const FactorList& factors) {
  const std::int32_t factor = factors.factorAt(factorPosition);
  if (factors.parentOf(factor) != -1) return true;
  double* const column = store.columnPointer(factor);
  if (column == nullptr) return checkStore(false, store);
  exchangeAtRandom(randomState, column, numSamples, static_cast<std::size_t>(pairs));
  return true;
}

// Constants, and the children of the dependence tree, which follow their parents' shuffled columns.
bool LatinSampler::finish(std::int32_t cells, DiagonalBand& diagonalBand, sampValues& store,
                          const FactorList& factors) {
  const std::int32_t factor = factors.factorAt(factorPosition);
  const std::int32_t parent = factors.parentOf(factor);
  const bool isConstant = factors.isConstant(factor) == 1;
  // With no stochastic factor the rows are made here.
  if (parent < 0 && !isConstant && store.rows() > 0) return true;
  if (cell_ == 0 && parent >= 0 && !checkStore(parentColumn_.load(store, parent), store)) return false;
  double* const column = designColumn(store, factor, numSamples);
  if (column == nullptr) return checkStore(false, store);
  if (parent >= 0) {
    diagonalBand.setCorrelation(factors.node(factor).correlation);
    for (std::int32_t k = 0; k < cells; ++k) column[row(k)] = diagonalBand.sampleConditional(parentColumn_[row(k)]);
  } else if (isConstant) {
    std::fill_n(column + row(0), cells, static_cast<const Constant&>(factors.factor(factor)).value());
  }
  return true;
}

// Factors in list order. False when the Stein sample can't serve.
bool LatinSampler::order(std::int32_t cells, sampValues& store, const FactorList& factors) {
  const bool byMatrix = factors.correlationMode == kImanConover;
  if (!ordering_.isStarted() && !(byMatrix ? ordering_.startImanConover(factors, store, within(), errorText)
                                           : ordering_.startStein(factors, numSamples, within(), errorText)))
    return false;
  if (cell_ == 0 && !ordering_.openColumn(factorPosition, store, factors, within(), errorText)) return false;
  return ordering_.placeCells(factorPosition, row(0), cells, store, factors, errorText);
}

void LatinSampler::releaseColumns() {
  parentColumn_.release();
  ordering_.release();
}

void LatinSampler::reset() {
  Sampler::reset();
  phase_ = kStratify;
  ranked_ = false;
  cell_ = 0;
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
