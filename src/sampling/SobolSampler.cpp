#include "sampling/SobolSampler.h"

#include <algorithm>

#include "base/TextReader.h"
#include "base/TextWriter.h"
#include "base/sampValues.h"
#include "factors/FactorList.h"
#include "sampling/combinations.h"
#include "sampling/designRows.h"

namespace tarvex {

namespace {

constexpr std::int32_t kBaseBlocks = 2;      // A and B
constexpr std::int32_t kRowsTogether = 256;  // that the store gets in one piece

// The highest order that has blocks: that of all factors together follows from the others.
std::int32_t highestOrder(std::int32_t order, std::int32_t stochasticCount) {
  return order == stochasticCount ? order - 1 : order;
}

}  // namespace

bool SobolSampler::setBaseSize(std::int32_t runs) {
  if (runs < 1) return refuse("The base size must be at least 1, not " + std::to_string(runs) + ".");
  baseSize_ = runs;
  return true;
}

bool SobolSampler::setDesignKind(std::int32_t kind) {
  if (kind != kFirstAndTotal && kind != kUpToOrder)
    return refuse("The kind of the design must be 1 or 3, not " + std::to_string(kind) + ".");
  designKind_ = kind;
  return true;
}

bool SobolSampler::setOrder(std::int32_t highest) {
  if (highest < 1) return refuse("The order must be at least 1, not " + std::to_string(highest) + ".");
  order_ = highest;
  return true;
}

std::int64_t SobolSampler::blockCount(std::int32_t stochasticCount, std::int32_t order, std::int32_t kind, bool cheap) {
  const std::int64_t single = stochasticCount;
  if (kind == kFirstAndTotal) return kBaseBlocks + 2 * single;
  std::int32_t highest = order > stochasticCount ? 1 : highestOrder(order, stochasticCount);
  if (cheap) highest = std::min(highest, stochasticCount / 2);
  // Kept: the subsets of one factor are counted whatever the order.
  std::int64_t blocks = kBaseBlocks + single;
  for (std::int32_t size = 2; size <= highest && blocks < kManyBlocks; ++size)
    blocks += combinationCount(stochasticCount, size, kManyBlocks);
  return std::min(blocks, kManyBlocks);
}

// numSamples is that of the design, whole or cheap.
bool SobolSampler::fits(std::int32_t stochasticCount, bool cheap) const {
  return std::int64_t{baseSize_} * blockCount(stochasticCount, order_, designKind_, cheap) == numSamples;
}

bool SobolSampler::isCheap(std::int32_t stochasticCount) const {
  return designKind_ == kUpToOrder && !fits(stochasticCount, false) && fits(stochasticCount, true);
}

bool SobolSampler::fill(double target, sampValues& store, FactorList& factors) {
  if (isAtStart() && !begin(factors)) return false;
  const std::int32_t end = runsUntil(target);
  while (sampleIndex < end) {
    const std::int32_t block = sampleIndex / baseSize_;
    const std::int32_t blockStart = block * baseSize_;
    const std::int32_t stop = end - blockStart > baseSize_ ? blockStart + baseSize_ : end;
    if (block >= kBaseBlocks && sampleIndex == blockStart) openBlock(block);
    while (sampleIndex < stop) {
      const std::int32_t first = sampleIndex - blockStart;
      const std::int32_t count = std::min(stop - sampleIndex, kRowsTogether);
      for (std::int32_t k = 0; block == 0 && k < count; ++k)
        if (!makeBasePoint(first + k)) return refuse(pointFailure(sampleIndex + k));
      if (!addRuns(store, rowsOf(block, first, count), count)) return false;
      sampleIndex += count;
    }
    setRunProgress(sampleIndex);
  }
  if (progress == kComplete) releaseMatrices();
  return true;
}

void SobolSampler::releaseMatrices() {
  // `{}` would keep their memory.
  matrixA_ = std::vector<double>();
  matrixB_ = std::vector<double>();
  rows_ = std::vector<double>();
}

// Lays out the blocks. A count of runs that fits no design of these factors would be misread by the measures.
bool SobolSampler::begin(const FactorList& factors) {
  stochasticIndex_ = stochasticFactors(factors);
  numFactors = factors.factorCount();
  if (!requireSamples()) return false;
  numFactors = static_cast<std::int32_t>(stochasticIndex_.size());
  if (designKind_ == kUpToOrder && order_ > numFactors) return refuse("  Incorrect order number, order too big.");
  if (baseSize_ < 1 || !(fits(numFactors, false) || isCheap(numFactors)))
    return refuse("The number of executions must be the base size times the number of blocks");

  const std::vector<double> row = constantRow(factors);
  width_ = row.size();
  matrixA_.clear();
  matrixA_.reserve(static_cast<std::size_t>(baseSize_) * width_);
  for (std::int32_t run = 0; run < baseSize_; ++run) matrixA_.insert(matrixA_.end(), row.begin(), row.end());
  matrixB_ = matrixA_;
  pointColumns_.clear();
  for (std::int32_t position = 0; position < factors.factorCount(); ++position) {
    const std::int32_t f = factors.factorAt(position);
    if (factors.factor(f).isStochastic()) pointColumns_.push_back(f);
  }
  exchanged_.clear();
  orderStart_.clear();
  std::int64_t start = kBaseBlocks;
  for (std::int32_t size = 1; size <= highestOrder(order_, numFactors); ++size) {
    orderStart_.push_back(start);
    start += combinationCount(numFactors, size, kManyBlocks);
  }
  return true;
}

// Point number n of twice the factors' dimension is row n - 1 of A and of B, one half each.
bool SobolSampler::makeBasePoint(std::int32_t baseRow) {
  if (!sequence_.lpTauPoint(baseRow + 1, 2 * numFactors, point_)) return false;
  double* const a = matrixA_.data() + static_cast<std::size_t>(baseRow) * width_;
  double* const b = matrixB_.data() + static_cast<std::size_t>(baseRow) * width_;
  const double* coordinate = point_.data();
  for (const std::int32_t f : pointColumns_) {
    a[f] = coordinate[0];
    b[f] = coordinate[numFactors];
    ++coordinate;
  }
  return true;
}

// Settles which columns the block exchanges, and between which matrices.
void SobolSampler::openBlock(std::int32_t block) {
  if (designKind_ == kFirstAndTotal) {
    const std::int32_t unit = block - kBaseBlocks;
    intoA_ = unit >= numFactors;
    exchanged_ = {stochasticIndex_[static_cast<std::size_t>(intoA_ ? unit - numFactors : unit)]};
    return;
  }
  intoA_ = false;
  const auto opened = std::find(orderStart_.begin(), orderStart_.end(), block);
  if (opened != orderStart_.end()) {
    currentOrder_ = static_cast<std::size_t>(opened - orderStart_.begin());
    combos_ = combinations(stochasticIndex_, static_cast<std::int32_t>(currentOrder_) + 1);
  }
  // A design over one factor has no subset to exchange.
  if (!combos_.empty()) exchanged_ = combos_[static_cast<std::size_t>(block - orderStart_[currentOrder_])];
}

// The rows of the base matrices are those of the first blocks as they stand. Later blocks are one matrix, in which
// columns of the other replace its own.
const double* SobolSampler::rowsOf(std::int32_t block, std::int32_t first, std::int32_t count) {
  const std::size_t start = static_cast<std::size_t>(first) * width_;
  const std::size_t cells = static_cast<std::size_t>(count) * width_;
  const double* const a = matrixA_.data() + start;
  const double* const b = matrixB_.data() + start;
  if (block < kBaseBlocks) return block == 0 ? a : b;
  rows_.assign(intoA_ ? a : b, (intoA_ ? a : b) + cells);
  const double* const other = intoA_ ? b : a;
  for (const std::int32_t f : exchanged_)
    for (std::size_t cell = static_cast<std::size_t>(f); cell < cells; cell += width_) rows_[cell] = other[cell];
  return rows_.data();
}

void SobolSampler::reset() {
  Sampler::reset();
  stochasticIndex_.clear();
  pointColumns_.clear();
  releaseMatrices();
  orderStart_.clear();
  combos_.clear();
  exchanged_.clear();
  currentOrder_ = 0;
}

void SobolSampler::writeSection(TextWriter& out) const {
  out << baseSize_ << '\n' << numSamples << '\n' << designKind_ << '\n' << order_ << '\n' << numFactors << '\n';
}

bool SobolSampler::readItems(TextReader& in) {
  std::int32_t kind = 0;
  if (!readAtLeast(in, "the base size", 0, baseSize_) || !readRuns(in)) return false;
  in.expect("the kind of the design") >> kind;
  if (in.ok() && !setDesignKind(kind))
    return in.refuse("the kind of the design must be 1 or 3, not " + std::to_string(kind));
  // Where no order was chosen, 0 may stand for it.
  const std::int32_t leastOrder = designKind_ == kUpToOrder ? 1 : 0;
  if (!readAtLeast(in, "the order", leastOrder, order_) || !readFactorCount(in)) return false;
  in.skipLine();
  return true;
}

void SobolSampler::restoreDefaults() {
  *this = SobolSampler();
  baseSize_ = numSamples = designKind_ = order_ = numFactors = 0;
}

}  // namespace tarvex
