#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

namespace tarvex {

// One variable over the blocks of a Sobol' design, centred about the mean of all its runs. Blocks 0 and 1 are the base
// matrices A and B.
class SobolBlocks {
 public:
  // Requires: at least two blocks of `baseSize` runs.
  SobolBlocks(std::vector<double> runs, std::int32_t baseSize);

  std::int64_t count() const { return static_cast<std::int64_t>(runs_.size()) / baseSize_; }
  double baseSize() const { return baseSize_; }
  // Sum of the products of two blocks' values, run by run. Requires: blocks below count().
  double product(std::int64_t first, std::int64_t second) const;
  // The same of several pairs of blocks, in one sweep over the runs.
  using Pair = std::pair<std::int64_t, std::int64_t>;
  template <std::size_t Count>
  std::array<double, Count> products(const std::array<Pair, Count>& pairs) const;

  // Mean and variance of the base blocks.
  double meanA() const { return meanA_; }
  double meanB() const { return meanB_; }
  double varianceA() const { return varianceA_; }
  double varianceB() const { return varianceB_; }

 private:
  const double* block(std::int64_t number) const { return runs_.data() + number * baseSize_; }
  double blockVariance(std::int64_t number, double mean) const;

  std::vector<double> runs_;
  std::int32_t baseSize_;
  double meanA_ = 0.0;
  double meanB_ = 0.0;
  double varianceA_ = 0.0;
  double varianceB_ = 0.0;
};

// The sums don't wait for each other's additions, as one after the other would.
template <std::size_t Count>
std::array<double, Count> SobolBlocks::products(const std::array<Pair, Count>& pairs) const {
  std::array<const double*, Count> first{};
  std::array<const double*, Count> second{};
  for (std::size_t k = 0; k < Count; ++k) {
    first[k] = block(pairs[k].first);
    second[k] = block(pairs[k].second);
  }
  std::array<double, Count> sums{};
  for (std::int32_t i = 0; i < baseSize_; ++i)
    for (std::size_t k = 0; k < Count; ++k) sums[k] += first[k][i] * second[k][i];
  return sums;
}

}  // namespace tarvex
