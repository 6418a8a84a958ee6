#include "model/InternalRun.h"

#include <algorithm>
#include <limits>
#include <utility>

#include "base/Cores.h"
#include "base/FreeSpace.h"
#include "base/Memory.h"
#include "base/sampValues.h"
#include "model/InternalModel.h"
#include "model/ModelResults.h"

namespace tarvex {
namespace {

// Blocks of so many equations that are worth a thread.
std::size_t leastBlocks(const InternalModel& model) {
  constexpr std::size_t kLeast = 8;
  return std::max<std::size_t>(kLeast / static_cast<std::size_t>(std::max(model.numExpressions(), 1)), 1);
}

}  // namespace

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
  const std::size_t blocks = blocksAtOnce();
  const std::size_t most = blocks * InternalModel::kBlockRows;
  const bool hasRoom = fitsInMemory([&] {
    rows_.resize(static_cast<std::size_t>(samples_.columns()) * most);
    rowOutputs_.resize(names.size() * most);
    failed_.resize(most);
    copies_.assign(partsOf(blocks, leastBlocks(model_)) - 1, model_);
  });
  if (!hasRoom) return fail(kNotEnoughMemory);
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

// Some milliseconds of work on one core, so that threads pay; one block where that takes as long.
std::size_t InternalRun::blocksAtOnce() const {
  constexpr std::size_t kBlocks = 64;
  constexpr std::size_t kMostCells = 1 << 20;
  const auto equations = static_cast<std::size_t>(std::max(model_.numExpressions(), 1));
  const std::size_t cells = InternalModel::kBlockRows * (equations + static_cast<std::size_t>(model_.numVariables()));
  return std::clamp<std::size_t>(std::min(kBlocks / equations, kMostCells / cells), 1, kBlocks);
}

bool InternalRun::evaluateFrom(std::int32_t run) {
  constexpr std::size_t kRows = InternalModel::kBlockRows;
  const std::int32_t count = std::min(static_cast<std::int32_t>(failed_.size()), samples_.rows() - run);
  const std::size_t width = static_cast<std::size_t>(samples_.columns());
  evaluated_ = 0;
  for (std::int32_t i = 0; i < count; ++i)
    if (!samples_.getRow(run + i, rows_.data() + static_cast<std::size_t>(i) * width))
      return fail("The sample cannot be read: " + samples_.errorText());
  const auto runs = static_cast<std::size_t>(count);
  inParts((runs + kRows - 1) / kRows, leastBlocks(model_), [&](std::size_t part, std::size_t first, std::size_t last) {
    InternalModel& model = part == 0 ? model_ : copies_[part - 1];
    for (std::size_t row = first * kRows; row < std::min(last * kRows, runs); row += kRows)
      model.evaluateRows(rows_.data() + row * width, std::min(kRows, runs - row),
                         rowOutputs_.data() + row * outputs_.size(), failed_.data() + row);
  });
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
