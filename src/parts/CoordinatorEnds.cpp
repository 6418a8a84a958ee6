// How parts and runs end.

#include <algorithm>

#include "parts/Coordinator.h"
#include "parts/PartAttempt.h"

namespace tarvex {

namespace {

constexpr std::int32_t kMostLosses = 3;
constexpr std::size_t kAlike = 5;  // parts that fail in one way before any is done: so will the others
// Exit codes as a shell gives them.
constexpr std::int32_t kNoDirectory = 125;
constexpr std::int32_t kNotExecutable = 126;
constexpr std::int32_t kNotFound = 127;
constexpr std::int32_t kKilled = 137;
constexpr std::int32_t kTerminated = 143;

}  // namespace

bool Coordinator::takeEnd(const PartMark& mark) {
  const PartState& state = stateOf(mark.part);
  if (state.stage == PartState::Done) return true;
  const bool current = inHand_.contains(mark.part) && state.attempt == mark.attempt;
  std::string problem;
  if (mark.code == 0) {
    if (takeResult(mark, problem)) return message_.empty();
    return !current || takeFailure(mark, problem);
  }
  if (!current) return true;  // a late end of an attempt that was given up
  if (mark.code == kTerminated) return takeLoss(mark.part, "it was stopped by something else");
  return takeFailure(mark, whyEnded(mark));
}

// An attempt that ended well has its output. False, with the problem, when it hasn't; a ledger that can't be written
// leaves message_.
bool Coordinator::takeResult(const PartMark& mark, std::string& problem) {
  if (!outputs_.check(attemptOutput(record_, run_, mark.part, mark.attempt), partOf(mark.part), problem)) return false;
  LedgerEntry done{"done", {mark.part}, mark.attempt};
  PartMark begun{mark.part, mark.attempt};
  if (readMark(run_, begun)) done.seconds = mark.written - begun.written;
  done.host = mark.host;
  if (note({std::move(done)})) failedAlike_.clear();
  return true;
}

bool Coordinator::takeFailure(const PartMark& mark, const std::string& text) {
  LedgerEntry failed{"failed", {mark.part}, mark.attempt};
  failed.host = mark.host;
  failed.code = mark.code;
  failed.text = text;
  const std::string words = lastWords(mark.part, mark.attempt);
  if (!words.empty()) failed.text += ": " + words;
  const std::string told =
      partText(static_cast<std::size_t>(mark.part), partOf(mark.part)) + " failed on " + mark.host + ": " + failed.text;
  if (!note({std::move(failed)})) return false;
  watch_.told(told);
  if (record_.settings.policy == FailurePolicy::Stop)
    return fail("The run stops because a part failed; what is done is kept in " + run_.path() + ".");
  if (states_.count(PartState::Done) == 0) {
    if (text != failedText_) failedAlike_.clear();
    failedText_ = text;
    failedAlike_.insert(mark.part);
    if (failedAlike_.size() >= std::min(kAlike, states_.size()) && states_.size() > 1)
      return fail("The run stops because the first " + std::to_string(failedAlike_.size()) +
                  " parts all failed alike.");
  }
  const bool again = stateOf(mark.part).failures <= record_.settings.repeats;
  if (again) return note("again", mark.part, mark.attempt);
  return record_.settings.policy != FailurePolicy::Missing || note("missing", mark.part, mark.attempt);
}

bool Coordinator::takeLoss(std::int32_t part, const std::string& text) {
  const PartState& state = stateOf(part);
  PartMark mark{part, state.attempt};
  mark.host = state.host.empty() ? "an unknown host" : state.host;
  if (state.losses >= kMostLosses)
    return takeFailure(mark, "lost " + std::to_string(kMostLosses + 1) + " times, " + text);
  watch_.told(partText(static_cast<std::size_t>(part), partOf(part)) + " was lost: " + text + "; it is done again");
  return note("lost", part, state.attempt, text);
}

std::string Coordinator::whyEnded(const PartMark& mark) const {
  if (mark.reason == "limit") return "it took more than " + std::to_string(record_.settings.timeLimit) + " s";
  std::string code = "code " + std::to_string(mark.code);
  switch (mark.code) {
    case kNoDirectory:
      return code + ", the directory isn't there";
    case kNotExecutable:
      return code + ", the model can't be executed";
    case kNotFound:
      return code + ", a program wasn't found";
    case kKilled:
      return code + ", killed, often because memory was short";
    default:
      return code;
  }
}

// The last line that the model wrote, or else the engine.
std::string Coordinator::lastWords(std::int32_t part, std::int32_t attempt) const {
  const std::string directory = run_.attempt(part, attempt);
  const std::string line = lastLineOf(directory + "/log");
  return line.empty() ? lastLineOf(directory + "/scheduler.log") : line;
}

bool Coordinator::stopJobs(const char* ending) {
  std::string problem;
  const std::vector<PartJob> jobs = jobsInHand();
  // Waiting tasks end by themselves when they see it.
  static_cast<void>(jobs.empty() || writePlainFile(run_.stopMark(), "stop\n", problem));
  std::string message;
  const bool stopped = jobs.empty() || engine_->stop(jobs, message);
  if (!stopped) watch_.told(message + "\nUntil `tarvex-batch cancel` succeeds they may go on.");
  // What came to its end just now counts.
  std::vector<PartMark> marks;
  RunWishes ignored;
  if (!jobs.empty() && listMarks(run_, marks, ignored, problem))
    for (PartMark& mark : marks)
      if (mark.ended && inHand_.contains(mark.part) && readMark(run_, mark) && mark.code == 0 &&
          takeResult(mark, problem))
        seen_.insert({mark.part, mark.attempt, true});
  std::vector<LedgerEntry> last;
  // A submission of which nothing is known stays one.
  LedgerEntry ended{"stopped"};
  for (const std::int32_t part : inHand_)
    if (stopped && (!engine_->countsSubmissions() || !stateOf(part).job.empty())) ended.parts.push_back(part);
  if (!ended.parts.empty()) last.push_back(std::move(ended));
  last.push_back({"ended"});
  last.back().text = ending;
  // Without it the next start finds out the same from the marks.
  if (!ledger_.append(last, problem) && message_.empty()) message_ = problem;
  states_.apply(last);
  return stopped;
}

void Coordinator::finish() {
  LedgerEntry ended{"ended"};
  ended.text = "done";
  std::string ignored;
  static_cast<void>(ledger_.append({std::move(ended)}, ignored));  // the result itself says it
}

void Coordinator::spoil(std::size_t part, const std::string& reason) {
  LedgerEntry spoilt{"spoilt", {static_cast<std::int32_t>(part)}};
  spoilt.text = reason;
  LedgerEntry ended{"ended"};
  ended.text = "failed";
  std::string problem;
  if (!ledger_.append({std::move(spoilt), std::move(ended)}, problem)) watch_.told(problem);
}

}  // namespace tarvex
