#include "app/RunController.h"

#include "app/ExternalRun.h"
#include "app/FrontEnd.h"
#include "app/LongOperation.h"
#include "app/RunControllerScope.h"
#include "app/SampleOnDisk.h"
#include "base/Paths.h"
#include "base/TextWriter.h"
#include "model/InternalRun.h"
#include "model/OfficeApplication.h"
#include "model/OutputFileStamp.h"
#include "model/linkWarning.h"
#include "model/pairOutputs.h"
#include "sampling/SampleFiles.h"

namespace tarvex {

namespace {

constexpr std::int32_t kDone = 100;

}  // namespace

RunController::RunController(FrontEnd& frontEnd)
    : makeSpreadsheetApplication([](auto serve) { return std::make_unique<OfficeApplication>(std::move(serve)); }),
      frontEnd_(frontEnd) {}

Outcome RunController::generateSample(OldSample old) {
  if (busy_) return Outcome::Busy;
  const Scope scope(*this);
  if (const std::string reason = whyNotGenerate(); !reason.empty()) return warn(reason);
  if (project_.prep.samples.rows() > 0 && !sampleStale_ && old == OldSample::Ask &&
      !frontEnd_.question("Warning",
                          "One sample set already exists.\n Do you want to delete the existing one and create a new "
                          "one now?",
                          "Yes", "No"))
    return Outcome::Done;

  const BusyScope inProgress(*this);
  frontEnd_.openProgress("Sample generation", project_.prep.sampler->numSamples);
  frontEnd_.progress(0);
  frontEnd_.status("Output file: " + project_.prep.sampleFile);
  if (!driveGeneration() || !writeSample()) return Outcome::Refused;
  setFlag(sampleStale_, false);
  if (const std::string text = project_.prep.relationFailures(); !text.empty())
    frontEnd_.message(MessageKind::Warning, "Warning", text);
  return Outcome::Done;
}

// Generation to 100 percent, in steps of one. From its start on the old sample is gone, and with it what was computed
// from it. On failure or stop the progress display is gone and the sample empty.
bool RunController::driveGeneration() {
  PrepConfiguration& prep = project_.prep;
  if (const std::string reason = whyNotWritable(prep.sampleFile); !reason.empty()) {
    refuse(std::string(kSampleNotWritten) + '\n' + reason);
    frontEnd_.closeProgress();
    return false;
  }
  if (!prep.prepareGeneration()) {
    frontEnd_.closeProgress();
    return refuse(prep.errorText());
  }
  dropResults();
  project_.markSample();
  heldPath_.clear();
  note(Change::Prep);
  setFlag(modified_, true);
  setFlag(sampleStale_, true);
  if (!prep.warnings().empty()) frontEnd_.message(MessageKind::Warning, "Warning", prep.warnings());
  const LongOperation slice(frontEnd_);  // within a percent
  std::int32_t target = 1;
  std::int32_t percent = prep.generate(target, slice.progress());
  while (percent >= 0 && percent < kDone) {
    frontEnd_.progress(percent);
    frontEnd_.drainEvents();
    if (!frontEnd_.continueRun()) {
      frontEnd_.closeProgress();
      prep.cancelGeneration();
      return false;
    }
    percent = prep.generate(++target, slice.progress());
  }
  if (percent >= kDone) return true;
  if (!slice.stopped()) refuse(prep.errorText());
  frontEnd_.closeProgress();
  prep.cancelGeneration();
  return false;
}

// Where only the file can't be written, or the user stops that, the sample is kept, as one that the file doesn't hold.
bool RunController::writeSample() {
  frontEnd_.status("Copying data to file...");
  std::string message;
  bool saved = false;
  bool stopped = false;
  {
    const LongOperation operation(frontEnd_);
    saved = saveSampleFile(project_.prep.sampleFile, project_.prep, message, operation.progress());
    stopped = operation.stopped();
  }
  frontEnd_.closeProgress();
  if (saved) holdSampleIn(project_.prep.sampleFile);
  return saved || (!stopped && refuse(message));
}

void RunController::holdSampleIn(const std::string& path) {
  heldPath_ = absolutePath(existingPath(path));
  heldStamp_ = FileStamp(heldPath_);
}

Outcome RunController::runModel(SampleUse use) {
  if (busy_) return Outcome::Busy;
  const Scope scope(*this);
  if (project_.model.choice.kind == kInternalModel && !linkInternalModel()) return Outcome::Refused;
  if (use != SampleUse::Existing) {
    const Outcome made = generateSample(use == SampleUse::Replaced ? OldSample::Replace : OldSample::Ask);
    if (made != Outcome::Done) return made;
  }
  if (project_.prep.samples.rows() == 0) return warn("  No samples to generate");
  const BusyScope inProgress(*this);
  const std::vector<std::string> former =
      project_.hasVels ? project_.vels.outputNames(project_.model) : std::vector<std::string>();
  dropResults();
  setFlag(modified_, true);
  if (!runChosenModel()) {
    project_.model.results.clear();
    return Outcome::Refused;
  }
  linkOutputs(former);
  prepareVels();
  note(Change::Results);
  note(Change::Measures);
  return Outcome::Done;
}

bool RunController::runChosenModel() {
  const ModelChoice& model = project_.model.choice;
  if (model.kind == kInternalModel) return runInternal();
  if (runElsewhere && model.kind == kExternalExecutable) return runElsewhere(project_, project_.model.results);
  if (model.drivesCells()) return runCells();
  if (model.spreadsheet != 0) return runSpreadsheet();
  if (model.kind != kExternalExecutable) return readOutputs();
  return runExternal() && readOutputs();
}

bool RunController::linkInternalModel() {
  const InternalModel* model = project_.model.choice.internalModel();
  if (model == nullptr) return refuse("Error starting internal model execution");
  if (model->numVariables() != project_.prep.factors.factorCount())
    return refuse("The number of model inputs differs from the number of factors in the generated sample");
  auto linked = std::make_unique<InternalModel>(*model);
  if (frontEnd_.linkFactors(project_.prep.factors, *linked)) {
    dropResults();  // those of another order
    project_.model.choice.setInternalModel(std::move(linked));
    note(Change::Model);
  }
  std::vector<std::string> names;
  for (std::int32_t i = 0; i < project_.prep.factors.factorCount(); ++i)
    names.push_back(project_.prep.factors.factor(i).name);
  if (const std::string text = linkWarning(names, *project_.model.choice.internalModel()); !text.empty())
    frontEnd_.message(MessageKind::Warning, "Warning", text);
  return true;
}

bool RunController::runInternal() {
  InternalModel& model = *project_.model.choice.internalModel();
  InternalRun run(model, project_.prep.samples, project_.model.results);
  if (!run.prepare()) return refuse("Error starting internal model execution\n" + run.errorText());
  frontEnd_.openProgress("Model execution", project_.prep.samples.rows());
  frontEnd_.progress(0);
  frontEnd_.status("Model name:  " + model.name());
  const bool done = driveInternalRun(run);
  frontEnd_.closeProgress();
  if (done && run.failedRuns() > 0) frontEnd_.message(MessageKind::Warning, "Warning", run.failures());
  return done;
}

bool RunController::driveInternalRun(InternalRun& run) {
  const LongOperation slice(frontEnd_);  // within a percent
  float target = 1.0f;
  std::int32_t percent = run.advance(target, slice.progress());
  while (percent >= 0 && percent < kDone) {
    frontEnd_.progress(percent);
    frontEnd_.drainEvents();
    if (!frontEnd_.continueRun()) return false;
    target += 1.0f;
    percent = run.advance(target, slice.progress());
  }
  return percent >= kDone || (!slice.stopped() && refuse(run.errorText()));
}

bool RunController::runExternal() {
  const ModelChoice& model = project_.model.choice;
  if (!provideSampleFile()) return false;
  const std::string output = absolutePath(model.outputFile);
  if (isSameFile(output, heldPath_))
    return refuse("Error reading model output file\n" + model.outputFile +
                  ": this is the sample, which the model reads");
  if (project_.fileName != ProjectConfiguration::kNoFile && isSameFile(output, project_.fileName))
    return refuse("Error reading model output file\n" + model.outputFile + ": this is the project itself");
  const OutputFileStamp before(output);
  ModelCommand command;
  std::string message;
  if (!makeModelCommand(model.executable, heldPath_, output, command, message))
    return refuse(std::string(kNotLoaded) + '\n' + message);
  if (!runExternalModel({command, heldPath_, output + ".log", modelDirectory, output}, frontEnd_)) return false;
  if (!(FileStamp(heldPath_) == heldStamp_))
    tell("Warning",
         "The sample file has changed while the model ran. The results count as those of the sample as it was.\n" +
             heldPath_);
  const std::string problem = before.problem();
  return problem.empty() || refuse("Error reading model output file\n" + problem);
}

// Sees to it that heldPath_ holds the sample in hand: the file that is known to, the sample file if it does, or that
// file written anew. An external sample's source is never written.
bool RunController::provideSampleFile() {
  const PrepConfiguration& prep = project_.prep;
  if (!heldPath_.empty() && heldStamp_.exists() && FileStamp(heldPath_) == heldStamp_) return true;
  std::string message;
  const LongOperation operation(frontEnd_, "Sample file", prep.samples.rows());
  if (fileHoldsSample(prep.sampleFile, prep, operation.progress())) {
    holdSampleIn(prep.sampleFile);
    return true;
  }
  if (operation.stopped()) return false;
  if (prep.external == 1)
    return refuse(std::string(kSampleNotWritten) + '\n' + prep.sampleFile +
                  " no longer holds the sample that was imported, and an imported file is never written.");
  if (saveSampleFile(prep.sampleFile, prep, message, operation.progress())) {
    holdSampleIn(prep.sampleFile);
    return true;
  }
  return !operation.stopped() && refuse(message);
}

bool RunController::readOutputs() {
  const auto told = [this](const std::string& title, const std::string& text) { tell(title, text); };
  std::string problem;
  bool stopped = false;
  {
    const LongOperation operation(frontEnd_, "Reading model output", project_.prep.samples.rows());
    if (project_.model.readModelOutput(told, problem, operation.progress())) return true;
    stopped = operation.stopped();
  }
  return !stopped && refuse("Error reading model output file\n" + problem);
}

bool RunController::refuse(const std::string& text) {
  frontEnd_.message(MessageKind::Error, "Error", text);
  return false;
}

void RunController::tell(const std::string& title, const std::string& text) {
  MessageKind kind = MessageKind::Error;
  if (title == "Warning") kind = MessageKind::Warning;
  if (title == "Information") kind = MessageKind::Information;
  frontEnd_.message(kind, title, text);
}

// Asks only where the model's own names can't tell which output is which, and the project knows others.
void RunController::linkOutputs(const std::vector<std::string>& former) {
  ModelResults& results = project_.model.results;
  OutputLink link{results.givenNames(), results.outputNames(), {}};
  if (link.given.empty() || former.empty() || link.kept == former) return;
  link.names = pairOutputs(link.given, link.kept, former);
  if (frontEnd_.linkOutputs(link)) results.renameOutputs(link.names);
}

void RunController::prepareVels() {
  VelsConfiguration vels;
  std::string message;
  if (!vels.setOutputs(project_.model.results.outputNames(), message)) refuse(message);
  if (!vels.changedNames().empty()) frontEnd_.message(MessageKind::Warning, "Warning", vels.changedNames());
  vels.prepareSensitivity(project_.prep.methodId());
  if (vels.sensitivity) {
    vels.sensitivity->factorCount = project_.prep.factors.factorCount();
    vels.sensitivity->variableCount = project_.model.results.outputCount();
  }
  project_.setVels(std::move(vels));
  project_.markResults();
  postProcessor_.reset();
}

}  // namespace tarvex
