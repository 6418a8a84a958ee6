#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "parts/PartStates.h"
#include "parts/RunDirectory.h"
#include "parts/RunRecord.h"

namespace tarvex {

// Looks at a run in parts without driving it, and goes on where it looked last: nothing in the run's directory is
// changed, whoever drives the run takes no notice.
class RunFollower {
 public:
  // The path is one from the root.
  explicit RunFollower(std::string path) : directory_(std::move(path)) {}

  // Reads what was added to the ledger since, and who holds the lock. False, with path and reason, where there is no
  // such run, or none any more; what was read stays.
  [[nodiscard]] bool look(std::string& message);

  const RunDirectory& directory() const { return directory_; }
  const RunRecord& record() const { return record_; }
  const PartStates& states() const { return states_; }
  const std::string& holder() const { return holder_; }  // host and process that drive it; empty: nobody
  std::uint64_t bytesRead() const { return read_; }      // of the ledger: grows when anything happens
  // "35 runs/s, 0:42 left" since the run was taken up last; empty while nothing was done.
  std::string pace() const;
  // The output of each part that is done; empty for the others.
  std::vector<std::string> outputs() const;

 private:
  RunDirectory directory_;
  RunRecord record_;
  PartStates states_{{}};
  std::string holder_;
  std::uint64_t read_ = 0;
  double started_ = 0.0;       // seconds of the system's clock
  std::int32_t rowsDone_ = 0;  // since then
};

}  // namespace tarvex
