#include <filesystem>
#include <utility>

#include "app/DemoCases.h"
#include "app/FrontEnd.h"
#include "app/RunController.h"
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
  project.setPrep(std::move(prep));
  project.resetVels();
  modified = false;
  sampleStale = false;
}

void RunController::adoptResults(PrepConfiguration prep, ModelConfiguration model, VelsConfiguration vels) {
  project.setPrep(std::move(prep));
  project.setModel(std::move(model));
  project.setVels(std::move(vels));
  modified = false;
  sampleStale = false;
}

bool RunController::loadSampleFile(const std::string& path) {
  if (busy) return true;
  PrepConfiguration prep;
  std::string message;
  if (!tarvex::loadSampleFile(path, prep, message)) return fail(message);
  adoptSample(std::move(prep));
  return true;
}

bool RunController::importSampleFile(const std::string& path) {
  if (busy) return true;
  PrepConfiguration prep;
  std::string message;
  if (!loadExternalSample(absolutePath(path), prep, message)) return fail(message);
  adoptSample(std::move(prep));
  return true;
}

bool RunController::loadResultsFile(const std::string& path) {
  if (busy) return true;
  PrepConfiguration prep;
  ModelConfiguration model;
  VelsConfiguration vels;
  std::string message;
  if (!loadPostProcessorFile(path, prep, model, vels, message)) return fail(message);
  if (!message.empty()) warn("Warning", message);
  adoptResults(std::move(prep), std::move(model), std::move(vels));
  return true;
}

bool RunController::loadProject(const std::string& path) {
  if (busy) return true;
  static constexpr const char* kTitle = "Error opening file";
  if (TextReader::fromFile(path).fail())
    return fail("  Error opening input file\n " + path + "\n Loading Aborted.", kTitle);
  ProjectConfiguration loaded;
  const bool done = loaded.load(absolutePath(path));
  keepDirectories();
  if (!done) return fail("Error reading configuration file.", kTitle);
  project.assign(std::move(loaded));
  // The demo mode stays: only a reset leaves it.
  monteCarloMode = false;
  modified = false;
  sampleStale = false;
  return true;
}

bool RunController::saveProject(const std::optional<std::string>& path) {
  if (busy) return true;
  const bool saved = path ? project.save(absolutePath(*path)) : project.save();
  modified = false;  // Kept: whatever became of the file; the user has been told.
  return saved || fail("Error trying to write to the Tarvex configuration file.\nIs it locked by another application?");
}

bool RunController::saveProjectAs(const std::string& path) {
  if (busy) return true;
  std::error_code error;
  if (!std::filesystem::exists(path, error) && !canWriteFile(path))
    return fail("  Error writing output file\n " + path, "Write error");
  return saveProject(path);
}

bool RunController::quickSave() {
  if (busy) return true;
  if (!canWriteFile(project.fileName)) return fail("  Error writing output file\n " + project.fileName, "Write error");
  return saveProject();
}

bool RunController::openDemo(const std::string& caseName) {
  if (busy) return true;
  if (!mayDiscard(Discard::ForDemo)) return false;
  const std::string path = demoFilePath(mainDirectory_, caseName);
  PrepConfiguration prep;
  ModelConfiguration model;
  VelsConfiguration vels;
  std::string message;
  // Told once, and in the words of the case: the user chose no file.
  if (!loadPostProcessorFile(path, prep, model, vels, message))
    return fail("  Error reading demo file:\n " + path, "Error initializing demo");
  adoptResults(std::move(prep), std::move(model), std::move(vels));
  monteCarloMode = true;
  return setDemoMode(1);
}

bool RunController::acceptPrep(PrepConfiguration part) {
  if (busy) return true;
  project.setPrep(std::move(part));
  project.resetVels();
  modified = true;
  sampleStale = true;
  return true;
}

bool RunController::acceptModel(ModelChoice choice) {
  if (busy) return true;
  project.model.choice = std::move(choice);
  project.hasModel = true;
  modified = true;
  return true;
}

bool RunController::newPrep() {
  if (busy) return true;
  project.setPrep({});
  project.resetVels();
  sampleStale = true;
  return true;
}

bool RunController::clearAll() {
  if (busy) return true;
  project.resetAll();
  sampleStale = true;
  demoMode = false;
  monteCarloMode = false;
  modified = false;
  return true;
}

bool RunController::setDemoMode(std::int32_t value) {
  if (busy) return true;
  if (value != 0 && value != 1) return false;
  demoMode = value == 1;
  return true;
}

bool RunController::mayDiscard(Discard purpose) {
  if (busy || !modified) return true;
  switch (purpose) {
    case Discard::ForProject:
      // Kept: the title is that of the question below.
      return frontEnd_.question("Entering demo mode", "  Discard current configuration\n and load a new one ?", kYes,
                                kNo);
    case Discard::ForDemo:
      return frontEnd_.question("Entering demo mode", "  Discard current configuration\n and switch to demo mode ?",
                                kYes, kNo);
    case Discard::ForReset:
      break;
  }
  return frontEnd_.question("Warning", "  Discard current configuration ?", kYes, kNo);
}

bool RunController::mayEditPrep() {
  if (busy || project.prep.external != 1) return true;
  return frontEnd_.question("External configuration",
                            "An external configuration\nhas been loaded and can't be edited,\ndo you want to discard "
                            "it?",
                            kYes, kNo) &&
         newPrep();
}

}  // namespace tarvex
