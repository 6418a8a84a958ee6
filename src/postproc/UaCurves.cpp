#include "postproc/UaCurves.h"

#include <cstddef>

namespace tarvex {

UaCurves makeUaCurves(const UaStats& stats, std::int32_t variable, HistogramScale scale) {
  UaCurves curves;
  const Histogram* histogram = scale == kLogScale ? stats.logHistogram(variable) : stats.linearHistogram(variable);
  if (histogram == nullptr) return curves;
  const double runs = stats.sampleSize();
  float sum = 0.0f;
  for (std::size_t i = 0; i < histogram->size(); ++i) {
    const HistogramEntry& entry = (*histogram)[i];
    curves.x[i] = static_cast<float>(entry.left);
    curves.density[i] = static_cast<float>(entry.count);
    sum = static_cast<float>(sum + entry.count / runs);
    curves.cumulative[i] = sum;
    curves.complement[i] = 1.0f - sum;
  }
  return curves;
}

}  // namespace tarvex
