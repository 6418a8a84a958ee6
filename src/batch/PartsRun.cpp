#include "batch/PartsRun.h"

#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <memory>
#include <utility>

#include "app/RunController.h"
#include "base/Paths.h"
#include "base/ScratchDirectory.h"
#include "batch/PartsDisplay.h"
#include "batch/PartsModel.h"
#include "batch/StopSignals.h"
#include "model/ExternalProcess.h"
#include "model/ModelChoice.h"
#include "parts/Coordinator.h"
#include "parts/FileChecksum.h"
#include "parts/PartAttempt.h"
#include "parts/PartProcesses.h"
#include "parts/PartSample.h"
#include "parts/PartTrial.h"
#include "parts/PartsText.h"
#include "parts/RunFollower.h"
#include "report/TextTable.h"

namespace tarvex {

namespace {

namespace fs = std::filesystem;

bool goesOn() {
  return !StopSignals::requested();
}

// The options over the settings that are there.
bool takeOptions(const PartsOptions& options, PartSettings& settings, std::string& message) {
  // The words were checked when they were read.
  if (options.engine && !parseEngine(*options.engine, settings.engine)) return false;
  if (options.onFailure && !parsePolicy(*options.onFailure, settings)) return false;
  if (options.jobs) settings.jobs = static_cast<std::int32_t>(*options.jobs);
  if (options.timeLimit) settings.timeLimit = static_cast<std::int32_t>(*options.timeLimit);
  if (options.memory) settings.memory = static_cast<std::int32_t>(*options.memory);
  if (!options.links.empty()) settings.links = options.links;
  if (!options.engineOptions.empty()) settings.engineOptions = options.engineOptions;
  if (options.prologue.empty()) return true;
  settings.prologue = contentOf(options.prologue);
  if (!settings.prologue.empty()) return true;
  message = options.prologue + ": there is no such file, or it is empty";
  return false;
}

// What the user has set for the cluster stands before what the command says.
void takeSite(const SiteSettings& site, PartSettings& settings) {
  if (settings.engine != EngineKind::Slurm) return;
  settings.engineOptions.insert(settings.engineOptions.begin(), site.options.begin(), site.options.end());
  settings.prologue = site.prologue + settings.prologue;
}

std::string defaultDirectory(const RunRecord& record, const SiteSettings& site) {
  if (record.settings.engine != EngineKind::Slurm || site.directory.empty()) return record.resultFile + ".run";
  return site.directory + '/' + fs::path(record.resultFile).filename().string() + ".run";
}

// A directory for a new run: none that holds anything.
bool makeRunDirectory(const std::string& path, std::string& message) {
  if (!makeDirectories(path, message)) return false;
  std::error_code error;
  for (fs::directory_iterator entry(path, error); !error && entry != fs::directory_iterator(); entry.increment(error))
    if (entry->path().filename() != "lock") {
      message = fs::exists(RunDirectory(path).record())
                    ? "There is a run in parts already: go on with it by `tarvex-batch resume`, or name another "
                      "directory by --directory.\n" +
                          path
                    : "The directory of a run in parts must be empty.\n" + path;
      return false;
    }
  return true;
}

// Everything that belongs to a run that goes on now.
struct PartsRun {
  RunRecord record;
  RunDirectory directory;
  SiteSettings site;
  std::unique_ptr<RunLock> lock;
};

// Goes through the parts and joins what they gave.
bool runParts(PartsRun& run, const ProjectConfiguration& project, PartsDisplay& display, const Console& console,
              std::unique_ptr<Coordinator>& coordinator, ModelResults& results) {
  PartSample sample;
  std::string message;
  if (!sample.open(run.record.sampleFile, run.record.parts, project.prep.factors, message, console.watched()))
    return console.fail(message) == kSucceeded;
  const RunWatch watch = {goesOn, [&display](const PartStates& states) { display.show(states); },
                          [&display](const std::string& text) { display.tell(text); }};
  coordinator = std::make_unique<Coordinator>(run.record, run.directory, sample, run.site, watch);
  const Coordinator::Ending ending = coordinator->run(message);
  // Beside the working files, what killed processes left goes when something is made there.
  const ScratchDirectory cleaning;
  if (ending == Coordinator::Ending::Stopped)
    display.tell("Stopped: " + partsText(coordinator->states()) + ". `tarvex-batch resume " + run.directory.path() +
                 "` goes on.");
  if (ending == Coordinator::Ending::Failed)
    display.tell(message + '\n' + partsText(coordinator->states()) + ". `tarvex-batch resume " + run.directory.path() +
                 "` repeats what is missing.");
  if (ending != Coordinator::Ending::Done) return false;
  std::size_t failed = 0;
  const auto warn = [&console](const std::string& title, const std::string& text) {
    console.frontEnd.message(title == "Warning" ? MessageKind::Warning : MessageKind::Error, title, text);
  };
  if (joinParts(run.record.parts, coordinator->outputs(), warn, results, failed, message, console.watched()))
    return true;
  if (failed < run.record.parts.size()) coordinator->spoil(failed, message);
  return console.fail("Error reading model output file\n" + message) == kSucceeded;
}

// From the sample and the model to the post-processor file.
int carryOut(PartsRun& run, RunController& controller, const Console& console) {
  PartsDisplay display(console);
  std::unique_ptr<Coordinator> coordinator;
  controller.runElsewhere = [&](const ProjectConfiguration& project, ModelResults& results) {
    return runParts(run, project, display, console, coordinator, results);
  };
  if (controller.runModel(RunController::SampleUse::Existing) != Outcome::Done ||
      controller.saveResultsFile(run.record.resultFile) != Outcome::Done)
    return kFailed;
  coordinator->finish();
  if (const std::string missing = missingText(coordinator->states(), run.directory.path()); !missing.empty())
    console.warn(missing);
  if (const std::string text = workbookText(run.record, run.directory, coordinator->states()); !text.empty())
    console.warn(text);
  const ModelResults& results = controller.project().model.results;
  console.out << counted(results.runCount(), "run") << ", " << counted(results.outputCount(), "output") << ": "
              << run.record.resultFile << '\n';
  std::error_code error;
  if (!run.record.keeps && coordinator->states().count(PartState::Missing) == 0) {
    run.lock.reset();
    fs::remove_all(run.directory.path(), error);
    if (error) console.warn("The directory of the run couldn't be removed.\n" + run.directory.path());
  }
  return kSucceeded;
}

// The run in a process of its own, in a session of its own, which no terminal ends.
int detach(PartsRun& run, const std::vector<std::int32_t>& only, const Console& console) {
  run.lock.reset();
  const std::string log = run.directory.path() + "/coordinator.log";
  std::error_code error;
  const std::string program = fs::read_symlink("/proc/self/exe", error).string();
  std::vector<std::string> words = {
      "-c", "program=$1 log=$2; shift 2; setsid \"$program\" resume \"$@\" > \"$log\" 2>&1 &",
      "sh", program,
      log,  run.directory.path()};
  for (const std::int32_t part : only) words.push_back("--only=" + std::to_string(part));
  ExternalProcess process;
  // A shell starts it behind its back, so that it is nobody's child when this program ends.
  const bool started = !error && process.start({"/bin/sh", words, run.record.directory, {}, -1});
  while (started && process.poll() == ExternalProcess::State::Running) process.wait(std::chrono::milliseconds(20));
  if (!started) return console.fail("The run can't go on in the background.\n" + program);
  console.out << run.directory.path() << " goes on in the background: `tarvex-batch status` shows how far it is, "
              << "`tarvex-batch cancel` ends it, " << log << " has what it says.\n";
  return kSucceeded;
}

// The wish that these parts are done once more, for whoever drives the run now or next.
bool wishFor(const std::vector<std::int32_t>& parts, const RunDirectory& directory, std::string& message) {
  RunFollower run(directory.path());
  if (!parts.empty() && !run.look(message)) return false;
  for (const std::int32_t part : parts) {
    const bool isPart = static_cast<std::size_t>(part) < run.states().size();
    const PartState::Stage stage = isPart ? run.states()[static_cast<std::size_t>(part)].stage : PartState::Open;
    if (stage == PartState::Failed || stage == PartState::Missing) continue;
    message = isPart ? "Part " + std::to_string(part) + " hasn't failed: it isn't repeated."
                     : "The run has no part " + std::to_string(part) + ".";
    return false;
  }
  return std::ranges::all_of(
      parts, [&](std::int32_t part) { return writePlainFile(directory.againMark(part), "again\n", message); });
}

// Those that nobody took up: now all parts that failed are repeated.
void dropWishes(const RunDirectory& directory) {
  std::vector<PartMark> marks;
  RunWishes wishes;
  std::string ignored;  // a directory that can't be read is told of by who drives the run
  if (!listMarks(directory, marks, wishes, ignored)) return;
  std::error_code error;
  for (const std::int32_t part : wishes.again) fs::remove(directory.againMark(part), error);
}

// What the first start settles for all later ones.
bool describe(const RunOptions& options, const ModelChoice& model, RunRecord& record, const Console& console) {
  record.id = newRunId();
  record.directory = absolutePath(".");
  record.sampleFile = options.sampleFile;
  record.sampleChecksum = fileChecksum(existingPath(options.sampleFile));
  record.resultFile = options.output;
  record.keeps = !options.parts.directory.empty();
  std::string message;
  return (describeModel(options, model, record, message) && takeOptions(options.parts, record.settings, message)) ||
         console.fail(message) == kSucceeded;
}

bool cut(const RunOptions& options, RunController& controller, RunRecord& record, std::string& message) {
  const PrepConfiguration& prep = controller.project().prep;
  const std::int32_t rows = prep.samples.rows();
  std::int32_t count = 1;
  if (options.parts.parts)
    count = static_cast<std::int32_t>(*options.parts.parts);
  else if (record.parts = splitRows(rows, rows); !(message = whyNotInParts(record, prep.methodId())).empty())
    return false;
  else if (!findPartCount(record, prep.factors, rows, goesOn, count, message))
    return false;
  record.parts = splitRows(rows, count);
  message = whyNotInParts(record, prep.methodId());
  return message.empty();
}

}  // namespace

int runInParts(const RunOptions& options, ModelChoice model, const Console& console) {
  RunController controller(console.frontEnd);
  controller.modelDirectory = absolutePath(".");
  std::string message;
  PartsRun run{{}, RunDirectory(""), {}, std::make_unique<RunLock>()};
  if (!run.site.load(message)) return console.fail(message);
  if (!describe(options, model, run.record, console)) return kFailed;
  takeSite(run.site, run.record.settings);
  if (controller.loadSampleFile(options.sampleFile) != Outcome::Done ||
      controller.acceptModel(std::move(model)) != Outcome::Done)
    return kFailed;
  if (controller.project().prep.samples.rows() == 0) return console.fail("  No samples to generate");
  const std::string path =
      options.parts.directory.empty() ? defaultDirectory(run.record, run.site) : options.parts.directory;
  if (!cut(options, controller, run.record, message)) return console.fail(message);
  if (!makeRunDirectory(path, message)) return console.fail(message);
  run.directory = RunDirectory(fs::canonical(path).string());
  if (!run.lock->take(run.directory.lock(), message) || !prepareModel(run.record, run.directory, console, message) ||
      !run.record.save(run.directory.record(), message))
    return console.fail(message);
  return options.parts.detach ? detach(run, {}, console) : carryOut(run, controller, console);
}

int runResume(const ResumeOptions& options, const Console& console) {
  std::string message;
  PartsRun run{{}, RunDirectory(absolutePath(options.directory)), {}, std::make_unique<RunLock>()};
  if (!run.record.load(run.directory.record(), message)) return console.fail(message);
  if (!wishFor(options.only, run.directory, message)) return console.fail(message);
  if (!run.lock->take(run.directory.lock(), message)) {
    if (options.only.empty() || lockHolder(run.directory.lock()).empty()) return console.fail(message);
    console.out << "Who drives the run was asked to repeat "
                << counted(static_cast<std::int64_t>(options.only.size()), "part") << ": "
                << lockHolder(run.directory.lock()) << '\n';
    return kSucceeded;
  }
  if (options.only.empty()) dropWishes(run.directory);
  if (!run.site.load(message)) return console.fail(message);
  if (!takeOptions(options.parts, run.record.settings, message)) return console.fail(message);
  std::error_code error;
  fs::current_path(run.record.directory, error);
  if (error) return console.fail(run.record.directory + ": " + error.message());
  if (fileChecksum(existingPath(run.record.sampleFile)) != run.record.sampleChecksum)
    return console.fail("The sample isn't the one that the run was begun with: nothing was done.\n" +
                        absolutePath(run.record.sampleFile));
  RunController controller(console.frontEnd);
  controller.modelDirectory = absolutePath(".");
  ModelChoice model;
  if (!chooseModelAgain(run.record, model, console, message)) return console.fail(message);
  if (controller.loadSampleFile(run.record.sampleFile) != Outcome::Done ||
      controller.acceptModel(std::move(model)) != Outcome::Done)
    return kFailed;
  if (message = whyNotInParts(run.record, controller.project().prep.methodId()); !message.empty())
    return console.fail(message);
  if (!prepareModel(run.record, run.directory, console, message) || !run.record.save(run.directory.record(), message))
    return console.fail(message);
  return options.parts.detach ? detach(run, options.only, console) : carryOut(run, controller, console);
}

}  // namespace tarvex
