#pragma once

#include <cstdint>
#include <string>

namespace tarvex {

class PartSample;
class RunDirectory;
struct RunRecord;

// Makes the directory of an attempt, with the part's sample and what the user wants to find there. False, with path and
// reason.
[[nodiscard]] bool prepareAttempt(const RunRecord& record, const RunDirectory& run, const PartSample& sample,
                                  std::int32_t part, std::int32_t attempt, std::string& message);

// Where an attempt leaves the model's output.
std::string attemptOutput(const RunRecord& record, const RunDirectory& run, std::int32_t part, std::int32_t attempt);

// Why a run can't be carried out like this, whatever the model does; empty when it can. `methodId` is that of the
// sample.
std::string whyNotInParts(const RunRecord& record, std::int32_t methodId);

}  // namespace tarvex
