// Runs in parts: they go on outside, and their results are taken when they are there.

#include <filesystem>
#include <utility>

#include "app/FrontEnd.h"
#include "app/LongOperation.h"
#include "app/RunControllerScope.h"
#include "app/SampleOnDisk.h"
#include "base/Paths.h"
#include "parts/FileChecksum.h"
#include "parts/PartOutput.h"
#include "parts/PartsText.h"
#include "parts/RunFollower.h"

namespace tarvex {

namespace {

namespace fs = std::filesystem;

// The paths of a record are as they were typed, from its directory on.
std::string pathOf(const RunRecord& record, const std::string& path) {
  return (fs::path(record.directory) / path).lexically_normal().string();
}

std::string sampleOf(const RunRecord& record) {
  return pathOf(record, record.sampleFile);
}

bool isModelOf(const RunRecord& record, const ModelChoice& model) {
  if (model.kind != kExternalExecutable || (model.spreadsheet != 0) == record.workbook.empty()) return false;
  if (model.spreadsheet != 0)
    return absolutePath(model.outputFile) == pathOf(record, record.workbook) &&
           (model.drivesCells() ? model.cells.text() : "") == record.cells;
  return model.executable == record.executable &&
         fs::path(model.outputFile).filename() == fs::path(record.outputFile).filename();
}

}  // namespace

std::string RunController::whyNotInParts() const {
  if (std::string reason = whyNot(Step::Run); !reason.empty()) return reason;
  const ModelChoice& model = project_.model.choice;
  if (model.kind == kInternalModel) return "Equations need no parts: they are computed on all cores as they are.";
  if (model.kind != kExternalExecutable)
    return model.spreadsheet != 0 ? "The workbook is only read: there is nothing to run in parts."
                                  : "Only an output file is read: there is no program to run in parts.";
  if (project_.prep.external == 1)
    return "An imported sample is run in parts from a sample file, which `tarvex-batch import` makes of it.";
  if (project_.prep.samples.rows() == 0) return "There is no sample yet: generate or load one.";
  return sampleStale_ ? "The settings changed after the sample was made: generate it first." : "";
}

Outcome RunController::provideSample(std::string& path) {
  if (busy_) return Outcome::Busy;
  const Scope scope(*this);
  if (const std::string reason = whyNotInParts(); !reason.empty()) return warn(reason);
  const BusyScope inProgress(*this);
  if (!provideSampleFile()) return Outcome::Refused;
  path = heldPath_;
  return Outcome::Done;
}

std::string RunController::samplePath() const {
  return heldPath_.empty() ? absolutePath(project_.prep.sampleFile) : heldPath_;
}

bool RunController::isAbout(const RunRecord& record) const {
  const std::string path = sampleOf(record);
  return whyNotOf(record).empty() && (path == heldPath_ || path == absolutePath(project_.prep.sampleFile));
}

bool RunController::recognise(const RunRecord& record) {
  if (isAbout(record)) return true;
  if (busy_ || !whyNotOf(record).empty()) return false;
  const BusyScope inProgress(*this);
  const std::string path = sampleOf(record);
  const LongOperation operation(frontEnd_, "Sample file", project_.prep.samples.rows());
  if (!fileHoldsSample(path, project_.prep, operation.progress())) return false;
  holdSampleIn(path);
  return true;
}

std::string RunController::whyNotOf(const RunRecord& record) const {
  const std::int32_t rows = project_.prep.samples.rows();
  if (rows == 0 || rows != record.rows()) return "The run in parts is one over another sample: " + sampleOf(record);
  if (isModelOf(record, project_.model.choice)) return {};
  return "The run in parts is one of another model: " +
         (record.workbook.empty() ? record.executable : pathOf(record, record.workbook));
}

Outcome RunController::takeParts(const RunFollower& run) {
  if (busy_) return Outcome::Busy;
  const Scope scope(*this);
  if (const std::string reason = whyNotOf(run.record()); !reason.empty()) return fail(reason);
  if (!run.states().isOver()) return fail("The run in parts isn't over: " + partsText(run.states()) + '.');
  if (!isSampleOf(run.record())) return Outcome::Refused;
  const auto before = std::exchange(runElsewhere, [this, &run](const ProjectConfiguration&, ModelResults& results) {
    return joinInto(run, results);
  });
  const Outcome taken = runModel(SampleUse::Existing);
  runElsewhere = before;
  if (const std::string missing = missingText(run.states(), run.directory().path());
      taken == Outcome::Done && !missing.empty())
    frontEnd_.message(MessageKind::Warning, "Warning", missing);
  if (const std::string text = workbookText(run.record(), run.directory(), run.states());
      taken == Outcome::Done && !text.empty())
    frontEnd_.message(MessageKind::Warning, "Warning", text);
  return taken;
}

// Whether the sample in hand is the one that the run was begun with; tells where it isn't.
bool RunController::isSampleOf(const RunRecord& record) {
  const BusyScope inProgress(*this);
  const std::string path = sampleOf(record);
  const LongOperation operation(frontEnd_, "Sample file", project_.prep.samples.rows());
  if (fileChecksum(path) == record.sampleChecksum && fileHoldsSample(path, project_.prep, operation.progress()))
    return true;
  return !operation.stopped() &&
         refuse("The sample isn't the one that the run was begun with: nothing was done.\n" + path);
}

bool RunController::joinInto(const RunFollower& run, ModelResults& results) {
  const auto told = [this](const std::string& title, const std::string& text) { tell(title, text); };
  const LongOperation operation(frontEnd_, "Reading model output", run.record().rows());
  std::size_t failed = 0;
  std::string message;
  if (joinParts(run.record().parts, run.outputs(), told, results, failed, message, operation.progress())) return true;
  return !operation.stopped() && refuse("Error reading model output file\n" + message);
}

}  // namespace tarvex
