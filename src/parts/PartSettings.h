#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace tarvex {

enum class EngineKind { Local, Slurm };

// What becomes of a part that failed, after it was repeated so many times: the run stops at once; the others go on and
// the run fails at its end; or its runs count as missing.
enum class FailurePolicy { Stop, Retry, Missing };

// How the parts of a run are carried out: all that may change from one start of a run to the next.
struct PartSettings {
  EngineKind engine = EngineKind::Local;
  std::int32_t jobs = 0;  // at a time; 0: as many as there are cores, or as the cluster gives
  FailurePolicy policy = FailurePolicy::Stop;
  std::int32_t repeats = 0;
  std::int32_t timeLimit = 0;              // seconds that the model may take for a part; 0: any
  std::int32_t memory = 0;                 // megabytes of address space; 0: any
  std::vector<std::string> links;          // paths that each part finds in its directory, under their last names
  std::string prologue;                    // lines of a shell before the model is started
  std::vector<std::string> engineOptions;  // words for the cluster's submission
};

// "local", "slurm"; "stop", "retry:3", "nan:2".
std::string engineWord(EngineKind engine);
[[nodiscard]] bool parseEngine(const std::string& word, EngineKind& engine);
std::string policyWord(const PartSettings& settings);
[[nodiscard]] bool parsePolicy(const std::string& word, PartSettings& settings);

}  // namespace tarvex
