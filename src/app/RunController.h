#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "app/Changes.h"
#include "app/FileStamp.h"
#include "app/Outcome.h"
#include "app/PostProcessor.h"
#include "app/ProjectConfiguration.h"
#include "sampling/PrepSettings.h"

namespace tarvex {

class FrontEnd;
class InternalRun;
class RunFollower;
class Selection;
class SpreadsheetApplication;
struct RunRecord;
struct TrialReport;

// What a user is asked to give up.
enum class Discard { ForProject, ForDemo, ForReset };

// What a user can ask for; see RunController::whyNot().
enum class Step {
  EnterMonteCarlo,
  LeaveMonteCarlo,
  LoadFile,  // a sample, results, a project, a demonstration case
  ConfigurePrep,
  Generate,
  Visualize,  // the sample
  SelectModel,
  Run,
  Analyse,
  SaveProject,
  QuickSave,
  SaveResults,
  Reset
};

// Owns the project and drives everything that happens to it through a front end: files, generation of the sample, the
// run of the model, the analysis. Every operation answers by an Outcome, with the message already shown; a failed load
// leaves the project and the flags as they were. While one is in progress every other is Busy. Each tells what it has
// changed, once, when it is through.
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

  // To be read until the next operation.
  const ProjectConfiguration& project() const { return project_; }
  // To be kept: what is selected and computed now.
  std::shared_ptr<const AnalysisSnapshot> analysis() { return postProcessor_.snapshot(); }
  bool busy() const { return busy_; }                      // an operation is in progress
  bool modified() const { return modified_; }              // the project has changes that aren't saved
  bool sampleStale() const { return sampleStale_; }        // the sample is not what the settings would now give
  bool monteCarloMode() const { return monteCarloMode_; }  // the Monte Carlo stage has been entered
  bool demoMode() const { return demoMode_; }              // a demonstration case is open, for reading only
  const std::string& mainDirectory() const { return mainDirectory_; }

  // Why a step can't be taken now, as a sentence for the user; empty when it can. The operations ask the same question.
  std::string whyNot(Step step) const;
  // True when a run can start: in the Monte Carlo stage, with a pre-processor configuration and a model.
  bool readyToRun() const { return monteCarloMode_ && project_.hasPrep && project_.hasModel; }
  // Calls the listener after every operation that changed something, as long as the subscription is held.
  [[nodiscard]] ChangeNotifier::Subscription subscribe(ChangeNotifier::Listener listener) {
    return notifier_.subscribe(std::move(listener));
  }

  // How models are run.
  std::string modelDirectory;  // in which an external one runs: at first mainDirectory(); empty: the current one
  bool userAtWorkbook = true;  // a workbook is shown to a user, who computes it; else it is computed unseen
  // The application for models that are workbooks; it calls the operation that it is given while it works.
  std::function<std::unique_ptr<SpreadsheetApplication>(std::function<bool()> serve)> makeSpreadsheetApplication;

  // In place of one start of an external model, program or workbook, for the whole sample, where it is set: fills the
  // results. False when it failed or was stopped, with the messages shown.
  std::function<bool(const ProjectConfiguration& project, ModelResults& results)> runElsewhere;

  // Files. A path that is relative is meant from the current directory at the call, wherever the load then goes.
  Outcome loadSampleFile(const std::string& path);
  Outcome importSampleFile(const std::string& path);
  Outcome loadResultsFile(const std::string& path);
  Outcome loadProject(const std::string& path);
  // Without a path under the project's own name; refused for a project that has none.
  Outcome saveProject(const std::optional<std::string>& path = std::nullopt);
  Outcome saveProjectAs(const std::string& path);  // as the user chose it: first sees whether a new file can be made
  // Writes the project as it is now to another file, under no display; meanwhile the controller is busy, and else
  // nothing changes. On false, as after a stop, `message` says why. Requires: not busy.
  [[nodiscard]] bool saveCopy(const std::string& path, std::string& message, const Progress& progress = {});
  // The project of such a copy, under the name that it had; it has changes that aren't saved.
  Outcome recoverProject(const std::string& copy, const std::string& fileName);
  Outcome quickSave();                               // the same under the project's own name
  Outcome saveResultsFile(const std::string& path);  // the post-processor file
  // Opens a demonstration case by its name and enters the Monte Carlo stage.
  Outcome openDemo(const std::string& caseName);

  // What the user accepted in a panel. The sample stays as long as it is what the settings describe, and is stale in
  // any case; the measures are dropped.
  Outcome acceptPrep(PrepSettings settings);
  // Takes over what is to be run. The results stay as long as that is the same model.
  enum class Edit { ByUser, AtStart };  // at the start nothing counts as modified
  Outcome acceptModel(ModelChoice choice, Edit edit = Edit::ByUser);
  // Takes back the first of what was accepted: the project then has no such part.
  Outcome withdrawPrep();
  Outcome withdrawModel();
  // An empty pre-processor configuration in place of the project's.
  Outcome newPrep();
  Outcome clearAll();
  Outcome setDemoMode(std::int32_t value);  // refused: neither 0 nor 1
  Outcome enterMonteCarlo();
  Outcome leaveMonteCarlo();

  // Done when nothing unsaved is lost, or the user gives it up.
  Outcome mayDiscard(Discard purpose);
  // An external configuration can't be edited: Done when there is none, or the user gave it up for an empty one.
  Outcome mayEditPrep();

  // Makes the sample of the project's pre-processor configuration and writes its sample file; results and measures of
  // the old one are dropped. A sample that exists is replaced only after a question, unless it is stale or the caller
  // knows the answer; when the user keeps it nothing else happens.
  enum class OldSample { Ask, Replace };
  Outcome generateSample(OldSample old = OldSample::Ask);

  // Runs the project's model over the sample, making that first where it isn't to be used as it is, and prepares a
  // post-processor configuration of the run's size. Results and measures of an earlier run are dropped at the start.
  enum class SampleUse { Existing, Generated, Replaced };
  Outcome runModel(SampleUse use);

  // Runs in parts, which another program drives. Why the project's run can't be one; empty when it can.
  std::string whyNotInParts() const;
  // The file that holds the sample in hand, written where none does: the parts are cut from it.
  Outcome provideSample(std::string& path);
  // Where that file is or will be, beside which a run's directory stands.
  std::string samplePath() const;
  // Whether a run is one over the file that is known to hold this project's sample, with its model.
  bool isAbout(const RunRecord& record) const;
  // The same of a run whose file may hold the sample though that isn't known, as after a project was opened: reads it.
  bool recognise(const RunRecord& record);
  // The results of a run that is over become the project's, as if its model had been run here.
  Outcome takeParts(const RunFollower& run);
  // Where it is set and says so, a run in parts needs the project's sample as it is: no other is made, and no other run
  // begins. To be asked at any time.
  std::function<std::string()> whyHeld;

  // Tries `model` on one run of the sample, or on the means, as it would be run: nothing of the project changes.
  // `serve` is called meanwhile and gives false to stop it.
  Outcome tryModel(const ModelChoice& model, std::int32_t row, const std::function<bool()>& serve, TrialReport& report);

  // The analysis of the results in hand.
  Outcome selectVariables(const std::vector<std::string>& texts);
  Outcome setOutputWeight(std::int32_t output, float weight);
  Outcome analyse(const AnalysisRequest& request);
  // Another confidence of the significance tests, for measures that are there (see PostProcessor::applyAlpha).
  Outcome applyAlpha(double alpha);

  // The runs in hand with the columns of these names, as readRunTable() takes them, to look at and to select from. They
  // stay what they are, whatever becomes of the project.
  Outcome readRuns(const std::vector<std::string>& names, std::shared_ptr<Selection>& selection);
  // Saves what is kept of them: as a sample of its own, as long as theirs is the project's sample; the columns as
  // comma-separated values.
  Outcome saveSelectedSample(const Selection& selection, const std::string& path);
  Outcome saveSelectedTable(const Selection& selection, const std::string& path);
  // Does a panel's own work on runs under a display of progress; meanwhile the controller is busy, and nothing else
  // changes. Done when the work says so; what it says against itself is shown.
  using Work = std::function<bool(const Progress& progress, std::string& message)>;
  Outcome perform(const std::string& title, std::int32_t runs, const Work& work);

 private:
  class Scope;
  class BusyScope;

  void note(Change change) { changes_.add(change); }
  void announce();
  void setFlag(bool& flag, bool value);
  Outcome warn(const std::string& text);
  Outcome fail(const std::string& text, const std::string& title = "Error");
  Outcome failWrite(const std::string& path);
  void tell(const std::string& title, const std::string& text);

  std::string whyNotGenerate() const;
  std::string whyNotRun() const;
  std::string whyNotSave() const;

  void dropResults();
  void adoptResults(PrepConfiguration prep, ModelConfiguration model, VelsConfiguration vels);
  void adoptSample(PrepConfiguration prep);
  template <class Load>
  Outcome loadSampleBy(Load load, const std::string& path);
  void keepDirectories() const;
  void prepareVels();
  void linkOutputs(const std::vector<std::string>& former);

  [[nodiscard]] bool driveGeneration();
  [[nodiscard]] bool writeSample();
  [[nodiscard]] bool linkInternalModel();
  [[nodiscard]] bool runInternal();
  [[nodiscard]] bool driveInternalRun(InternalRun& run);
  [[nodiscard]] bool runExternal();
  [[nodiscard]] bool runSpreadsheet();
  [[nodiscard]] bool runCells();
  std::string whyNotOf(const RunRecord& record) const;
  [[nodiscard]] bool isSampleOf(const RunRecord& record);
  [[nodiscard]] bool joinInto(const RunFollower& run, ModelResults& results);
  [[nodiscard]] bool readOutputs();
  [[nodiscard]] bool runChosenModel();
  [[nodiscard]] bool provideSampleFile();
  void holdSampleIn(const std::string& path);
  bool refuse(const std::string& text);  // shows it; always false

  FrontEnd& frontEnd_;
  std::string mainDirectory_;
  ProjectConfiguration project_;
  PostProcessor postProcessor_{project_};
  bool busy_ = false;
  bool modified_ = false;
  bool sampleStale_ = true;
  bool monteCarloMode_ = false;
  bool demoMode_ = false;
  bool demoCanRun_ = true;  // the demonstration case's model comes with it
  // The file that holds the sample in hand, as it was when that was seen; the model reads it.
  std::string heldPath_;
  FileStamp heldStamp_;

  ChangeNotifier notifier_;
  Changes changes_;  // not told yet
  int depth_ = 0;    // of operations within operations
};

}  // namespace tarvex
