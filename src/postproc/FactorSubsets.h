#pragma once

#include <cstdint>
#include <vector>

namespace tarvex {

// The subsets of 1 to `maxSize` out of `count` positions, by size and inside a size in lexicographic order: the order
// in which a Sobol' design exchanges columns.
class FactorSubsets {
 public:
  using Subset = std::vector<std::int32_t>;  // ascending positions
  static constexpr std::int64_t kMany = std::int64_t{1} << 31;

  // How many there are; kMany when more than that.
  static std::int64_t countOf(std::int32_t count, std::int32_t maxSize);

  // Requires: countOf(count, maxSize) below kMany.
  FactorSubsets(std::int32_t count, std::int32_t maxSize);

  const std::vector<Subset>& all() const { return all_; }
  // The number of any subset of the positions, larger than maxSize too, in that order; at least kMany when it lies so
  // far. Requires: not empty.
  std::int64_t numberOf(const Subset& subset) const;
  Subset complement(const Subset& subset) const;

 private:
  std::int32_t count_;
  std::vector<Subset> all_;
};

}  // namespace tarvex
