#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>

#include "base/WorkPace.h"
#include "postproc/OutputTable.h"
#include "sampling/PrepConfiguration.h"

namespace tarvex {

// What the measures of the structured designs share.

inline constexpr const char* kDesignMissing = "The sample file doesn't tell the design of the sample.";
inline constexpr const char* kDesignDamaged = "The design of the sample doesn't fit its runs.";

// The design of `prep` as the sampler class that a measure is made for. Null, with the reason, when the sample comes
// from another method or has not as many runs as the results.
template <class SamplerClass>
const SamplerClass* designFor(const PrepConfiguration& prep, const OutputTable& outputs, std::string& reason) {
  const auto* design = dynamic_cast<const SamplerClass*>(prep.sampler.get());
  if (design == nullptr) {
    reason = "The sample was not made by the method of this analysis.";
  } else if (design->numSamples != outputs.rows()) {
    reason = "The sample has " + std::to_string(design->numSamples) + " runs, the results have " +
             std::to_string(outputs.rows()) + ".";
    design = nullptr;
  }
  return design;
}

// The mean of values that may all be equal: it is then that value, without rounding, so that a constant output has
// deviations of exactly 0.
template <class Sum = double>
Sum seriesMean(const double* values, std::size_t count) {
  Sum sum = 0.0;
  for (std::size_t i = 0; i < count; ++i) sum += values[i];
  const bool constant = count > 0 && std::all_of(values, values + count, [&](double x) { return x == values[0]; });
  return constant ? Sum{values[0]} : sum / static_cast<Sum>(count);
}

}  // namespace tarvex
