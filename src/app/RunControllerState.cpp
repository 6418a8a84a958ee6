// What can be done and why not, what has changed, and what panels accept.

#include <utility>

#include "app/Analysis.h"
#include "app/FrontEnd.h"
#include "app/RunControllerScope.h"
#include "base/Paths.h"
#include "base/RememberedDirectories.h"
#include "base/TextWriter.h"
#include "sampling/FastSampler.h"

namespace tarvex {

namespace {

bool sameModel(const ModelChoice& a, const ModelChoice& b) {
  if (a.kind != b.kind) return false;
  if (a.kind != kInternalModel)
    return a.spreadsheet == b.spreadsheet && a.executable == b.executable && a.outputFile == b.outputFile &&
           a.cells == b.cells;
  if (!a.internalModel() || !b.internalModel()) return a.internalModel() == b.internalModel();
  TextWriter first;
  TextWriter second;
  InternalModel(*a.internalModel()).write(first);
  InternalModel(*b.internalModel()).write(second);
  return first.text() == second.text();
}

}  // namespace

void RunController::announce() {
  if (!changes_.empty()) notifier_.tell(std::exchange(changes_, {}));
}

void RunController::setFlag(bool& flag, bool value) {
  if (flag == value) return;
  flag = value;
  note(Change::Flags);
}

Outcome RunController::warn(const std::string& text) {
  frontEnd_.message(MessageKind::Warning, "Warning", text);
  return Outcome::Refused;
}

Outcome RunController::fail(const std::string& text, const std::string& title) {
  frontEnd_.message(MessageKind::Error, title, text);
  return Outcome::Refused;
}

void RunController::dropResults() {
  if (project_.model.results.runCount() == 0 && !project_.hasVels) return;
  project_.dropResults();
  postProcessor_.reset();
  note(Change::Results);
  note(Change::Measures);
}

std::string RunController::whyNot(Step step) const {
  if (busy_) return "A generation, a run or another operation is in progress.";
  switch (step) {
    case Step::EnterMonteCarlo:
      return monteCarloMode_ ? "The Monte Carlo stage has been entered." : "";
    case Step::LeaveMonteCarlo:
      return monteCarloMode_ || demoMode_ ? "" : "The Monte Carlo stage has not been entered.";
    case Step::Generate:
      return whyNotGenerate();
    case Step::Visualize:
      return project_.prep.samples.rows() > 0 ? "" : "There is no sample yet: generate, load or import one.";
    case Step::SelectModel:
      if (demoMode_) return "A demonstration case is for reading only.";
      return monteCarloMode_ ? "" : "The Monte Carlo stage has not been entered.";
    case Step::Run:
      return whyNotRun();
    case Step::Analyse:
      return postProcessor_.whyNot();
    case Step::QuickSave:
      return project_.fileName == ProjectConfiguration::kNoFile ? "The project has no file yet: save it under a name."
                                                                : "";
    case Step::SaveResults:
      return whyNotSave();
    case Step::LoadFile:
    case Step::ConfigurePrep:
    case Step::SaveProject:
    case Step::Reset:
      break;
  }
  return "";
}

std::string RunController::whyNotGenerate() const {
  if (std::string held = whyHeld ? whyHeld() : std::string(); !held.empty()) return held;
  if (project_.prep.external == 1)
    return "The sample comes from an external file: it stays as it was imported and is never generated.";
  const Sampler* sampler = project_.prep.sampler.get();
  if (sampler == nullptr || sampler->numSamples == 0) return "  No samples to generate";
  if (dynamic_cast<const FastSampler*>(sampler) == nullptr) return "";
  std::string message;
  const std::unique_ptr<Sampler> copy = sampler->clone(message);
  if (!copy) return message;
  auto& fast = static_cast<FastSampler&>(*copy);
  return fast.checkSampleSize(project_.prep.factors.correlatableCount()) ? "" : fast.errorText;
}

std::string RunController::whyNotRun() const {
  if (!monteCarloMode_) return "The Monte Carlo stage has not been entered.";
  if (!project_.hasPrep) return "There are no factors and no sampling method yet.";
  if (!project_.hasModel) return "No model is selected yet.";
  if (std::string held = whyHeld ? whyHeld() : std::string(); !held.empty()) return held;
  if (demoMode_ && !demoCanRun_) return "The model of this case doesn't come with it: it can be studied and not run.";
  return project_.prep.samples.rows() > 0 ? "" : whyNotGenerate();
}

std::string RunController::whyNotSave() const {
  if (!project_.hasPrep || !project_.hasModel || !project_.hasVels) return "There are no results to save.";
  return postProcessor_.whyNot();
}

Outcome RunController::acceptPrep(PrepSettings settings) {
  if (busy_) return Outcome::Busy;
  const Scope scope(*this);
  if (RememberedDirectories::entersWhenSet()) settings.sampleFile = absolutePath(settings.sampleFile);
  if (const std::string problem = PrepConfiguration::kSampleFileRule.problem(settings.sampleFile); !problem.empty())
    return fail(problem);
  bool same = false;
  std::string message;
  if (project_.hasPrep && project_.prep.external != 1 && !settings.compareWith(project_.prep, same, message))
    return fail(message);
  if (same) {
    project_.prep.sampleFile = settings.sampleFile;
    static_cast<void>(project_.prep.samples.setOrder(settings.order));  // as another preparation had it
  } else {
    dropResults();
    project_.setPrep(makePrep(std::move(settings)));
  }
  heldPath_.clear();
  project_.resetVels();
  postProcessor_.reset();
  if (project_.model.results.runCount() > 0) prepareVels();
  for (const Change change : {Change::Prep, Change::Measures}) note(change);
  setFlag(modified_, true);
  setFlag(sampleStale_, true);
  return Outcome::Done;
}

Outcome RunController::acceptModel(ModelChoice choice, Edit edit) {
  if (busy_) return Outcome::Busy;
  const Scope scope(*this);
  if (const std::string problem = choice.problem(); !problem.empty()) return fail(problem);
  if (!project_.hasModel || !sameModel(choice, project_.model.choice)) {
    dropResults();
    ModelConfiguration model;
    model.choice = std::move(choice);
    project_.setModel(std::move(model));
  }
  note(Change::Model);
  if (edit == Edit::ByUser) setFlag(modified_, true);
  return Outcome::Done;
}

Outcome RunController::withdrawPrep() {
  if (busy_) return Outcome::Busy;
  const Scope scope(*this);
  dropResults();
  project_.resetPrep();
  heldPath_.clear();
  note(Change::Prep);
  setFlag(sampleStale_, true);
  return Outcome::Done;
}

Outcome RunController::withdrawModel() {
  if (busy_) return Outcome::Busy;
  const Scope scope(*this);
  dropResults();
  project_.resetModel();
  note(Change::Model);
  return Outcome::Done;
}

Outcome RunController::newPrep() {
  if (busy_) return Outcome::Busy;
  const Scope scope(*this);
  dropResults();
  project_.setPrep({});
  project_.resetVels();
  postProcessor_.reset();
  heldPath_.clear();
  for (const Change change : {Change::Prep, Change::Measures}) note(change);
  setFlag(sampleStale_, true);
  return Outcome::Done;
}

Outcome RunController::clearAll() {
  if (busy_) return Outcome::Busy;
  const Scope scope(*this);
  project_.resetAll();
  project_.fileName = ProjectConfiguration::kNoFile;  // nothing empty is saved over it by a quick save
  postProcessor_.reset();
  heldPath_.clear();
  for (const Change change : {Change::Prep, Change::Model, Change::Results, Change::Measures, Change::FileName})
    note(change);
  setFlag(sampleStale_, true);
  for (bool* flag : {&demoMode_, &monteCarloMode_, &modified_}) setFlag(*flag, false);
  return Outcome::Done;
}

Outcome RunController::setDemoMode(std::int32_t value) {
  if (busy_) return Outcome::Busy;
  if (value != 0 && value != 1) return Outcome::Refused;
  const Scope scope(*this);
  setFlag(demoMode_, value == 1);
  return Outcome::Done;
}

Outcome RunController::enterMonteCarlo() {
  if (busy_) return Outcome::Busy;
  const Scope scope(*this);
  setFlag(monteCarloMode_, true);
  return Outcome::Done;
}

Outcome RunController::leaveMonteCarlo() {
  if (busy_) return Outcome::Busy;
  if (demoMode_) return clearAll();
  const Scope scope(*this);
  setFlag(monteCarloMode_, false);
  return Outcome::Done;
}

Outcome RunController::selectVariables(const std::vector<std::string>& texts) {
  if (busy_) return Outcome::Busy;
  const Scope scope(*this);
  std::string message;
  if (!postProcessor_.select(texts, message)) return fail(message);
  note(Change::Measures);
  setFlag(modified_, true);
  return Outcome::Done;
}

Outcome RunController::setOutputWeight(std::int32_t output, float weight) {
  if (busy_) return Outcome::Busy;
  const Scope scope(*this);
  if (!project_.vels.setWeight(output, weight)) return Outcome::Refused;  // the field gets its old value back
  postProcessor_.reset();
  note(Change::Measures);
  setFlag(modified_, true);
  return Outcome::Done;
}

Outcome RunController::analyse(const AnalysisRequest& request) {
  if (busy_) return Outcome::Busy;
  const Scope scope(*this);
  const BusyScope inProgress(*this);
  if (!tarvex::analyse(postProcessor_, request, frontEnd_)) return Outcome::Refused;
  note(Change::Measures);
  setFlag(modified_, true);
  return Outcome::Done;
}

Outcome RunController::applyAlpha(double alpha) {
  if (busy_) return Outcome::Busy;
  const Scope scope(*this);
  const BusyScope inProgress(*this);
  const std::shared_ptr<const AnalysisSnapshot> before = postProcessor_.snapshot();
  if (!tarvex::applyAlpha(postProcessor_, alpha, frontEnd_)) return Outcome::Refused;
  if (postProcessor_.snapshot() == before) return Outcome::Done;  // it was in force
  note(Change::Measures);
  setFlag(modified_, true);
  return Outcome::Done;
}

}  // namespace tarvex
