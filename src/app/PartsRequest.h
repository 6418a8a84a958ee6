#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "parts/PartSettings.h"

namespace tarvex {

class ModelChoice;

// A run in parts as a user asks for it at the desktop.
struct PartsRequest {
  PartSettings settings;
  std::int32_t parts = 0;  // 0: as many as are sensible
  std::string directory;   // of the run
};

// The words of tarvex-batch that start it: a program of its own drives the run, and goes on whatever becomes of this
// one. The result goes into the run's directory.
std::vector<std::string> wordsOf(const PartsRequest& request, const std::string& sampleFile, const ModelChoice& model);

// Where a run of a sample lies unless the user says otherwise: beside it, under a name that is free.
std::string freeRunDirectory(const std::string& sampleFile);

// The program for shells that belongs to this one: beside it, in the installed tree's directory of commands, or along
// PATH.
std::string batchProgram();

// Carries out a command of tarvex-batch and waits for its end. False, with what it said, when it failed; `goOn` is
// called meanwhile, and false ends it. Its log is kept in `directory`.
[[nodiscard]] bool runBatch(const std::vector<std::string>& words, const std::string& directory,
                            const std::function<bool()>& goOn, std::string& said);

}  // namespace tarvex
