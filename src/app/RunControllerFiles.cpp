#include <filesystem>
#include <utility>

#include "app/DemoCases.h"
#include "app/FrontEnd.h"
#include "app/LongOperation.h"
#include "app/RunControllerScope.h"
#include "base/Paths.h"
#include "base/RememberedDirectories.h"
#include "base/TextReader.h"
#include "base/TextWriter.h"
#include "postproc/PostProcessorFile.h"
#include "sampling/SampleFiles.h"

namespace tarvex {

namespace {

// The buttons of the questions that may cost the user something.
constexpr const char* kYes = "^Yes";
constexpr const char* kNo = "^No";

}  // namespace

RunController::RunController(FrontEnd& frontEnd, std::string mainDirectory, CurrentDirectory current)
    : RunController(frontEnd) {
  RememberedDirectories::enterWhenSet(current == CurrentDirectory::Follows);
  modelDirectory = mainDirectory;
  mainDirectory_ = std::move(mainDirectory);
  if (!mainDirectory_.empty()) RememberedDirectories::readConfig(mainDirectory_);
}

RunController::~RunController() {
  RememberedDirectories::enterWhenSet(false);
  keepDirectories();
}

void RunController::keepDirectories() const {
  if (!mainDirectory_.empty()) RememberedDirectories::writeConfig(mainDirectory_);
}

void RunController::adoptSample(PrepConfiguration prep) {
  dropResults();
  project_.setPrep(std::move(prep));
  project_.resetVels();
  postProcessor_.reset();
  for (const Change change : {Change::Prep, Change::Measures}) note(change);
  setFlag(modified_, false);
  setFlag(sampleStale_, false);
}

void RunController::adoptResults(PrepConfiguration prep, ModelConfiguration model, VelsConfiguration vels) {
  project_.setPrep(std::move(prep));
  project_.setModel(std::move(model));
  project_.setVels(std::move(vels));
  project_.markResults();
  postProcessor_.reset();
  heldPath_.clear();
  for (const Change change : {Change::Prep, Change::Model, Change::Results, Change::Measures}) note(change);
  setFlag(modified_, false);
  setFlag(sampleStale_, false);
}

template <class Load>
Outcome RunController::loadSampleBy(Load load, const std::string& path) {
  if (busy_) return Outcome::Busy;
  const Scope scope(*this);
  const BusyScope inProgress(*this);
  PrepConfiguration prep;
  std::string message;
  const std::string from = absolutePath(path);
  {
    const LongOperation operation(frontEnd_, "Reading a sample", 0);
    if (!load(from, prep, message, operation.progress())) return operation.stopped() ? Outcome::Refused : fail(message);
  }
  if (!message.empty()) frontEnd_.message(MessageKind::Warning, "Warning", message);
  adoptSample(std::move(prep));
  holdSampleIn(from);
  return Outcome::Done;
}

Outcome RunController::loadSampleFile(const std::string& path) {
  return loadSampleBy(
      [&path](const std::string&, PrepConfiguration& prep, std::string& message, const Progress& progress) {
        return tarvex::loadSampleFile(path, prep, message, progress);  // told by the name that the user knows
      },
      path);
}

Outcome RunController::importSampleFile(const std::string& path) {
  return loadSampleBy(loadExternalSample, path);
}

Outcome RunController::loadResultsFile(const std::string& path) {
  if (busy_) return Outcome::Busy;
  const Scope scope(*this);
  const BusyScope inProgress(*this);
  PrepConfiguration prep;
  ModelConfiguration model;
  VelsConfiguration vels;
  std::string message;
  {
    const LongOperation operation(frontEnd_, "Reading results", 0);
    if (!loadPostProcessorFile(path, prep, model, vels, message, operation.progress()))
      return operation.stopped() ? Outcome::Refused : fail(message);
  }
  if (!message.empty()) frontEnd_.message(MessageKind::Warning, "Warning", message);
  adoptResults(std::move(prep), std::move(model), std::move(vels));
  return Outcome::Done;
}

Outcome RunController::loadProject(const std::string& path) {
  if (busy_) return Outcome::Busy;
  static constexpr const char* kTitle = "Error opening file";
  const Scope scope(*this);
  const BusyScope inProgress(*this);
  if (const TextReader in = TextReader::fromFile(path); in.fail())
    return fail(withProblem("  Error opening input file\n " + path + "\n Loading Aborted.", in), kTitle);
  ProjectConfiguration loaded;
  bool done = false;
  bool stopped = false;
  {
    const LongOperation operation(frontEnd_, "Reading a project", 0);
    done = loaded.load(absolutePath(path), operation.progress());
    stopped = operation.stopped();
  }
  keepDirectories();
  if (!done) return stopped ? Outcome::Refused : fail(loaded.errorText(), kTitle);
  if (const std::string changed = loaded.vels.changedNames(loaded.model); !changed.empty())
    frontEnd_.message(MessageKind::Warning, "Warning", changed);
  project_.assign(std::move(loaded));
  postProcessor_.reset();
  heldPath_.clear();
  for (const Change change : {Change::Prep, Change::Model, Change::Results, Change::Measures, Change::FileName})
    note(change);
  // The demo mode stays: only a reset leaves it.
  for (bool* flag : {&monteCarloMode_, &modified_, &sampleStale_}) setFlag(*flag, false);
  return Outcome::Done;
}

Outcome RunController::saveProject(const std::optional<std::string>& path) {
  if (busy_) return Outcome::Busy;
  const Scope scope(*this);
  const BusyScope inProgress(*this);
  bool saved = false;
  bool stopped = false;
  {
    const LongOperation operation(frontEnd_, "Writing the project", 0);
    saved = path ? project_.save(absolutePath(*path), operation.progress()) : project_.save(operation.progress());
    stopped = operation.stopped();
  }
  if (path) note(Change::FileName);
  if (stopped && !saved) return Outcome::Refused;
  setFlag(modified_, false);  // Kept: whatever became of the file; the user has been told.
  return saved ? Outcome::Done : fail(project_.errorText());
}

Outcome RunController::failWrite(const std::string& path) {
  return fail(outputNotWritten(path) + '\n' + whyNotWritable(path), kWriteError);
}

bool RunController::saveCopy(const std::string& path, std::string& message, const Progress& progress) {
  const Scope scope(*this);
  const BusyScope inProgress(*this);
  const bool saved = project_.saveCopy(path, progress);
  if (!saved) message = project_.errorText();
  return saved;
}

Outcome RunController::recoverProject(const std::string& copy, const std::string& fileName) {
  if (busy_) return Outcome::Busy;
  const Scope scope(*this);
  if (const Outcome loaded = loadProject(copy); loaded != Outcome::Done) return loaded;
  project_.fileName = fileName;
  setFlag(modified_, true);
  return Outcome::Done;
}

Outcome RunController::saveProjectAs(const std::string& path) {
  if (busy_) return Outcome::Busy;
  std::error_code error;
  if (!std::filesystem::exists(path, error) && !canWriteFile(path)) return failWrite(path);
  return saveProject(path);
}

Outcome RunController::quickSave() {
  if (busy_) return Outcome::Busy;
  if (!canWriteFile(project_.fileName)) return failWrite(project_.fileName);
  return saveProject();
}

Outcome RunController::saveResultsFile(const std::string& path) {
  if (busy_) return Outcome::Busy;
  if (const std::string reason = whyNotSave(); !reason.empty()) return fail(reason);
  const Scope scope(*this);
  const BusyScope inProgress(*this);
  const LongOperation operation(frontEnd_, "Writing results", project_.model.results.runCount());
  std::string message;
  if (savePostProcessorFile(path, project_.prep, project_.model, project_.vels, message, operation.progress()))
    return Outcome::Done;
  return operation.stopped() ? Outcome::Refused : fail(message);
}

Outcome RunController::openDemo(const std::string& caseName) {
  if (busy_) return Outcome::Busy;
  const Scope scope(*this);
  if (const Outcome may = mayDiscard(Discard::ForDemo); may != Outcome::Done) return may;
  const BusyScope inProgress(*this);
  const std::string path = demoFilePath(mainDirectory_, caseName);
  PrepConfiguration prep;
  ModelConfiguration model;
  VelsConfiguration vels;
  std::string message;
  bool done = false;
  bool stopped = false;
  {
    const LongOperation operation(frontEnd_, "Reading a demonstration case", 0);
    done = loadPostProcessorFile(path, prep, model, vels, message, operation.progress());
    stopped = operation.stopped();
  }
  // Told once, and in the words of the case: the user chose no file.
  if (!done)
    return stopped ? Outcome::Refused : fail("  Error reading demo file:\n " + path, "Error initializing demo");
  if (!message.empty()) frontEnd_.message(MessageKind::Warning, "Warning", message);
  adoptResults(std::move(prep), std::move(model), std::move(vels));
  const DemoCase* const demo = findDemoCase(caseName);
  demoCanRun_ = demo == nullptr || demo->canRun;
  for (bool* flag : {&monteCarloMode_, &demoMode_}) setFlag(*flag, true);
  return Outcome::Done;
}

Outcome RunController::mayDiscard(Discard purpose) {
  if (busy_) return Outcome::Busy;
  if (!modified_) return Outcome::Done;
  const char* title = "Entering demo mode";
  const char* text = "";
  switch (purpose) {
    case Discard::ForProject:
      // Kept: the title is that of the question below.
      text = "  Discard current configuration\n and load a new one ?";
      break;
    case Discard::ForDemo:
      text = "  Discard current configuration\n and switch to demo mode ?";
      break;
    case Discard::ForReset:
      title = "Warning";
      text = "  Discard current configuration ?";
      break;
  }
  return frontEnd_.question(title, text, kYes, kNo) ? Outcome::Done : Outcome::Refused;
}

Outcome RunController::mayEditPrep() {
  if (busy_) return Outcome::Busy;
  if (project_.prep.external != 1) return Outcome::Done;
  const bool discard = frontEnd_.question("External configuration",
                                          "An external configuration\nhas been loaded and can't be edited,\ndo you "
                                          "want to discard it?",
                                          kYes, kNo);
  return discard ? newPrep() : Outcome::Refused;
}

}  // namespace tarvex
