#pragma once

#include <string>

namespace tarvex {

class RunDirectory;
struct RunRecord;

// The one script that carries out an attempt at a part, under every engine: "job.sh ATTEMPT [PART]", the part being the
// index of the task in a job array where it isn't given. False, with the reason, for a command with an open quote.
[[nodiscard]] bool makeJobScript(const RunRecord& record, const RunDirectory& run, std::string& script,
                                 std::string& message);

// A word as a shell takes it for what it is.
std::string shellQuoted(const std::string& word);

}  // namespace tarvex
