#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <thread>

#include "base/Paths.h"
#include "batch/Commands.h"
#include "parts/Coordinator.h"
#include "parts/PartSample.h"
#include "parts/PartsText.h"
#include "parts/RunFollower.h"

namespace tarvex {

namespace {

constexpr std::size_t kFailuresShown = 20;
constexpr std::chrono::milliseconds kCancelSlice{50};
constexpr std::chrono::seconds kCancelWait{30};

void printFailures(const PartStates& states, std::ostream& out) {
  std::size_t shown = 0;
  for (std::size_t part = 0; part < states.size(); ++part) {
    const PartState& state = states[part];
    if (state.stage != PartState::Failed && state.stage != PartState::Missing) continue;
    if (shown++ == kFailuresShown) {
      out << "...\n";
      return;
    }
    out << failureText(states, part) << '\n';
  }
}

}  // namespace

int runStatus(const StatusOptions& options, const Console& console) {
  RunFollower run(absolutePath(options.directory));
  std::string message;
  if (!run.look(message)) return console.fail(message);
  const PartStates& states = run.states();
  console.out << partsText(states);
  if (const std::string pace = run.pace(); !run.holder().empty() && !pace.empty()) console.out << "; " << pace;
  console.out << '\n' << driverText(run);
  if (run.holder().empty() && states.ending() != "done")
    console.out << ": `tarvex-batch resume " << run.directory().path() << "` goes on";
  console.out << '\n';
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
