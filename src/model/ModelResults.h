#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "model/ResultFile.h"
#include "model/RunTimes.h"

namespace tarvex {

enum TimeMode : std::int32_t { kNoTimeAxis = 0, kReadingTimes = 1, kDifferentGrids = 2, kSharedGrid = 3 };

// What came out of a model: the names of its outputs, the time points of every run and the values. The values lie in a
// working file in the order run, time point, output; only the time points are in memory. Runs are appended one after
// another and never change.
class ModelResults {
 public:
  ModelResults() = default;
  ModelResults(ModelResults&&) noexcept = default;
  ModelResults& operator=(ModelResults&&) noexcept = default;
  // A copy of everything, made only where it is asked for: results can exceed memory. On false the system gave no room,
  // as the message says, and this is as it was.
  [[nodiscard]] bool copyFrom(const ModelResults& other, std::string& message);

  std::int32_t runCount() const { return runTimes_.runs(); }
  std::int32_t outputCount() const { return static_cast<std::int32_t>(outputNames_.size()); }
  const std::vector<std::string>& outputNames() const { return outputNames_; }
  std::int32_t timeMode() const { return timeMode_; }
  bool hasTimeAxis() const { return timeMode_ != kNoTimeAxis; }

  // Require: a run below runCount().
  std::int32_t timeCount(std::int32_t run) const;
  double time(std::int32_t run, std::int32_t index) const;
  const std::vector<double>& times(std::int32_t run) const { return runTimes_.of(run); }
  // All values of one run, timeCount(run) x outputCount(), time after time. False on a failed read.
  [[nodiscard]] bool readRun(std::int32_t run, std::vector<double>& values) const;
  // Why values couldn't be stored or read last, directory and reason of the system included.
  const std::string& errorText() const { return dataFile_.errorText(); }

  void clear() { reset({}); }
  // No runs, and the outputs that runs will be appended for; `givenNames` as the model gave them, where one was
  // changed.
  void reset(std::vector<std::string> outputNames, std::vector<std::string> givenNames = {});
  // Kept by no file. Empty: the outputs are called as the model calls them, as far as is known.
  const std::vector<std::string>& givenNames() const { return givenNames_; }
  // Requires: as many names as there are outputs, each once.
  void renameOutputs(std::vector<std::string> names) { outputNames_ = std::move(names); }
  // A run with its time points and, time after time, a value for each output. False when the working file can't take
  // it; results that lost a value stay unreadable until they are cleared.
  [[nodiscard]] bool appendRun(const std::vector<double>& times, const std::vector<double>& values);
  // `count` runs of a model without a time axis, the outputs of each behind those of the run before. False as
  // above.
  [[nodiscard]] bool appendRuns(std::int32_t count, const double* values);
  // `count` runs of which nothing is known: all nan at these time points.
  [[nodiscard]] bool appendMissing(std::int32_t count, const std::vector<double>& times);
  void cut(std::int32_t runs);  // drops the runs from this one on

  // The mode of the runs that are there. setTimeMode: false, and nothing is set, when they don't keep what it promises:
  // a single time of each run without a time axis, one grid for all with a shared one. findTimeMode: the mode of runs
  // on a time axis.
  [[nodiscard]] bool setTimeMode(std::int32_t mode);
  void findTimeMode() { timeMode_ = runTimes_.allEqual() ? kSharedGrid : kDifferentGrids; }

  // The time points of a run without a time axis.
  static const std::vector<double>& singleTime();

 private:
  std::vector<std::string> outputNames_;
  std::vector<std::string> givenNames_;
  RunTimes runTimes_;
  ResultFile dataFile_;
  std::int32_t timeMode_ = kNoTimeAxis;
};

// What is said of results that a run can't go on adding to: "The results of the model cannot be stored: Cannot write
// the working file in /tmp: No space left on device".
std::string notStored(const ModelResults& results);

}  // namespace tarvex
