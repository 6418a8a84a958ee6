#include "model/ModelResults.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace tarvex {

const std::vector<double>& ModelResults::singleTime() {
  static const std::vector<double> times = {0.0};
  return times;
}

bool ModelResults::copyFrom(const ModelResults& other, std::string& message) {
  if (!dataFile_.copyFrom(other.dataFile_)) {
    message = dataFile_.errorText();
    return false;
  }
  outputNames_ = other.outputNames_;
  givenNames_ = other.givenNames_;
  runTimes_ = other.runTimes_;
  timeMode_ = other.timeMode_;
  return true;
}

std::int32_t ModelResults::timeCount(std::int32_t run) const {
  return static_cast<std::int32_t>(runTimes_.of(run).size());
}

double ModelResults::time(std::int32_t run, std::int32_t index) const {
  return runTimes_.of(run)[static_cast<std::size_t>(index)];
}

bool ModelResults::readRun(std::int32_t run, std::vector<double>& values) const {
  values.resize(runTimes_.of(run).size() * outputNames_.size());
  return dataFile_.read(runTimes_.pointsBefore(run) * outputNames_.size(), values.data(), values.size());
}

void ModelResults::reset(std::vector<std::string> outputNames, std::vector<std::string> givenNames) {
  givenNames_ = std::move(givenNames);
  outputNames_ = std::move(outputNames);
  runTimes_.clear();
  dataFile_.clear();
  timeMode_ = kNoTimeAxis;
}

bool ModelResults::appendRun(const std::vector<double>& times, const std::vector<double>& values) {
  if (runCount() == std::numeric_limits<std::int32_t>::max()) return false;
  if (!dataFile_.append(values.data(), values.size())) return false;
  runTimes_.addRuns(1, times);
  return true;
}

bool ModelResults::appendRuns(std::int32_t count, const double* values) {
  if (count > std::numeric_limits<std::int32_t>::max() - runCount()) return false;
  if (!dataFile_.append(values, static_cast<std::size_t>(count) * outputNames_.size())) return false;
  runTimes_.addRuns(count, singleTime());
  return true;
}

bool ModelResults::appendMissing(std::int32_t count, const std::vector<double>& times) {
  const std::vector<double> nothing(times.size() * outputNames_.size(), std::numeric_limits<double>::quiet_NaN());
  for (std::int32_t i = 0; i < count; ++i)
    if (!appendRun(times, nothing)) return false;
  return true;
}

void ModelResults::cut(std::int32_t runs) {
  if (runs >= runCount()) return;
  dataFile_.cut(runTimes_.pointsBefore(runs) * outputNames_.size());
  runTimes_.cut(runs);
}

bool ModelResults::setTimeMode(std::int32_t mode) {
  const bool promises = mode == kNoTimeAxis || mode == kSharedGrid;
  if (promises && !runTimes_.allEqual()) return false;
  if (mode == kNoTimeAxis && runCount() > 0 && timeCount(0) != 1) return false;
  timeMode_ = mode;
  return true;
}

std::string notStored(const ModelResults& results) {
  const std::string& reason = results.errorText();
  return "The results of the model cannot be stored: " + (reason.empty() ? "there are too many runs" : reason);
}

}  // namespace tarvex
