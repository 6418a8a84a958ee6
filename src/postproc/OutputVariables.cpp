#include "postproc/OutputVariables.h"

#include <cmath>
#include <cstddef>
#include <utility>

#include "model/ModelConfiguration.h"
#include "postproc/MeasureSupport.h"

namespace tarvex {

namespace {

// Reading a run, evaluating an expression: for the pace of progress.
constexpr std::int64_t kOperationsAnExpression = 1000;
constexpr std::int64_t kOperationsAValue = 5;

}  // namespace

bool OutputVariables::set(const std::vector<std::string>& texts, const std::vector<std::string>& outputNames) {
  std::vector<OutputExpression> expressions(texts.size());
  for (std::size_t i = 0; i < texts.size(); ++i)
    if (!expressions[i].set(texts[i], outputNames, errorText_)) return false;
  texts_ = texts;
  expressions_ = std::move(expressions);
  failedRuns_.assign(texts.size(), 0);
  errorText_ = "No errors";
  return true;
}

bool OutputVariables::addRun(const ModelConfiguration& model, std::int32_t run, OutputTable& table) {
  const std::size_t needed =
      static_cast<std::size_t>(model.results.timeCount(run)) * static_cast<std::size_t>(model.results.outputCount());
  if (!model.results.readRun(run, values_) || values_.empty() || values_.size() < needed) {
    errorText_ = "The model results of run " + std::to_string(run + 1) + " can't be read.";
    return false;
  }
  for (std::size_t i = 0; i < expressions_.size(); ++i)
    if (!expressions_[i].evaluate(model, run, values_, row_[i])) ++failedRuns_[i];
  if (table.addRow(row_.data()) > 0) return true;
  errorText_ = table.errorText();
  return false;
}

bool OutputVariables::build(const ModelConfiguration& model, OutputTable& table, const Progress& progress) {
  table.clear();
  runs_ = model.results.runCount();
  failedRuns_.assign(texts_.size(), 0);
  row_.resize(texts_.size());
  if (!table.allocate(static_cast<std::int32_t>(texts_.size()))) {
    errorText_ = table.errorText();
    return false;
  }
  const std::int64_t values = runs_ > 0 ? std::int64_t{model.results.timeCount(0)} * model.results.outputCount() : 0;
  WorkPace pace(progress, runs_, kOperationsAnExpression + kOperationsAValue * values);
  for (std::int32_t run = 0; run < runs_; ++run) {
    if (pace.step() && addRun(model, run, table)) continue;
    if (progress.stopped()) errorText_ = "The computation was stopped.";
    table.clear();
    return false;
  }
  return true;
}

std::string OutputVariables::failures() const {
  std::string text;
  for (std::size_t i = 0; i < failedRuns_.size(); ++i) {
    if (failedRuns_[i] == 0) continue;
    if (!text.empty()) text += '\n';
    text += "The expression " + texts_[i] + " could not be evaluated in " + std::to_string(failedRuns_[i]) + " of " +
            std::to_string(runs_) + " runs and has the value 0 there.";
  }
  return text;
}

std::string OutputVariables::check(const std::string& text, const std::vector<std::string>& outputNames) {
  std::string reason;
  return OutputExpression().set(text, outputNames, reason) ? "" : reason;
}

std::vector<std::string> OutputVariables::defaultVariables(const std::vector<std::string>& outputNames,
                                                           bool hasTimeAxis) {
  std::vector<std::string> names = outputNames;
  if (hasTimeAxis)
    for (std::string& name : names) name = maximumName(name);
  return names;
}

std::vector<double> OutputVariables::timeRange(double lower, double upper, double step) {
  std::vector<double> times;
  const bool bounded = std::isfinite(lower) && std::isfinite(upper) && step > 0.0;
  if (!bounded || (upper - lower) / step > static_cast<double>(kMaxTimes)) return times;
  for (std::int32_t i = 0; lower + i * step < upper; ++i) times.push_back(lower + i * step);
  return times;
}

}  // namespace tarvex
