#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <thread>

#include "base/Paths.h"
#include "batch/Commands.h"
#include "batch/PartsDisplay.h"
#include "parts/Coordinator.h"
#include "parts/PartSample.h"

namespace tarvex {

namespace {

constexpr std::size_t kFailuresShown = 20;
constexpr std::chrono::milliseconds kCancelSlice{50};
constexpr std::chrono::seconds kCancelWait{30};

// Rate and remaining time since the run was taken up last.
std::string paceOf(const std::vector<LedgerEntry>& entries, const PartStates& states) {
  double start = 0.0;
  std::int32_t rows = 0;
  for (const LedgerEntry& entry : entries) {
    if (entry.event == "started") start = entry.time, rows = 0;
    if (entry.event == "done")
      for (const std::int32_t part : entry.parts)
        if (static_cast<std::size_t>(part) < states.size()) rows += states.parts()[static_cast<std::size_t>(part)].rows;
  }
  const std::chrono::duration<double> now = std::chrono::system_clock::now().time_since_epoch();
  return paceText(states, rows, now.count() - start);
}

void printFailures(const PartStates& states, std::ostream& out) {
  std::size_t shown = 0;
  for (std::size_t part = 0; part < states.size(); ++part) {
    const PartState& state = states[part];
    if (state.stage != PartState::Failed && state.stage != PartState::Missing) continue;
    if (shown++ == kFailuresShown) {
      out << "...\n";
      return;
    }
    out << partText(part, states.parts()[part]) << " failed on " << state.host << ": " << state.text << '\n';
  }
}

}  // namespace

int runStatus(const StatusOptions& options, const Console& console) {
  const RunDirectory run(absolutePath(options.directory));
  RunRecord record;
  std::string message;
  if (!record.load(run.record(), message)) return console.fail(message);
  const std::vector<LedgerEntry> entries = readLedger(run.ledger());
  PartStates states(record.parts);
  states.apply(entries);
  const std::string holder = lockHolder(run.lock());
  console.out << partsText(states);
  if (const std::string pace = paceOf(entries, states); !holder.empty() && !pace.empty()) console.out << "; " << pace;
  console.out << '\n';
  if (!holder.empty())
    console.out << "driven by " << holder << ", engine " << engineWord(record.settings.engine) << '\n';
  else if (states.ending() == "done")
    console.out << "the result is in " << record.resultFile << '\n';
  else
    console.out << (states.ending().empty() ? "nobody drives it" : states.ending()) << ": `tarvex-batch resume "
                << run.path() << "` goes on\n";
  printFailures(states, console.out);
  return kSucceeded;
}

int runCancel(const CancelOptions& options, const Console& console) {
  const RunDirectory run(absolutePath(options.directory));
  RunRecord record;
  std::string message;
  if (!record.load(run.record(), message)) return console.fail(message);
  const auto end = std::chrono::steady_clock::now() + kCancelWait;
  RunLock lock;
  // Who drives the run sees the mark, on whatever machine.
  while (!lock.take(run.lock(), message)) {
    std::string problem;
    if (!writePlainFile(run.stopMark(), "stop\n", problem)) return console.fail(problem);
    if (StopSignals::requested() || std::chrono::steady_clock::now() > end)
      return console.fail(message + "\nIt was asked to stop.");
    std::this_thread::sleep_for(kCancelSlice);
  }
  SiteSettings site;
  if (!site.load(message)) return console.fail(message);
  const PartSample none;
  const RunWatch watch = {[] { return !StopSignals::requested(); }, [](const PartStates&) {},
                          [&console](const std::string& text) { console.errors << text << '\n'; }};
  Coordinator coordinator(record, run, none, site, watch);
  if (!coordinator.cancel(message)) return message.empty() ? kFailed : console.fail(message);
  console.out << "Ended: " << partsText(coordinator.states()) << ".\n";
  return kSucceeded;
}

}  // namespace tarvex
