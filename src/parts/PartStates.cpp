#include "parts/PartStates.h"

#include <algorithm>

#include "parts/Ledger.h"

namespace tarvex {

PartStates::PartStates(const std::vector<Part>& parts) : parts_(parts), states_(parts.size()) {
  for (std::size_t i = 0; i < parts.size(); ++i) count(i, 1);
}

void PartStates::count(std::size_t part, int sign) {
  const PartState::Stage stage = states_[part].stage;
  counts_[stage] += static_cast<std::size_t>(sign);
  rows_[stage] += sign * parts_[part].rows;
}

void PartStates::apply(const std::vector<LedgerEntry>& entries) {
  for (const LedgerEntry& entry : entries) apply(entry);
}

void PartStates::apply(const LedgerEntry& entry) {
  if (entry.event == "started") ending_.clear();
  if (entry.event == "ended") ending_ = entry.text;
  if (entry.event == "resumed" && entry.parts.empty())
    for (std::size_t part = 0; part < states_.size(); ++part) {
      count(part, -1);
      reopen(states_[part]);
      count(part, 1);
    }
  for (const std::int32_t part : entry.parts)
    if (part >= 0 && static_cast<std::size_t>(part) < states_.size()) {
      PartState& state = states_[static_cast<std::size_t>(part)];
      state.lastAttempt = std::max(state.lastAttempt, entry.attempt);
      // Nothing that a late attempt does takes a result away; only a result that proves bad is one no more.
      if (state.stage == PartState::Done && entry.event != "spoilt") continue;
      count(static_cast<std::size_t>(part), -1);
      change(state, entry);
      count(static_cast<std::size_t>(part), 1);
      state.since = entry.time;
    }
}

void PartStates::change(PartState& state, const LedgerEntry& entry) {
  if (entry.attempt != 0) state.attempt = entry.attempt;
  if (!entry.host.empty()) state.host = entry.host;
  if (entry.event == "sending" || entry.event == "sent") {
    state.stage = PartState::Sent;
    state.job = entry.job;
  } else if (entry.event == "begun") {
    state.stage = PartState::Begun;
  } else if (entry.event == "done") {
    state.stage = PartState::Done;
  } else if (entry.event == "failed") {
    state.stage = PartState::Failed;
    state.text = entry.text;
    ++state.failures;
  } else if (entry.event == "lost") {
    state.stage = PartState::Open;
    state.text = entry.text;
    ++state.losses;
  } else if (entry.event == "stopped" || entry.event == "again" || entry.event == "spoilt") {
    state.stage = PartState::Open;
  } else if (entry.event == "missing") {
    state.stage = PartState::Missing;
  } else if (entry.event == "resumed") {
    reopen(state);
  }
}

void PartStates::reopen(PartState& state) {
  if (state.stage == PartState::Failed || state.stage == PartState::Missing) state.stage = PartState::Open;
  state.failures = 0;
  state.losses = 0;
}

std::int32_t PartStates::lastAttempt() const {
  std::int32_t last = 0;
  for (const PartState& state : states_) last = std::max(last, state.lastAttempt);
  return last;
}

}  // namespace tarvex
