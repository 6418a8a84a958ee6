#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "base/Progress.h"

namespace tarvex {

class ModelConfiguration;
class ModelResults;

// The quantiles that bands over time show: two bands around the median.
inline constexpr std::array kBandShares = {0.05, 0.25, 0.5, 0.75, 0.95};

// The runs of one output at each of its times.
struct TimeBands {
  std::string output;
  std::vector<double> times;    // upwards
  std::size_t storedTimes = 0;  // of the results; more than `times` where only some of them are shown
  std::vector<double> means;    // over all runs, as UaStats has them: nan where a run has no number
  std::array<std::vector<double>, kBandShares.size()> quantiles;  // of the runs with a number, as OrderedRuns has them
  std::int32_t runs = 0;
  std::int64_t missing = 0;  // the most runs without a number at one time
};

// All times at which any run has a value, upwards, each once.
std::vector<double> resultTimes(const ModelResults& results);

// Looks through the output at each stored time (of those that print alike, the first: an analysis can't tell them
// apart), or at kMostBandTimes of them, evenly chosen, where there are more; the
// value of a run at a time is that of a variable "%s[%g]". False, with a sentence for the user, for an output that
// there isn't, results without a time axis or that can't be read, and after a stop; `bands` is then as it was.
// `outputNames`: VelsConfiguration::outputNames().
[[nodiscard]] bool computeTimeBands(const ModelConfiguration& model, const std::vector<std::string>& outputNames,
                                    const std::string& output, TimeBands& bands, std::string& message,
                                    const Progress& progress = {});
inline constexpr std::size_t kMostBandTimes = 400;  // more than a picture has room for

}  // namespace tarvex
