#pragma once

#include <cstdint>
#include <functional>
#include <string>

namespace tarvex {

class FactorList;
class PartSample;
struct RunRecord;

// How many parts a run is best cut into, from what one run of the model takes: it is tried here, on the first row of
// the sample, in a directory that is gone afterwards. A workbook isn't tried: one part a place that works. False, with
// the message, when it fails or was stopped.
[[nodiscard]] bool findPartCount(const RunRecord& record, const FactorList& factors, std::int32_t rows,
                                 const std::function<bool()>& goOn, std::int32_t& parts, std::string& message);

// The rule: parts that take a second here and a minute on a cluster, where starting one costs more; at least one a
// place that works, and so few that a job array holds them.
std::int32_t sensibleParts(const RunRecord& record, std::int32_t rows, double secondsOfRun);

}  // namespace tarvex
