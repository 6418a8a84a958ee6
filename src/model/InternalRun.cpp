#include "model/InternalRun.h"

#include <limits>
#include <utility>

#include "base/sampValues.h"
#include "model/InternalModel.h"
#include "model/ModelResults.h"

namespace tarvex {

bool InternalRun::fail(const std::string& text) {
  errorText_ = text;
  return false;
}

bool InternalRun::prepare() {
  std::vector<std::string> names;
  for (const ModelExpression& expression : model_.expressions())
    if (expression.type == 1) names.push_back(expression.name);
  if (samples_.rows() == 0) return fail("  No samples to generate");
  if (samples_.columns() != model_.numVariables())
    return fail("The number of model inputs differs from the number of factors in the generated sample");
  row_.resize(static_cast<std::size_t>(samples_.columns()));
  outputs_.resize(names.size());
  results_.reset(std::move(names));
  progress_ = 0.0f;
  failedRuns_ = 0;
  firstFailed_ = -1;
  return true;
}

std::int32_t InternalRun::advance(float target, const Progress& progress) {
  constexpr std::int32_t kEquationsAReport = 64;  // below a millisecond, even where they are long
  constexpr float kDone = 100.0f;
  // In single precision the last of many millions of runs all stand at 100 percent: they are done in one go.
  std::int32_t evaluated = 0;
  while (results_.runCount() < samples_.rows() && (progress_ < target || progress_ >= kDone)) {
    if (!addRun()) return -1;
    progress_ = static_cast<float>(static_cast<double>(results_.runCount()) / samples_.rows() * 100.0);
    evaluated += model_.numExpressions();
    if (evaluated < kEquationsAReport) continue;
    evaluated = 0;
    if (!progress.report(results_.runCount(), samples_.rows())) return -1;
  }
  return static_cast<std::int32_t>(progress_);
}

bool InternalRun::addRun() {
  const std::int32_t run = results_.runCount();
  if (!samples_.getRow(run, row_.data())) return fail("The sample cannot be read: " + samples_.errorText());
  if (!model_.evaluate(row_.data(), outputs_.data())) {
    outputs_.assign(outputs_.size(), std::numeric_limits<double>::quiet_NaN());
    if (failedRuns_++ == 0) firstFailed_ = run;
  }
  return results_.appendRun(ModelResults::singleTime(), outputs_) || fail(notStored(results_));
}

std::string InternalRun::failures() const {
  if (failedRuns_ == 0) return {};
  return "Error evaluating model\nThe equations could not be evaluated in " + std::to_string(failedRuns_) + " of " +
         std::to_string(results_.runCount()) + " runs, first in run " + std::to_string(firstFailed_) +
         ". Their outputs are nan.";
}

}  // namespace tarvex
