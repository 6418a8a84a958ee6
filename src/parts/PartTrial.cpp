#include "parts/PartTrial.h"

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstring>

#include "base/Cores.h"
#include "base/ScratchDirectory.h"
#include "parts/JobScript.h"
#include "parts/LocalEngine.h"
#include "parts/PartAttempt.h"
#include "parts/PartMark.h"
#include "parts/PartOutput.h"
#include "parts/PartSample.h"
#include "parts/RunRecord.h"

namespace tarvex {

namespace {

constexpr double kLocalSeconds = 1.0;
constexpr double kClusterSeconds = 60.0;
constexpr std::int32_t kMostParts = 1000;  // the largest index of an array is 1000 where a site hasn't changed it
constexpr std::int32_t kClusterJobs = 10;  // where the user doesn't say how many may run at a time
constexpr std::chrono::milliseconds kTrialSlice{50};

bool carryOut(const RunRecord& record, const RunDirectory& run, const std::function<bool()>& goOn, PartMark& mark,
              std::string& message) {
  LocalEngine engine(run, 1);
  std::string id;
  if (engine.submit({0}, 1, id, message) != Engine::Submission::Sent) return false;
  std::vector<PartJob> gone;
  while (gone.empty() && goOn()) {
    engine.wait(kTrialSlice);
    if (!engine.findGone({{0, 1, id}}, gone)) return false;
  }
  if (gone.empty()) return false;
  std::string problem = "code " + std::to_string(mark.code);
  PartOutput output;
  if (readMark(run, mark) && mark.code == 0 &&
      output.check(attemptOutput(record, run, 0, 1), record.parts.front(), problem))
    return true;
  if (mark.code != 0) problem = "code " + std::to_string(mark.code);
  const std::string words = lastLineOf(run.attempt(0, 1) + "/log");
  message = "The model fails in the first run of the sample, which was tried to see how long it takes.\n" + problem +
            (words.empty() ? "" : ": " + words);
  return false;
}

}  // namespace

std::int32_t sensibleParts(const RunRecord& record, std::int32_t rows, double secondsOfRun) {
  const bool isLocal = record.settings.engine == EngineKind::Local;
  const auto cores = isLocal ? static_cast<std::int32_t>(Cores::count()) : kClusterJobs;
  const std::int32_t jobs = record.settings.jobs > 0 ? record.settings.jobs : cores;
  const double wanted = rows * secondsOfRun / (isLocal ? kLocalSeconds : kClusterSeconds);
  const double most = std::min({static_cast<double>(rows), static_cast<double>(kMostParts)});
  return static_cast<std::int32_t>(std::max(1.0, std::min(most, std::max<double>(jobs, std::floor(wanted)))));
}

bool findPartCount(const RunRecord& record, const FactorList& factors, std::int32_t rows,
                   const std::function<bool()>& goOn, std::int32_t& parts, std::string& message) {
  // What takes its time is the start of an application for each part.
  if (!record.workbook.empty()) {
    parts = sensibleParts(record, rows, 0.0);
    return true;
  }
  const ScratchDirectory scratch;
  if (scratch.path().empty()) {
    message = std::string("The model can't be tried.\nThe working directory: ") + std::strerror(errno);
    return false;
  }
  const RunDirectory run(scratch.path());
  RunRecord trial = record;
  trial.parts = {{0, 1}};
  if (rows > 1) trial.parts.push_back({1, rows - 1});
  PartSample sample;
  std::string script;
  if (!sample.open(record.sampleFile, trial.parts, factors, message) || !makeDirectories(run.marks(), message) ||
      !prepareAttempt(trial, run, sample, 0, 1, message) || !makeJobScript(trial, run, script, message) ||
      !writePlainFile(run.script(), script, message))
    return false;
  PartMark mark{0, 1, true};
  if (!carryOut(trial, run, goOn, mark, message)) return false;
  PartMark begun{0, 1};
  const double seconds = readMark(run, begun) ? mark.written - begun.written : 0.0;
  parts = sensibleParts(record, rows, seconds);
  return true;
}

}  // namespace tarvex
