#include "parts/RunFollower.h"

#include <chrono>

#include "parts/Ledger.h"
#include "parts/PartAttempt.h"
#include "parts/PartsText.h"
#include "parts/RunLock.h"

namespace tarvex {

bool RunFollower::look(std::string& message) {
  // What is settled at the first start never changes; how the run is carried out may with every start.
  RunRecord record;
  if (!record.load(directory_.record(), message)) return false;
  if (states_.size() != record.parts.size()) {
    states_ = PartStates(record.parts);
    read_ = 0;
  }
  record_ = std::move(record);
  // First the lock: who leaves a run writes so into the ledger before.
  holder_ = lockHolder(directory_.lock());
  for (const LedgerEntry& entry : readLedger(directory_.ledger(), read_)) {
    states_.apply(entry);
    if (entry.event == "started") started_ = entry.time, rowsDone_ = 0;
    if (entry.event != "done") continue;
    for (const std::int32_t part : entry.parts)
      if (part >= 0 && static_cast<std::size_t>(part) < states_.size())
        rowsDone_ += states_.parts()[static_cast<std::size_t>(part)].rows;
  }
  return true;
}

std::string RunFollower::pace() const {
  const std::chrono::duration<double> now = std::chrono::system_clock::now().time_since_epoch();
  return paceText(states_, rowsDone_, now.count() - started_);
}

std::vector<std::string> RunFollower::outputs() const {
  std::vector<std::string> paths(states_.size());
  for (std::size_t part = 0; part < paths.size(); ++part)
    if (states_[part].stage == PartState::Done)
      paths[part] = attemptOutput(record_, directory_, static_cast<std::int32_t>(part), states_[part].attempt);
  return paths;
}

}  // namespace tarvex
