#include "postproc/SobolBlocks.h"

#include <algorithm>
#include <array>

#include "postproc/MeasureSupport.h"

namespace tarvex {

namespace {

constexpr std::int64_t kFirstFactor = 2;   // its block
constexpr std::int32_t kSobolRows = 2048;  // of both base blocks, while all factors pass: they stay near the processor
constexpr std::int64_t kProductsARow = 4;

struct Moments {
  double mean;
  double variance;
};

Moments momentsOf(const double* values, std::size_t count, double centre) {
  const double first = values[0] - centre;
  const bool isConstant = std::all_of(values, values + count, [&](double value) { return value - centre == first; });
  double sum = 0.0;
  for (std::size_t i = 0; i < count; ++i) sum += values[i] - centre;
  const double mean = isConstant ? first : sum / static_cast<double>(count);
  double squares = 0.0;
  for (std::size_t i = 0; i < count; ++i) {
    const double deviation = (values[i] - centre) - mean;
    squares += deviation * deviation;
  }
  return {mean, squares / static_cast<double>(count)};
}

}  // namespace

SobolBlocks::SobolBlocks(const double* runs, std::size_t count, std::int32_t baseSize)
    : runs_(runs), runCount_(count), baseSize_(baseSize), mean_(seriesMean(runs, count)) {
  const Moments a = momentsOf(block(0), static_cast<std::size_t>(baseSize), mean_);
  const Moments b = momentsOf(block(1), static_cast<std::size_t>(baseSize), mean_);
  meanA_ = a.mean;
  meanB_ = b.mean;
  varianceA_ = a.variance;
  varianceB_ = b.variance;
}

double SobolBlocks::product(std::int64_t first, std::int64_t second) const {
  const double* const x = block(first);
  const double* const y = block(second);
  double sum = 0.0;
  for (std::int32_t i = 0; i < baseSize_; ++i) sum += (x[i] - mean_) * (y[i] - mean_);
  return sum;
}

std::vector<SobolBlocks::FactorProducts> SobolBlocks::factorProducts(std::int32_t factors,
                                                                     const Progress& progress) const {
  std::vector<FactorProducts> sums(static_cast<std::size_t>(factors));
  std::array<double, kSobolRows> a{};
  std::array<double, kSobolRows> b{};
  const std::int64_t slices = (std::int64_t{baseSize_} + kSobolRows - 1) / kSobolRows;
  WorkPace pace(progress, slices * factors, kProductsARow * kSobolRows);
  for (std::int64_t first = 0; first < baseSize_; first += kSobolRows) {
    const auto count = static_cast<std::size_t>(std::min<std::int64_t>(kSobolRows, baseSize_ - first));
    for (std::size_t i = 0; i < count; ++i) {
      a[i] = block(0)[first + static_cast<std::int64_t>(i)] - mean_;
      b[i] = block(1)[first + static_cast<std::int64_t>(i)] - mean_;
    }
    for (std::int32_t j = 0; j < factors; ++j) {
      if (!pace.step()) return {};
      addProducts(sums[static_cast<std::size_t>(j)], a.data(), b.data(), block(kFirstFactor + j) + first,
                  block(kFirstFactor + factors + j) + first, count);
    }
  }
  return sums;
}

// The sums don't wait for each other's additions, as one after the other would.
void SobolBlocks::addProducts(FactorProducts& sums, const double* a, const double* b, const double* block,
                              const double* mirrored, std::size_t count) const {
  FactorProducts next = sums;
  for (std::size_t i = 0; i < count; ++i) {
    const double own = block[i] - mean_;
    const double other = mirrored[i] - mean_;
    next.aBlock += a[i] * own;
    next.bBlock += b[i] * own;
    next.aMirrored += a[i] * other;
    next.bMirrored += b[i] * other;
  }
  sums = next;
}

}  // namespace tarvex
