#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "base/Progress.h"

namespace tarvex {

// One variable over the blocks of a Sobol' design, centred about the mean of all its runs. Blocks 0 and 1 are the base
// matrices A and B.
class SobolBlocks {
 public:
  // Looks at the `count` runs, which outlive it. Requires: at least two blocks of `baseSize` runs.
  SobolBlocks(const double* runs, std::size_t count, std::int32_t baseSize);

  std::int64_t count() const { return static_cast<std::int64_t>(runCount_) / baseSize_; }
  double baseSize() const { return baseSize_; }
  // Sum of the products of two blocks' values, run by run. Requires: blocks below count().
  double product(std::int64_t first, std::int64_t second) const;
  // The same of both base blocks with a factor's two blocks: B with the factor's column of A, and the mirrored one.
  struct FactorProducts {
    double aBlock = 0.0;
    double bBlock = 0.0;
    double aMirrored = 0.0;
    double bMirrored = 0.0;
  };
  // Of `factors` factors, whose blocks begin at 2 and, mirrored, at 2 + factors. Empty when stopped.
  std::vector<FactorProducts> factorProducts(std::int32_t factors, const Progress& progress) const;

  // Mean and variance of the base blocks.
  double meanA() const { return meanA_; }
  double meanB() const { return meanB_; }
  double varianceA() const { return varianceA_; }
  double varianceB() const { return varianceB_; }

 private:
  const double* block(std::int64_t number) const { return runs_ + number * baseSize_; }
  void addProducts(FactorProducts& sums, const double* a, const double* b, const double* block, const double* mirrored,
                   std::size_t count) const;

  const double* runs_;
  std::size_t runCount_;
  std::int32_t baseSize_;
  double mean_ = 0.0;
  double meanA_ = 0.0;
  double meanB_ = 0.0;
  double varianceA_ = 0.0;
  double varianceB_ = 0.0;
};

}  // namespace tarvex
