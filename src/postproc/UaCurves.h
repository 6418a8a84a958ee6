#pragma once

#include <array>

#include "postproc/UaStats.h"

namespace tarvex {

// The curves of one variable, on the edges of its linear or logarithmic histogram. Single precision
// throughout, running sums included: so they are shown and saved.
struct UaCurves {
  using Curve = std::array<float, kHistogramEntries>;
  Curve x{};
  Curve density{};     // runs in the bin
  Curve cumulative{};  // share of the runs in the bins so far
  Curve complement{};  // 1 - cumulative
};

// All zeros for a variable that there is not.
UaCurves makeUaCurves(const UaStats& stats, std::int32_t variable, HistogramScale scale);

}  // namespace tarvex
