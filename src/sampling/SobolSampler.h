#pragma once

#include <cstddef>
#include <vector>

#include "sampling/LpTauSequence.h"
#include "sampling/Sampler.h"

namespace tarvex {

// The design for Sobol' indices (I. M. Sobol', Math. Modelling Comput. Exp. 1, 1993): two base matrices of quasi-random
// points, A and B, and blocks in which columns of one are replaced by the other's. Quasi-random points of twice the
// number of factors are needed, so at most 185 stochastic factors.
//
// A block is baseSize() runs. Block 0 is A, block 1 is B. For first and total order indices follow B with one column
// of A, for each stochastic factor in list order, and then A with one column of B. For indices up to an order follow B
// with the columns of A of every subset of one factor, then of two, and so on.
class SobolSampler : public Sampler {
 public:
  enum DesignKind : std::int32_t { kFirstAndTotal = 1, kUpToOrder = 3 };

  SobolSampler() : Sampler(kSobol, 0, 1) {}
  std::unique_ptr<Sampler> clone(std::string& /*message*/) const override {
    return std::make_unique<SobolSampler>(*this);
  }

  std::int32_t baseSize() const { return baseSize_; }
  std::int32_t designKind() const { return designKind_; }
  std::int32_t order() const { return order_; }
  [[nodiscard]] bool setBaseSize(std::int32_t runs);           // above 0
  [[nodiscard]] bool setDesignKind(std::int32_t kind);         // 1 or 3
  [[nodiscard]] bool setOrder(std::int32_t highest);           // above 0
  std::int32_t stochasticCount() const { return numFactors; }  // of the last generation

  // Blocks of a design over `stochasticCount` factors. The cheap design leaves out the blocks of the orders above half
  // the number of factors: their terms follow from the complements. Counts beyond kManyBlocks come as kManyBlocks.
  static std::int64_t blockCount(std::int32_t stochasticCount, std::int32_t order, std::int32_t kind, bool cheap);
  static constexpr std::int64_t kManyBlocks = std::int64_t{1} << 31;
  // Whether numSamples is that of the cheap design over so many factors, and of no other.
  bool isCheap(std::int32_t stochasticCount) const;

  void reset() override;
  void writeSection(TextWriter& out) const override;

 private:
  bool fill(double target, sampValues& store, FactorList& factors) override;
  bool readItems(TextReader& in) override;
  void restoreDefaults() override;

  bool begin(const FactorList& factors);
  bool fits(std::int32_t stochasticCount, bool cheap) const;
  bool makeBasePoint(std::int32_t baseRow);
  void openBlock(std::int32_t block);
  void releaseMatrices();
  const double* rowsOf(std::int32_t block, std::int32_t first, std::int32_t count);

  std::int32_t baseSize_ = 0;
  std::int32_t designKind_ = kFirstAndTotal;
  std::int32_t order_ = 1;

  LpTauSequence sequence_;
  std::vector<std::int32_t> stochasticIndex_;  // factor indices of the stochastic factors, in list order
  std::vector<std::int32_t> pointColumns_;     // the same in the order in which a point's coordinates are dealt
  std::vector<double> matrixA_;                // baseSize_ rows, a cell per factor of the list
  std::vector<double> matrixB_;
  std::vector<double> point_;
  std::vector<double> rows_;                       // a stretch of a block
  std::size_t width_ = 0;                          // cells of a row
  std::vector<std::int64_t> orderStart_;           // block at which the subsets of 1, 2, ... factors begin
  std::vector<std::vector<std::int32_t>> combos_;  // the subsets of the current order
  std::size_t currentOrder_ = 0;
  std::vector<std::int32_t> exchanged_;  // columns that the current block exchanges
  bool intoA_ = false;                   // the current block is A with columns of B, not the reverse
};

}  // namespace tarvex
