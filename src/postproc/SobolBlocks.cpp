#include "postproc/SobolBlocks.h"

#include <cstddef>
#include <utility>

#include "postproc/MeasureSupport.h"

namespace tarvex {

SobolBlocks::SobolBlocks(std::vector<double> runs, std::int32_t baseSize)
    : runs_(std::move(runs)), baseSize_(baseSize) {
  const double mean = seriesMean(runs_.data(), runs_.size());
  for (double& run : runs_) run -= mean;
  const auto size = static_cast<std::size_t>(baseSize);
  meanA_ = seriesMean(block(0), size);
  meanB_ = seriesMean(block(1), size);
  varianceA_ = blockVariance(0, meanA_);
  varianceB_ = blockVariance(1, meanB_);
}

double SobolBlocks::product(std::int64_t first, std::int64_t second) const {
  return products<1>({Pair{first, second}})[0];
}

double SobolBlocks::blockVariance(std::int64_t number, double mean) const {
  const double* values = block(number);
  double squares = 0.0;
  for (std::int32_t i = 0; i < baseSize_; ++i) squares += (values[i] - mean) * (values[i] - mean);
  return squares / baseSize_;
}

}  // namespace tarvex
