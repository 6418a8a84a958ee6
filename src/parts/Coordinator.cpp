#include "parts/Coordinator.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>

#include "base/SystemCalls.h"
#include "base/TextWriter.h"
#include "parts/JobScript.h"
#include "parts/LocalEngine.h"
#include "parts/PartAttempt.h"
#include "parts/PartProcesses.h"
#include "parts/PartSample.h"
#include "parts/SlurmEngine.h"

namespace tarvex {

namespace {

constexpr std::chrono::seconds kListPace{1};  // between two listings of the marks

// The one that had the parts in hand last.
EngineKind lastEngine(const std::vector<LedgerEntry>& past, EngineKind engine) {
  for (const LedgerEntry& entry : past)
    if (entry.event == "started") static_cast<void>(parseEngine(entry.text, engine));  // an unknown one changes nothing
  return engine;
}

}  // namespace

std::unique_ptr<Engine> makeEngine(EngineKind kind, const RunRecord& record, const RunDirectory& run,
                                   const SiteSettings& site, std::function<bool()> goOn) {
  if (kind == EngineKind::Slurm) return std::make_unique<SlurmEngine>(record, run, site, std::move(goOn));
  return std::make_unique<LocalEngine>(run, record.settings.jobs);
}

Coordinator::Coordinator(RunRecord record, RunDirectory run, const PartSample& sample, SiteSettings site,
                         RunWatch watch)
    : record_(std::move(record)),
      run_(std::move(run)),
      sample_(sample),
      site_(std::move(site)),
      watch_(std::move(watch)),
      engine_(makeEngine(record_.settings.engine, record_, run_, site_, watch_.goOn)),
      states_(record_.parts) {}

Coordinator::~Coordinator() = default;

Coordinator::Ending Coordinator::run(std::string& message) {
  bool goesOn = begin();
  while (goesOn && !states_.isOver() && watch_.goOn() && !stopMarked_) {
    goesOn = step();
    // What is left has failed for good.
    if (goesOn && inHand_.empty() && states_.count(PartState::Open) == 0) break;
    watch_.shown(states_);
    if (goesOn && !states_.isOver()) engine_->wait(engine_->pace());
  }
  if (goesOn && states_.isOver()) return Ending::Done;
  const bool stopped = goesOn && (!watch_.goOn() || stopMarked_);
  if (message_.empty() && !stopped)
    message_ =
        std::to_string(states_.count(PartState::Failed)) + " of " + std::to_string(states_.size()) + " parts failed.";
  stopJobs(stopped ? "stopped" : "failed");
  message = message_;
  return stopped ? Ending::Stopped : Ending::Failed;
}

bool Coordinator::step() {
  return lookAtMarks() && lookAtJobs() && send();
}

bool Coordinator::open(std::vector<LedgerEntry>& past) {
  if (!makeDirectories(run_.marks(), message_) || !makeDirectories(run_.parts(), message_) ||
      !ledger_.open(run_.ledger(), past, message_))
    return false;
  states_.apply(past);
  for (std::int32_t part = 0; static_cast<std::size_t>(part) < states_.size(); ++part)
    if (stateOf(part).stage == PartState::Sent || stateOf(part).stage == PartState::Begun) inHand_.insert(part);
  return true;
}

bool Coordinator::begin() {
  std::vector<LedgerEntry> past;
  if (!open(past) || !writeScript()) return false;
  SystemCalls::current().unlink(run_.stopMark().c_str());  // of an earlier stop, if any
  LedgerEntry started{"started"};
  started.host = hostName();
  started.job = std::to_string(::getpid());
  started.text = engineWord(record_.settings.engine);
  std::vector<LedgerEntry> first = {std::move(started)};
  std::vector<PartMark> marks;
  RunWishes wishes;
  if (!listMarks(run_, marks, wishes, message_)) return false;
  if (!past.empty()) first.push_back({"resumed", knownOf(wishes.again)});
  return note(first) && dropWishes(wishes.again) && takeOver(lastEngine(past, record_.settings.engine));
}

bool Coordinator::cancel(std::string& message) {
  std::vector<LedgerEntry> past;
  const bool opened = open(past);
  if (opened) engine_ = makeEngine(lastEngine(past, record_.settings.engine), record_, run_, site_, watch_.goOn);
  const bool done = opened && findSubmissions() && stopJobs("stopped");
  message = message_;
  return done;
}

// Replaces the script as a whole: a shell that carries out the old one goes on reading that.
bool Coordinator::writeScript() {
  std::string script;
  if (!makeJobScript(record_, run_, script, message_)) return fail("The model can't be started.\n" + message_);
  TextWriter out(run_.script());
  out << script;
  return out.commit() || fail(out.problem());
}

// What became of the parts since the last coordinator went: first the marks, also of those that the ledger has lost,
// then whose jobs are still there.
bool Coordinator::takeOver(EngineKind before) {
  std::vector<PartMark> marks;
  RunWishes ignored;
  if (!listMarks(run_, marks, ignored, message_)) return false;
  for (PartMark& mark : marks) {
    if (mark.part < 0 || static_cast<std::size_t>(mark.part) >= states_.size()) continue;
    if (!mark.ended || stateOf(mark.part).stage == PartState::Done || !readMark(run_, mark)) continue;
    seen_.insert({mark.part, mark.attempt, true});
    std::string problem;
    const bool current = inHand_.contains(mark.part) && stateOf(mark.part).attempt == mark.attempt;
    const bool good = mark.code == 0 && takeResult(mark, problem);
    if (!good && current && !note("again", mark.part, mark.attempt)) return false;
    if (good && !message_.empty()) return false;
    // Numbers of attempts that the ledger doesn't know are taken all the same.
    if (!good && !current && mark.attempt > stateOf(mark.part).lastAttempt && !note("again", mark.part, mark.attempt))
      return false;
  }
  if (before != record_.settings.engine && !inHand_.empty()) {
    std::string problem;
    if (!makeEngine(before, record_, run_, site_, watch_.goOn)->stop(jobsInHand(), problem)) return fail(problem);
    LedgerEntry stopped{"stopped"};
    stopped.parts.assign(inHand_.begin(), inHand_.end());
    if (!note({std::move(stopped)})) return false;
  }
  if (!findSubmissions()) return false;
  engine_->adopt(jobsInHand());
  return true;
}

// A submission may have come about although its number was never written down.
bool Coordinator::findSubmissions() {
  std::map<std::int32_t, std::vector<std::int32_t>> unsure;
  if (engine_->countsSubmissions())
    for (const std::int32_t part : inHand_)
      if (stateOf(part).job.empty()) unsure[stateOf(part).attempt].push_back(part);
  for (const auto& [attempt, parts] : unsure) {
    LedgerEntry sent{"sent", parts, attempt};
    while (watch_.goOn() && !engine_->find(attempt, sent.job)) {
      if (!engineSilent_) watch_.told("The cluster doesn't answer; the run waits for it.");
      engineSilent_ = true;
      engine_->wait(engine_->queryPace());
    }
    if (!watch_.goOn()) return true;
    if (!sent.job.empty() && !note({std::move(sent)})) return false;
  }
  engineSilent_ = false;
  return true;
}

bool Coordinator::note(const std::vector<LedgerEntry>& entries, Ledger::Keep keep) {
  if (!ledger_.append(entries, message_, keep)) return false;
  for (const LedgerEntry& entry : entries) {
    states_.apply(entry);
    for (const std::int32_t part : entry.parts) {
      const PartState::Stage stage = stateOf(part).stage;
      const bool isOut = stage == PartState::Sent || stage == PartState::Begun;
      if (isOut) inHand_.insert(part);
      if (!isOut) inHand_.erase(part), goneSince_.erase(part);
      if (stage == PartState::Open) nextOpen_ = std::min(nextOpen_, static_cast<std::size_t>(part));
    }
    if (entry.event == "resumed") nextOpen_ = 0;
  }
  return true;
}

bool Coordinator::note(const char* event, std::int32_t part, std::int32_t attempt, const std::string& text) {
  LedgerEntry entry{event, {part}, attempt};
  entry.text = text;
  return note({std::move(entry)});
}

bool Coordinator::fail(const std::string& message) {
  message_ = message;
  return false;
}

bool Coordinator::send() {
  const std::size_t room = engine_->room();
  std::vector<std::int32_t> parts;
  for (; nextOpen_ < states_.size() && parts.size() < room; ++nextOpen_)
    if (states_[nextOpen_].stage == PartState::Open) parts.push_back(static_cast<std::int32_t>(nextOpen_));
  if (engine_->countsSubmissions()) return parts.empty() || sendParts(parts);
  return std::ranges::all_of(parts, [this](std::int32_t part) { return sendParts({part}); });
}

bool Coordinator::sendParts(const std::vector<std::int32_t>& parts) {
  // Else it would be made anew, without what belongs to it.
  std::error_code error;
  if (!std::filesystem::is_directory(run_.marks(), error))
    return fail(run_.path() + ": the directory of the run is gone");
  const std::int32_t attempt =
      1 + (engine_->countsSubmissions() ? states_.lastAttempt() : stateOf(parts.front()).lastAttempt);
  for (const std::int32_t part : parts)
    if (!prepareAttempt(record_, run_, sample_, part, attempt, message_)) return false;
  LedgerEntry sent{engine_->countsSubmissions() ? "sending" : "sent", parts, attempt};
  // A crash of this machine ends its own processes with it: that one of them was begun may be forgotten.
  if (!note({sent}, engine_->countsSubmissions() ? Ledger::Keep::Now : Ledger::Keep::Lazily)) return false;
  const Engine::Submission outcome = engine_->submit(parts, attempt, sent.job, message_);
  if (outcome == Engine::Submission::Refused) {
    const std::string reason = message_;
    // Where this can't be written down the next start finds out that there are no jobs.
    static_cast<void>(note({{"stopped", parts, attempt}}));
    return fail(reason);
  }
  if (outcome == Engine::Submission::Unknown) return false;
  sent.event = "sent";
  return !engine_->countsSubmissions() || note({std::move(sent)});
}

bool Coordinator::lookAtMarks() {
  if (Clock::now() < nextList_) return true;
  nextList_ = Clock::now() + kListPace;
  std::vector<PartMark> marks;
  RunWishes wishes;
  if (!listMarks(run_, marks, wishes, message_)) return false;
  stopMarked_ = wishes.stop;
  if (const std::vector<std::int32_t> again = knownOf(wishes.again); !again.empty() && !note({{"resumed", again}}))
    return false;
  if (!dropWishes(wishes.again)) return false;
  return std::ranges::all_of(marks, [this](PartMark& mark) { return takeMark(std::move(mark)); });
}

// Those of the parts that are parts of this run.
std::vector<std::int32_t> Coordinator::knownOf(std::vector<std::int32_t> parts) const {
  std::erase_if(parts,
                [this](std::int32_t part) { return part < 0 || static_cast<std::size_t>(part) >= states_.size(); });
  return parts;
}

// Wishes are fulfilled once.
bool Coordinator::dropWishes(const std::vector<std::int32_t>& again) {
  return std::ranges::all_of(again, [this](std::int32_t part) {
    const std::string path = run_.againMark(part);
    return SystemCalls::current().unlink(path.c_str()) == 0 || errno == ENOENT ||
           fail(path + ": " + std::strerror(errno));
  });
}

bool Coordinator::takeMark(PartMark mark) {
  const MarkKey key{mark.part, mark.attempt, mark.ended};
  if (mark.part < 0 || static_cast<std::size_t>(mark.part) >= states_.size()) return true;
  if (seen_.contains(key) || !readMark(run_, mark)) return true;
  seen_.insert(key);
  if (mark.ended) return takeEnd(mark);
  const PartState& state = stateOf(mark.part);
  if (state.stage != PartState::Sent || state.attempt != mark.attempt || !engine_->countsSubmissions()) return true;
  LedgerEntry begun{"begun", {mark.part}, mark.attempt};
  begun.host = mark.host;
  begun.job = state.job;
  return note({std::move(begun)});
}

bool Coordinator::lookAtJobs() {
  if (inHand_.empty() || Clock::now() < nextQuery_) return true;
  nextQuery_ = Clock::now() + engine_->queryPace();
  std::vector<PartJob> gone;
  const bool known = engine_->findGone(jobsInHand(), gone);
  if (!known && !engineSilent_ && watch_.goOn()) watch_.told("The cluster doesn't answer; the run waits for it.");
  engineSilent_ = !known;
  if (!known) return true;
  std::map<std::int32_t, Clock::time_point> since;
  for (const PartJob& job : gone) {
    // On this machine a mark is there as soon as its job is gone.
    if (engine_->grace().count() == 0 && !takeMark({job.part, job.attempt, true})) return false;
    if (!inHand_.contains(job.part) || stateOf(job.part).attempt != job.attempt) continue;
    const auto found = goneSince_.find(job.part);
    const Clock::time_point start = found == goneSince_.end() ? Clock::now() : found->second;
    if (Clock::now() - start < engine_->grace())
      since[job.part] = start;
    else if (!takeLoss(job.part, "its job is gone without a word"))
      return false;
  }
  goneSince_ = std::move(since);
  return true;
}

std::vector<PartJob> Coordinator::jobsInHand() const {
  std::vector<PartJob> jobs;
  for (const std::int32_t part : inHand_) jobs.push_back({part, stateOf(part).attempt, stateOf(part).job});
  return jobs;
}

std::vector<std::string> Coordinator::outputs() const {
  std::vector<std::string> paths;
  for (std::int32_t part = 0; static_cast<std::size_t>(part) < states_.size(); ++part)
    paths.push_back(stateOf(part).stage == PartState::Done ? attemptOutput(record_, run_, part, stateOf(part).attempt)
                                                           : "");
  return paths;
}

}  // namespace tarvex
