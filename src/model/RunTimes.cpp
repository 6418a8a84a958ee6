#include "model/RunTimes.h"

#include <algorithm>
#include <cstring>

namespace tarvex {

namespace {

// To the bit: a nan is the same as itself and -0.0 is not 0.0.
bool isSame(const std::vector<double>& a, const std::vector<double>& b) {
  return a.size() == b.size() && (a.empty() || std::memcmp(a.data(), b.data(), a.size() * sizeof(double)) == 0);
}

}  // namespace

void RunTimes::addRuns(std::int32_t count, const std::vector<double>& times) {
  if (count <= 0) return;
  if (grids_.empty() || !isSame(grids_.back().times, times)) grids_.push_back({runs_, points_, times});
  runs_ += count;
  points_ += static_cast<std::uint64_t>(count) * times.size();
}

void RunTimes::cut(std::int32_t runs) {
  if (runs >= runs_) return;
  points_ = pointsBefore(runs);
  runs_ = runs;
  while (!grids_.empty() && grids_.back().firstRun >= runs_) grids_.pop_back();
}

const RunTimes::Grid& RunTimes::gridOf(std::int32_t run) const {
  const auto behind = std::upper_bound(grids_.begin(), grids_.end(), run,
                                       [](std::int32_t wanted, const Grid& grid) { return wanted < grid.firstRun; });
  return *std::prev(behind);
}

const std::vector<double>& RunTimes::of(std::int32_t run) const {
  return gridOf(run).times;
}

std::uint64_t RunTimes::pointsBefore(std::int32_t run) const {
  const Grid& grid = gridOf(run);
  return grid.pointsBefore + static_cast<std::uint64_t>(run - grid.firstRun) * grid.times.size();
}

bool RunTimes::allEqual() const {
  if (runs_ < 2) return true;
  return std::ranges::all_of(grids_, [this](const Grid& grid) { return grid.times == grids_.front().times; });
}

}  // namespace tarvex
