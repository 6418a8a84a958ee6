#pragma once

#include <string>

#include "app/ProjectConfiguration.h"

namespace tarvex {

class FrontEnd;

// Drives the long operations of a project through a front end: generation of the sample and the run of the model.
// Operations return false on failure or after a stop, with the message already shown; the project then has no results.
// While one is in progress every other returns true at once.
class RunController {
 public:
  explicit RunController(FrontEnd& frontEnd) : frontEnd_(frontEnd) {}

  ProjectConfiguration project;
  bool busy = false;        // a generation or run is in progress
  bool modified = false;    // the project has changes that aren't saved
  bool sampleStale = true;  // the sampling configuration changed after the sample was made

  // Makes the sample of the project's pre-processor configuration and writes its sample file. A sample that exists is
  // replaced only after a question, unless it is stale; when the user keeps it the result is true.
  // Requires: a sampler.
  bool generateSample();

  // Runs the project's model over the sample, generating it first unless `useExistingSample`, and prepares a
  // post-processor configuration of the run's size.
  bool runModel(bool useExistingSample);

 private:
  bool canGenerate();
  bool driveGeneration();
  bool writeSample();
  bool linkInternalModel();
  bool runInternal();
  bool driveInternalRun();
  bool readOutputs();
  void finishRun();
  bool fail(const std::string& text, const std::string& title = "Error");

  FrontEnd& frontEnd_;
};

}  // namespace tarvex
