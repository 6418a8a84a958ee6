#include "app/RunController.h"

#include "app/ExternalRun.h"
#include "app/FrontEnd.h"
#include "base/TextWriter.h"
#include "model/InternalRun.h"
#include "model/OfficeApplication.h"
#include "model/OutputFileStamp.h"
#include "model/SpreadsheetRun.h"
#include "model/linkWarning.h"
#include "sampling/FastSampler.h"
#include "sampling/SampleFiles.h"

namespace tarvex {

namespace {

constexpr std::int32_t kDone = 100;

// Holds `busy` for the time of an operation, however it ends.
class BusyScope {
 public:
  explicit BusyScope(bool& busy) : busy_(busy) { busy_ = true; }
  ~BusyScope() { busy_ = false; }
  BusyScope(const BusyScope&) = delete;
  BusyScope& operator=(const BusyScope&) = delete;

 private:
  bool& busy_;
};

}  // namespace

RunController::RunController(FrontEnd& frontEnd)
    : makeSpreadsheetApplication([](auto serve) { return std::make_unique<OfficeApplication>(std::move(serve)); }),
      frontEnd_(frontEnd) {}

bool RunController::fail(const std::string& text, const std::string& title) {
  frontEnd_.message(MessageKind::Error, title, text);
  return false;
}

bool RunController::canGenerate() {
  Sampler* sampler = project.prep.sampler.get();
  if (sampler == nullptr || sampler->numSamples == 0) {
    frontEnd_.message(MessageKind::Warning, "Warning", "  No samples to generate");
    return false;
  }
  auto* fast = dynamic_cast<FastSampler*>(sampler);
  if (fast != nullptr && !fast->checkSampleSize(project.prep.factors.correlatableCount())) {
    frontEnd_.message(MessageKind::Warning, "Warning", fast->errorText);
    return false;
  }
  return true;
}

bool RunController::generateSample() {
  if (busy) return true;
  if (!canGenerate()) return false;
  if (project.prep.samples.rows() > 0 && !sampleStale &&
      !frontEnd_.question("Warning",
                          "One sample set already exists.\n Do you want to delete the existing one and create a new "
                          "one now?",
                          "Yes", "No"))
    return true;

  const BusyScope scope(busy);
  frontEnd_.openProgress("Sample generation", project.prep.sampler->numSamples);
  frontEnd_.progress(0);
  frontEnd_.status("Output file: " + project.prep.sampleFile);
  const bool done = driveGeneration() && writeSample();
  if (!done) return false;
  modified = true;
  sampleStale = false;
  for (const std::string& text : {project.prep.warnings(), project.prep.relationFailures()})
    if (!text.empty()) frontEnd_.message(MessageKind::Warning, "Warning", text);
  return true;
}

// Generation to 100 percent, in steps of one. On failure or stop the progress display is gone and the sample empty.
bool RunController::driveGeneration() {
  PrepConfiguration& prep = project.prep;
  if (!canWriteFile(prep.sampleFile)) {
    fail("Error trying to write to the Sample file.\nIs it locked by another application?");
    frontEnd_.closeProgress();
    return false;
  }
  std::int32_t target = 1;
  std::int32_t percent = prep.prepareGeneration() ? prep.generate(target) : -1;
  while (percent >= 0 && percent < kDone) {
    frontEnd_.progress(percent);
    frontEnd_.drainEvents();
    if (!frontEnd_.continueRun()) {
      frontEnd_.closeProgress();
      prep.cancelGeneration();
      return false;
    }
    percent = prep.generate(++target);
  }
  if (percent >= kDone) return true;
  fail(prep.errorText());
  frontEnd_.closeProgress();
  prep.cancelGeneration();
  return false;
}

bool RunController::writeSample() {
  frontEnd_.status("Copying data to file...");
  std::string message;
  const bool saved = saveSampleFile(project.prep.sampleFile, project.prep, message);
  frontEnd_.closeProgress();
  return saved || fail(message);
}

bool RunController::runModel(bool useExistingSample) {
  if (busy) return true;
  if (project.model.choice.kind == kInternalModel && !linkInternalModel()) return false;
  if (!useExistingSample && !generateSample()) return false;
  if (project.prep.samples.rows() == 0) {
    frontEnd_.message(MessageKind::Warning, "Warning", "  No samples to generate");
    return false;
  }
  const bool done = runChosenModel();
  if (done) finishRun();
  return done;
}

bool RunController::runChosenModel() {
  if (project.model.choice.kind == kInternalModel) return runInternal();
  if (project.model.choice.spreadsheet != 0) return runSpreadsheet();
  return (project.model.choice.kind != kExternalExecutable || runExternal()) && readOutputs();
}

bool RunController::linkInternalModel() {
  const InternalModel* model = project.model.choice.internalModel();
  if (model == nullptr) return fail("Error starting internal model execution");
  if (model->numVariables() != project.prep.factors.factorCount())
    return fail("The number of model inputs differs from the number of factors in the generated sample");
  auto linked = std::make_unique<InternalModel>(*model);
  if (frontEnd_.linkFactors(project.prep.factors, *linked)) project.model.choice.setInternalModel(std::move(linked));
  std::vector<std::string> names;
  for (std::int32_t i = 0; i < project.prep.factors.factorCount(); ++i)
    names.push_back(project.prep.factors.factor(i).name);
  const std::string warning = linkWarning(names, *project.model.choice.internalModel());
  if (!warning.empty()) warn("Warning", warning);
  return true;
}

bool RunController::runInternal() {
  InternalModel& model = *project.model.choice.internalModel();
  const BusyScope scope(busy);
  InternalRun run(model, project.prep.samples, project.model.results);
  if (!run.prepare()) return fail("Error starting internal model execution\n" + run.errorText());
  frontEnd_.openProgress("Model execution", project.prep.samples.rows());
  frontEnd_.progress(0);
  frontEnd_.status("Model name:  " + model.name());
  const bool done = driveInternalRun(run);
  frontEnd_.closeProgress();
  if (done && run.failedRuns() > 0) frontEnd_.message(MessageKind::Warning, "Warning", run.failures());
  return done;
}

bool RunController::driveInternalRun(InternalRun& run) {
  float target = 1.0f;
  std::int32_t percent = run.advance(target);
  while (percent >= 0 && percent < kDone) {
    frontEnd_.progress(percent);
    frontEnd_.drainEvents();
    if (!frontEnd_.continueRun()) return false;
    target += 1.0f;
    percent = run.advance(target);
  }
  return percent >= kDone || fail(run.errorText());
}

bool RunController::runExternal() {
  const ModelChoice& model = project.model.choice;
  const BusyScope scope(busy);
  const OutputFileStamp before(model.outputFile);
  if (!runExternalModel(
          {model.executable, project.prep.sampleFile, model.outputFile + ".log", modelDirectory, model.outputFile},
          frontEnd_))
    return false;
  const std::string problem = before.problem();
  return problem.empty() || fail("Error reading model output file\n" + problem);
}

bool RunController::runSpreadsheet() {
  using Attendance = SpreadsheetRun::Attendance;
  const ModelChoice& model = project.model.choice;
  const BusyScope scope(busy);
  const std::unique_ptr<SpreadsheetApplication> application = makeSpreadsheetApplication([this] {
    frontEnd_.animate();
    frontEnd_.drainEvents();
    return frontEnd_.continueRun();
  });
  frontEnd_.openAnimation("External model execution", model.executable, model.outputFile);
  SpreadsheetRun run(*application, userAtWorkbook ? Attendance::User : Attendance::Nobody,
                     [this](const auto& title, const auto& text) { warn(title, text); });
  const bool done = run.run(model, project.prep, project.model.results);
  frontEnd_.closeProgress();
  const std::string detail = run.problem().empty() ? "" : '\n' + run.problem();
  return done || fail("Error in the Excel model execution" + detail);
}

bool RunController::readOutputs() {
  const BusyScope scope(busy);
  const auto tell = [this](const std::string& title, const std::string& text) { warn(title, text); };
  std::string problem;
  return project.model.readModelOutput(tell, problem) || fail("Error reading model output file\n" + problem);
}

void RunController::warn(const std::string& title, const std::string& text) {
  MessageKind kind = MessageKind::Error;
  if (title == "Warning") kind = MessageKind::Warning;
  if (title == "Information") kind = MessageKind::Information;
  frontEnd_.message(kind, title, text);
}

void RunController::finishRun() {
  VelsConfiguration vels;
  std::string message;
  if (!vels.setOutputs(project.model.results.outputNames(), message)) warn("Error", message);
  if (!vels.changedNames().empty()) warn("Warning", vels.changedNames());
  vels.prepareSensitivity(project.prep.methodId());
  if (vels.sensitivity) {
    vels.sensitivity->factorCount = project.prep.factors.factorCount();
    vels.sensitivity->variableCount = project.model.results.outputCount();
  }
  project.setVels(std::move(vels));
  modified = true;
}

}  // namespace tarvex
