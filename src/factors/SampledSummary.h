#pragma once

#include <vector>

namespace tarvex {

class Factor;

// What the values that are drawn from a factor look like, its truncation included.
struct SampledSummary {
  double mean = 0.0;
  double deviation = 0.0;
  double low = 0.0;   // 5 percent of the values lie below
  double high = 0.0;  // 95 percent lie below
};

// False for a factor without a distribution and one that nothing can be sampled from. Moments of a truncated kind have
// a relative error below 1e-5 of the deviation; the points are those of the generation.
[[nodiscard]] bool summariseSampled(const Factor& factor, SampledSummary& summary);
// Fills `values`, as many as there are, with what is drawn in the middle of equal parts of the probability, upwards.
// False as above.
[[nodiscard]] bool stratifiedSample(const Factor& factor, std::vector<double>& values);

}  // namespace tarvex
