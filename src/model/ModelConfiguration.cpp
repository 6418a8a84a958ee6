#include "model/ModelConfiguration.h"

#include <limits>

#include "base/sampValues.h"

namespace tarvex {

namespace {

const std::vector<double> kSingleTime = {0.0};

}  // namespace

ModelConfiguration::ModelConfiguration(const ModelConfiguration& other) {
  *this = other;
}

ModelConfiguration& ModelConfiguration::operator=(const ModelConfiguration& other) {
  if (this == &other) return *this;
  executable = other.executable;
  outputFile = other.outputFile;
  kind = other.kind;
  spreadsheet = other.spreadsheet;
  timeMode = other.timeMode;
  internalModel_ = other.internalModel_ ? std::make_unique<InternalModel>(*other.internalModel_) : nullptr;
  outputNames_ = other.outputNames_;
  runTimes_ = other.runTimes_;
  dataFile_ = other.dataFile_;
  progress_ = other.progress_;
  nextRun_ = other.nextRun_;
  failedRuns_ = other.failedRuns_;
  firstFailed_ = other.firstFailed_;
  return *this;
}

void ModelConfiguration::setExternal(const std::string& executablePath, const std::string& outputPath,
                                     std::int32_t isSpreadsheet) {
  executable = executablePath;
  outputFile = outputPath;
  spreadsheet = isSpreadsheet;
}

void ModelConfiguration::setInternalModel(std::unique_ptr<InternalModel> model) {
  internalModel_ = std::move(model);
  kind = kInternalModel;
}

void ModelConfiguration::clearInternalModel() {
  internalModel_.reset();
  kind = kExternalExecutable;
}

std::int32_t ModelConfiguration::timeCount(std::int32_t run) const {
  return static_cast<std::int32_t>(runTimes_.of(run).size());
}

double ModelConfiguration::time(std::int32_t run, std::int32_t index) const {
  return runTimes_.of(run)[static_cast<std::size_t>(index)];
}

bool ModelConfiguration::readRun(std::int32_t run, std::vector<double>& values) const {
  values.resize(runTimes_.of(run).size() * outputNames_.size());
  return dataFile_.read(runTimes_.pointsBefore(run) * outputNames_.size(), values.data(), values.size());
}

void ModelConfiguration::clearResults() {
  outputNames_.clear();
  runTimes_.clear();
  dataFile_.clear();
  timeMode = kNoTimeAxis;
  progress_ = 0.0f;
  nextRun_ = 0;
  failedRuns_ = 0;
  firstFailed_ = -1;
}

bool ModelConfiguration::prepareInternalRun(std::int32_t rows) {
  clearResults();
  if (!internalModel_) return false;
  for (const ModelExpression& expression : internalModel_->expressions()) {
    if (expression.type == 1) outputNames_.push_back(expression.name);
  }
  runTimes_.addRuns(rows, kSingleTime);
  return true;
}

std::int32_t ModelConfiguration::advanceInternalRun(sampValues& samples, float target) {
  constexpr float kDone = 100.0f;
  if (!internalModel_ || samples.columns() != internalModel_->numVariables()) return -1;
  std::vector<double> row(static_cast<std::size_t>(samples.columns()));
  std::vector<double> outputs(outputNames_.size());
  // In single precision the last of many millions of runs all stand at 100 percent: they are done in one go.
  while (nextRun_ < runCount() && (progress_ < target || progress_ >= kDone)) {
    if (!samples.getRow(nextRun_, row.data())) return -1;
    if (!internalModel_->evaluate(row.data(), outputs.data())) {
      outputs.assign(outputs.size(), std::numeric_limits<double>::quiet_NaN());
      if (failedRuns_++ == 0) firstFailed_ = nextRun_;
    }
    if (!dataFile_.append(outputs.data(), outputs.size())) return -1;
    ++nextRun_;
    progress_ = static_cast<float>(static_cast<double>(nextRun_) / runCount() * 100.0);
  }
  return static_cast<std::int32_t>(progress_);
}

}  // namespace tarvex
