#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "app/ProjectConfiguration.h"

namespace tarvex {

class FrontEnd;
class InternalRun;
class SpreadsheetApplication;

// What a user is asked to give up.
enum class Discard { ForProject, ForDemo, ForReset };

// Owns the project and drives everything that happens to it through a front end: files, generation of the sample, the
// run of the model. Operations return false on failure, a refusal or a stop, with the message already shown; a failed
// load leaves the project and the flags as they were. While a generation or run is in progress every other operation
// returns true at once.
class RunController {
 public:
  explicit RunController(FrontEnd& frontEnd);
  // The controller of a whole session: reads the remembered directories from config.dat of `mainDirectory` now and
  // writes them back after each project that is loaded and at the end. Without a directory no such file is touched.
  // Where the current directory follows, it becomes each directory that is remembered, as long as the session lasts.
  enum class CurrentDirectory { Stays, Follows };
  RunController(FrontEnd& frontEnd, std::string mainDirectory, CurrentDirectory current = CurrentDirectory::Stays);
  ~RunController();
  RunController(const RunController&) = delete;
  RunController& operator=(const RunController&) = delete;

  ProjectConfiguration project;
  bool busy = false;            // a generation or run is in progress
  bool modified = false;        // the project has changes that aren't saved
  bool sampleStale = true;      // the sampling configuration changed after the sample was made
  bool monteCarloMode = false;  // the Monte Carlo stage has been entered
  bool demoMode = false;        // a demonstration case is open, for reading only
  std::string modelDirectory;   // in which an external model runs: at first mainDirectory(); empty: the current one
  bool userAtWorkbook = true;   // a workbook is shown to a user, who computes it; else it is computed unseen
  // The application for models that are workbooks; it calls the operation that it is given while it works.
  std::function<std::unique_ptr<SpreadsheetApplication>(std::function<bool()> serve)> makeSpreadsheetApplication;

  const std::string& mainDirectory() const { return mainDirectory_; }
  // True when a run can start: in the Monte Carlo stage, with a pre-processor configuration and a model.
  bool readyToRun() const { return monteCarloMode && project.hasPrep && project.hasModel; }

  // Files. A path that is relative is meant from the current directory at the call, wherever the load then goes.
  bool loadSampleFile(const std::string& path);
  bool importSampleFile(const std::string& path);
  bool loadResultsFile(const std::string& path);
  bool loadProject(const std::string& path);
  // Without a path under the project's own name; false for a project that has none.
  bool saveProject(const std::optional<std::string>& path = std::nullopt);
  bool saveProjectAs(const std::string& path);  // as the user chose it: first sees whether a new file can be made
  bool quickSave();                             // the same under the project's own name
  // Opens a demonstration case by its name and enters the Monte Carlo stage.
  bool openDemo(const std::string& caseName);

  // What the user accepted in a panel.
  bool acceptPrep(PrepConfiguration part);
  bool acceptModel(ModelChoice choice);  // the results stay
  // An empty pre-processor configuration in place of the project's.
  bool newPrep();
  bool clearAll();
  bool setDemoMode(std::int32_t value);  // false: neither 0 nor 1

  // True when nothing unsaved is lost, or the user gives it up.
  bool mayDiscard(Discard purpose);
  // An external configuration can't be edited: true when there is none, or the user gave it up for an empty one.
  bool mayEditPrep();

  // Makes the sample of the project's pre-processor configuration and writes its sample file. A sample that exists is
  // replaced only after a question, unless it is stale; when the user keeps it the result is true.
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
  bool driveInternalRun(InternalRun& run);
  bool runExternal();
  bool runSpreadsheet();
  bool readOutputs();
  bool runChosenModel();
  void finishRun();
  void warn(const std::string& title, const std::string& text);
  bool fail(const std::string& text, const std::string& title = "Error");
  void adoptResults(PrepConfiguration prep, ModelConfiguration model, VelsConfiguration vels);
  void adoptSample(PrepConfiguration prep);
  void keepDirectories() const;

  FrontEnd& frontEnd_;
  std::string mainDirectory_;
};

}  // namespace tarvex
