#pragma once

#include <cstdint>
#include <vector>

namespace tarvex {

// The time points of every run. Neighbouring runs with the same points share them, so that any number of runs without
// a time axis takes no room.
class RunTimes {
 public:
  void clear() { grids_.clear(), runs_ = 0, points_ = 0; }
  void addRuns(std::int32_t count, const std::vector<double>& times);
  void cut(std::int32_t runs);  // drops the runs from this one on

  std::int32_t runs() const { return runs_; }
  const std::vector<double>& of(std::int32_t run) const;  // Requires: a run below runs()
  std::uint64_t pointsBefore(std::int32_t run) const;     // of all earlier runs together
  bool allEqual() const;  // every run's points are those of the first; a nan is no time's equal

 private:
  struct Grid {
    std::int32_t firstRun;
    std::uint64_t pointsBefore;
    std::vector<double> times;
  };
  const Grid& gridOf(std::int32_t run) const;

  std::vector<Grid> grids_;
  std::int32_t runs_ = 0;
  std::uint64_t points_ = 0;
};

}  // namespace tarvex
