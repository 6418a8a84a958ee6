#pragma once

#include <string>

namespace tarvex {

class FrontEnd;

// What is started for an external model, and where.
struct ExternalRun {
  std::string executable;
  std::string sampleFile;  // the model's one argument
  std::string logFile;     // gets what the model prints
  std::string directory;   // in which it runs; empty: the current one
};

enum class ExternalOutcome { Done, ErrorCode, Failed };

// Starts the model and waits for its end, serving the user meanwhile. ErrorCode: it ended with another code than 0.
// Failed: it couldn't be started or got lost, with the message shown, or the user stopped it; then nothing of it runs.
ExternalOutcome runExternalModel(const ExternalRun& run, FrontEnd& frontEnd);

}  // namespace tarvex
