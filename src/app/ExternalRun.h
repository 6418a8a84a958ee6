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
  std::string outputFile;  // that the model is to write; it finds the absolute path in TARVEX_OUTPUT
};

// Starts the model and waits for its end, serving the user meanwhile. False, with the message shown, when it couldn't
// be started, got lost or ended with another code than 0; false without one when the user stopped it. Nothing of it
// runs then.
[[nodiscard]] bool runExternalModel(const ExternalRun& run, FrontEnd& frontEnd);

}  // namespace tarvex
