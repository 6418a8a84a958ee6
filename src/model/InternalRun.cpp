#include "model/InternalRun.h"

#include <algorithm>
#include <limits>
#include <utility>

#include "base/FreeSpace.h"
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
  const auto runs = static_cast<std::uint64_t>(samples_.rows());
  if (const std::string reason = whyNoRoom(WorkingFile::directory(), runs * names.size() * sizeof(double));
      !reason.empty())
    return fail("The results of " + std::to_string(runs) + " runs need " + reason + ".");
  rows_.resize(static_cast<std::size_t>(samples_.columns()) * InternalModel::kBlockRows);
  rowOutputs_.resize(names.size() * InternalModel::kBlockRows);
  failed_.resize(InternalModel::kBlockRows);
  outputs_.resize(names.size());
  evaluated_ = 0;
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
  const bool isKnown = run >= firstEvaluated_ && run - firstEvaluated_ < evaluated_;
  if (!isKnown && !evaluateFrom(run)) return false;
  const std::size_t place = static_cast<std::size_t>(run - firstEvaluated_);
  if (failed_[place] == 0.0) {
    std::copy_n(rowOutputs_.begin() + static_cast<std::ptrdiff_t>(place * outputs_.size()), outputs_.size(),
                outputs_.begin());
  } else {
    outputs_.assign(outputs_.size(), std::numeric_limits<double>::quiet_NaN());
    if (failedRuns_++ == 0) firstFailed_ = run;
  }
  return results_.appendRun(ModelResults::singleTime(), outputs_) || fail(notStored(results_));
}

bool InternalRun::evaluateFrom(std::int32_t run) {
  const std::int32_t count = std::min(static_cast<std::int32_t>(InternalModel::kBlockRows), samples_.rows() - run);
  const std::size_t width = static_cast<std::size_t>(samples_.columns());
  evaluated_ = 0;
  for (std::int32_t i = 0; i < count; ++i)
    if (!samples_.getRow(run + i, rows_.data() + static_cast<std::size_t>(i) * width))
      return fail("The sample cannot be read: " + samples_.errorText());
  model_.evaluateRows(rows_.data(), static_cast<std::size_t>(count), rowOutputs_.data(), failed_.data());
  firstEvaluated_ = run;
  evaluated_ = count;
  return true;
}

std::string InternalRun::failures() const {
  if (failedRuns_ == 0) return {};
  return "Error evaluating model\nThe equations could not be evaluated in " + std::to_string(failedRuns_) + " of " +
         std::to_string(results_.runCount()) + " runs, first in run " + std::to_string(firstFailed_) +
         ". Their outputs are nan.";
}

}  // namespace tarvex
