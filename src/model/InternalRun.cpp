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
  outputs_ = names.size();
  evaluated_ = 0;
  results_.reset(std::move(names));
  progress_ = 0.0f;
  failedRuns_ = 0;
  firstFailed_ = -1;
  return true;
}

float InternalRun::percentOf(std::int32_t runs) const {
  return static_cast<float>(static_cast<double>(runs) / samples_.rows() * 100.0);
}

// The least number of runs, beyond those that are there, that is `target` percent of all, or all of them.
std::int32_t InternalRun::runsUpTo(float target) const {
  std::int32_t below = results_.runCount();
  std::int32_t reached = samples_.rows();
  while (reached - below > 1) {
    const std::int32_t middle = below + (reached - below) / 2;
    (percentOf(middle) < target ? below : reached) = middle;
  }
  return reached;
}

std::int32_t InternalRun::advance(float target, const Progress& progress) {
  constexpr float kDone = 100.0f;
  // In single precision the last of many millions of runs all stand at 100 percent: they are done in one go.
  while (results_.runCount() < samples_.rows() && (progress_ < target || progress_ >= kDone)) {
    if (!addRuns(progress_ >= kDone ? samples_.rows() : runsUpTo(target))) return -1;
    progress_ = percentOf(results_.runCount());
    if (!progress.report(results_.runCount(), samples_.rows())) return -1;
  }
  return static_cast<std::int32_t>(progress_);
}

// Those up to the one before `last` that are evaluated together.
bool InternalRun::addRuns(std::int32_t last) {
  const std::int32_t run = results_.runCount();
  const bool isKnown = run >= firstEvaluated_ && run - firstEvaluated_ < evaluated_;
  if (!isKnown && !evaluateFrom(run)) return false;
  const auto first = static_cast<std::size_t>(run - firstEvaluated_);
  const auto end = static_cast<std::size_t>(std::min(evaluated_, last - firstEvaluated_));
  for (std::size_t place = first; place < end; ++place)
    if (failed_[place] != 0.0 && failedRuns_++ == 0) firstFailed_ = firstEvaluated_ + static_cast<std::int32_t>(place);
  return results_.appendRuns(static_cast<std::int32_t>(end - first), rowOutputs_.data() + first * outputs_) ||
         fail(notStored(results_));
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
  if (!samples_.getRows(run, count, rows_.data())) return fail("The sample cannot be read: " + samples_.errorText());
  const auto runs = static_cast<std::size_t>(count);
  inParts((runs + kRows - 1) / kRows, leastBlocks(model_), [&](std::size_t part, std::size_t first, std::size_t last) {
    InternalModel& model = part == 0 ? model_ : copies_[part - 1];
    for (std::size_t row = first * kRows; row < std::min(last * kRows, runs); row += kRows)
      model.evaluateRows(rows_.data() + row * width, std::min(kRows, runs - row), rowOutputs_.data() + row * outputs_,
                         failed_.data() + row);
  });
  for (std::size_t row = 0; row < runs; ++row)
    if (failed_[row] != 0.0)
      std::fill_n(rowOutputs_.data() + row * outputs_, outputs_, std::numeric_limits<double>::quiet_NaN());
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
