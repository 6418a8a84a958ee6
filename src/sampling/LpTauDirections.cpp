#include "sampling/LpTauDirections.h"

namespace tarvex {

namespace {

constexpr int kMaxDegree = 12;

struct PublishedDimension {
  int degree;
  std::uint32_t polynomial;
  std::uint32_t initial[kMaxDegree];
};

constexpr PublishedDimension kPublished[] = {
#include "sampling/lpTauDirections.inc"
};
static_assert(std::size(kPublished) == kLpTauDimensions);

// m_1 .. m_31 by the recurrence of Bratley and Fox: for i > d,
// m_i = 2 a_1 m_(i-1) ^ 4 a_2 m_(i-2) ^ .. ^ 2^d m_(i-d) ^ m_(i-d), where a_k is bit d - k of the polynomial.
constexpr std::array<std::uint32_t, kLpTauBits> directionNumbers(const PublishedDimension& source) {
  std::array<std::uint32_t, kLpTauBits> m{};
  for (int i = 0; i < kLpTauBits; ++i) {
    std::uint32_t& number = m[static_cast<std::size_t>(i)];
    if (source.degree == 0) {
      number = 1;
    } else if (i < source.degree) {
      number = source.initial[i];
    } else {
      number = m[static_cast<std::size_t>(i - source.degree)];
      for (int k = 1; k <= source.degree; ++k)
        if ((source.polynomial >> (source.degree - k) & 1U) != 0) number ^= m[static_cast<std::size_t>(i - k)] << k;
    }
  }
  return m;
}

// Running exclusive ors of the direction numbers: stepping by them along the Gray code visits the points in their
// natural order.
constexpr LpTauDirections steppingTable() {
  LpTauDirections table{};
  for (std::size_t dimension = 0; dimension < kLpTauDimensions; ++dimension) {
    const std::array<std::uint32_t, kLpTauBits> m = directionNumbers(kPublished[dimension]);
    std::uint32_t sum = 0;
    for (std::size_t b = 0; b < kLpTauBits; ++b) {
      sum ^= m[b] << (kLpTauBits - 1 - b);
      table[b][dimension] = static_cast<std::int32_t>(sum);
    }
  }
  return table;
}

}  // namespace

constexpr LpTauDirections kLpTauDirections = steppingTable();

}  // namespace tarvex
