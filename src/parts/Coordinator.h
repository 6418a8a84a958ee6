#pragma once

#include <chrono>
#include <functional>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <tuple>
#include <vector>

#include "parts/Engine.h"
#include "parts/Ledger.h"
#include "parts/PartMark.h"
#include "parts/PartOutput.h"
#include "parts/PartStates.h"
#include "parts/RunDirectory.h"
#include "parts/RunLock.h"
#include "parts/RunRecord.h"
#include "parts/SiteSettings.h"

namespace tarvex {

class PartSample;

// Through this the run of the parts is watched and stopped.
struct RunWatch {
  std::function<bool()> goOn;                           // false: stop
  std::function<void(const PartStates& states)> shown;  // called often
  std::function<void(const std::string& text)> told;    // a failure, or what is to be known
};

// Drives a run in parts to its end: hands open parts to the engine, takes what the marks say of them, and keeps the
// ledger. What it does not know from ledger and marks it doesn't need: it can be killed at any moment, and the next one
// goes on.
class Coordinator {
 public:
  enum class Ending { Done, Failed, Stopped };

  // Requires: a lock on the run, and as the current directory the record's.
  Coordinator(RunRecord record, RunDirectory run, const PartSample& sample, SiteSettings site, RunWatch watch);
  ~Coordinator();

  // Goes on until every part is done or missing (Done), no more can be done (Failed, with the message), or the user
  // stops (Stopped). What is done stays in any case.
  Ending run(std::string& message);

  const PartStates& states() const { return states_; }
  // The output file of each part; empty: missing. Requires: run() gave Done.
  std::vector<std::string> outputs() const;
  // Ends what of the run may still go on although nobody drives it. False, with the message.
  [[nodiscard]] bool cancel(std::string& message);
  // The result is where it belongs.
  void finish();
  // The output of a part that was done can't be read any more: the next start of the run repeats it.
  void spoil(std::size_t part, const std::string& reason);

 private:
  using Clock = std::chrono::steady_clock;
  using MarkKey = std::tuple<std::int32_t, std::int32_t, bool>;

  bool open(std::vector<LedgerEntry>& past);
  bool begin();
  bool writeScript();
  bool takeOver(EngineKind before);
  bool findSubmissions();
  bool step();
  bool note(const std::vector<LedgerEntry>& entries, Ledger::Keep keep = Ledger::Keep::Now);
  bool note(const char* event, std::int32_t part, std::int32_t attempt, const std::string& text = {});
  bool fail(const std::string& message);  // the run can't go on; always false

  bool send();
  bool sendParts(const std::vector<std::int32_t>& parts);
  bool lookAtMarks();
  bool lookAtJobs();
  std::vector<std::int32_t> knownOf(std::vector<std::int32_t> parts) const;
  bool dropWishes(const std::vector<std::int32_t>& again);
  bool takeMark(PartMark mark);
  bool takeEnd(const PartMark& mark);
  bool takeResult(const PartMark& mark, std::string& problem);
  bool takeFailure(const PartMark& mark, const std::string& text);
  bool takeLoss(std::int32_t part, const std::string& text);
  std::vector<PartJob> jobsInHand() const;
  std::string whyEnded(const PartMark& mark) const;
  std::string lastWords(std::int32_t part, std::int32_t attempt) const;
  const PartState& stateOf(std::int32_t part) const { return states_[static_cast<std::size_t>(part)]; }
  const Part& partOf(std::int32_t part) const { return states_.parts()[static_cast<std::size_t>(part)]; }
  bool stopJobs(const char* ending);  // false: some may go on, which was told

  RunRecord record_;
  RunDirectory run_;
  const PartSample& sample_;
  SiteSettings site_;
  RunWatch watch_;
  std::unique_ptr<Engine> engine_;
  Ledger ledger_;
  PartStates states_;
  PartOutput outputs_;
  std::set<std::int32_t> inHand_;
  std::set<MarkKey> seen_;
  std::map<std::int32_t, Clock::time_point> goneSince_;
  std::set<std::int32_t> failedAlike_;  // parts that failed in the way of failedText_ before any was done
  std::string failedText_;
  std::size_t nextOpen_ = 0;  // no part before it is open
  Clock::time_point nextList_{};
  Clock::time_point nextQuery_{};
  bool stopMarked_ = false;
  bool engineSilent_ = false;
  std::string message_;
};

// Makes the engine of a run.
std::unique_ptr<Engine> makeEngine(EngineKind kind, const RunRecord& record, const RunDirectory& run,
                                   const SiteSettings& site, std::function<bool()> goOn);

}  // namespace tarvex
