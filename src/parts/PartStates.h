#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "parts/Part.h"

namespace tarvex {

struct LedgerEntry;

// How far a part is.
struct PartState {
  enum Stage { Open, Sent, Begun, Done, Failed, Missing };

  Stage stage = Open;
  std::int32_t attempt = 0;      // in hand, or the one whose result counts
  std::int32_t lastAttempt = 0;  // the highest number that was used
  std::int32_t failures = 0;     // since the run was taken up
  std::int32_t losses = 0;
  std::string job;  // the engine's number of it
  std::string host;
  std::string text;    // why it failed last
  double since = 0.0;  // seconds of the system's clock at the last change
};

// The states of all parts, as the entries of the ledger lead to them.
class PartStates {
 public:
  explicit PartStates(const std::vector<Part>& parts);

  void apply(const LedgerEntry& entry);
  void apply(const std::vector<LedgerEntry>& entries);

  std::size_t size() const { return states_.size(); }
  const PartState& operator[](std::size_t part) const { return states_[part]; }
  const std::vector<Part>& parts() const { return parts_; }
  std::size_t count(PartState::Stage stage) const { return counts_[stage]; }
  std::int32_t rowsIn(PartState::Stage stage) const { return rows_[stage]; }
  std::int32_t lastAttempt() const;  // of all parts
  bool isOver() const { return count(PartState::Done) + count(PartState::Missing) == size(); }
  const std::string& ending() const { return ending_; }  // how the last coordinator left the run; empty: it didn't

 private:
  static void change(PartState& state, const LedgerEntry& entry);
  void count(std::size_t part, int sign);
  static void reopen(PartState& state);

  std::vector<Part> parts_;
  std::vector<PartState> states_;
  std::array<std::size_t, PartState::Missing + 1> counts_{};
  std::array<std::int32_t, PartState::Missing + 1> rows_{};
  std::string ending_;
};

}  // namespace tarvex
