#include "postproc/OutputVariables.h"

#include <cmath>
#include <cstddef>
#include <utility>

#include "model/ModelConfiguration.h"

namespace tarvex {

bool OutputVariables::set(const std::vector<std::string>& texts, const ModelConfiguration& model) {
  std::vector<OutputExpression> expressions(texts.size());
  for (std::size_t i = 0; i < texts.size(); ++i)
    if (!expressions[i].set(texts[i], model.outputNames(), errorText_)) return false;
  texts_ = texts;
  expressions_ = std::move(expressions);
  failedRuns_.assign(texts.size(), 0);
  errorText_ = "No errors";
  return true;
}

bool OutputVariables::addRun(const ModelConfiguration& model, std::int32_t run, OutputTable& table) {
  const std::size_t needed = static_cast<std::size_t>(model.timeCount(run)) * model.outputNames().size();
  if (!model.readRun(run, values_) || values_.empty() || values_.size() < needed) {
    errorText_ = "The model results of run " + std::to_string(run + 1) + " can't be read.";
    return false;
  }
  for (std::size_t i = 0; i < expressions_.size(); ++i)
    if (!expressions_[i].evaluate(model, run, values_, row_[i])) ++failedRuns_[i];
  if (table.addRow(row_.data()) > 0) return true;
  errorText_ = table.errorText();
  return false;
}

bool OutputVariables::build(const ModelConfiguration& model, OutputTable& table) {
  table.clear();
  runs_ = model.runCount();
  failedRuns_.assign(texts_.size(), 0);
  row_.resize(texts_.size());
  if (!table.allocate(static_cast<std::int32_t>(texts_.size()))) {
    errorText_ = table.errorText();
    return false;
  }
  for (std::int32_t run = 0; run < runs_; ++run) {
    if (addRun(model, run, table)) continue;
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

std::string OutputVariables::check(const std::string& text, const ModelConfiguration& model) {
  std::string reason;
  return OutputExpression().set(text, model.outputNames(), reason) ? "" : reason;
}

std::vector<std::string> OutputVariables::defaultVariables(const ModelConfiguration& model) {
  std::vector<std::string> names = model.outputNames();
  if (model.hasTimeAxis())
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
