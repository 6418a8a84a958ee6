#pragma once

#include <string>

#include "model/ModelCommand.h"

namespace tarvex {

class FrontEnd;

// What is started for an external model, and where.
struct ExternalRun {
  ModelCommand command;
  std::string sampleFile;  // that the model reads
  std::string logFile;     // gets what the model prints
  std::string directory;   // in which it runs; empty: the current one
  std::string outputFile;  // that the model is to write; it finds the absolute path in TARVEX_OUTPUT
};

// What is said, before the reason, of a model that can't be started.
inline constexpr const char* kNotLoaded = "The model execution process can't be loaded.";

// Starts the model and waits for its end, serving the user meanwhile. False, with the message shown, when it couldn't
// be started, got lost or ended with another code than 0; false without one when the user stopped it. Nothing of it
// runs then.
[[nodiscard]] bool runExternalModel(const ExternalRun& run, FrontEnd& frontEnd);

}  // namespace tarvex
