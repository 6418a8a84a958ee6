// The value pass of a generation: the numbers of the design become factor values, column by column.
#include <algorithm>
#include <array>
#include <utility>

#include "factors/Distribution.h"
#include "factors/Relation.h"
#include "sampling/PrepConfiguration.h"

namespace tarvex {
namespace {

constexpr std::int32_t kCellsAReport =
    4096;                             // turned into values together; some milliseconds where an inverse is searched
constexpr double kValuesShare = 0.9;  // the statistics take the rest of the time

}  // namespace

void PrepConfiguration::releaseTable(Factor& factor) {
  if (auto* distribution = dynamic_cast<Distribution*>(&factor)) distribution->clearTable();
}

bool PrepConfiguration::passValues(std::int32_t& percent, std::int32_t target, const Progress& progress) {
  const std::int32_t runs = samples.rows();
  const double cells = static_cast<double>(factors.factorCount()) * runs;
  const auto percentBefore = [&](std::int32_t row) {
    return static_cast<std::int32_t>(((static_cast<double>(nextFactor_) * runs + row) / cells + 1.0) *
                                     (kDone - kSamplerShare));
  };
  bool first = true;
  while (percent < target) {
    const double done = (static_cast<double>(nextFactor_) * runs + nextRow_) / cells;
    if (!std::exchange(first, false) && !progress.report(kValuesShare * done)) return false;
    const std::int32_t f = factors.factorAt(nextFactor_);
    if (nextRow_ == 0 && !openColumn(factors.factor(f), progress.part(kValuesShare * done, kValuesShare * done)))
      return false;
    // The first cell behind which the target is reached, or the column's last.
    std::int32_t end = nextRow_ + 1;
    for (std::int32_t last = std::min(nextRow_ + kCellsAReport, runs); end < last;) {
      const std::int32_t middle = end + (last - end) / 2;
      if (percentBefore(middle) < target)
        end = middle + 1;
      else
        last = middle;
    }
    if (!passCells(f, end)) return false;
    percent = percentBefore(end);
    nextRow_ = end;
    if (nextRow_ < runs) continue;
    releaseTable(factors.factor(f));
    ++nextFactor_;
    nextRow_ = 0;
  }
  return percent < kDone || finishGeneration(progress.part(kValuesShare, 1.0));
}

// Relations need whole rows, all other factors their column.
bool PrepConfiguration::openColumn(const Factor& factor, const Progress& progress) {
  return factor.isConstant() || samples.setColumnMode(!factor.isRelation(), progress) || fail(samples.errorText());
}

bool PrepConfiguration::finishGeneration(const Progress& progress) {
  constexpr double kModeShare = 0.3;  // of the time, roughly
  SampleStatistics statistics;
  if (!samples.setColumnMode(false, progress.part(0.0, kModeShare))) return fail(samples.errorText());
  if (!statistics.compute(samples, progress.part(kModeShare, 1.0))) return fail(samples.errorText());
  sampleStatistics = std::move(statistics);
  factors.releaseOrder();
  stage_ = Stage::Done;
  return true;
}

// Turns the cells of the factor from the run `nextRow_` to before `endRow`, kCellsAReport at most, into factor values.
bool PrepConfiguration::passCells(std::int32_t factorIndex, std::int32_t endRow) {
  Factor& factor = factors.factor(factorIndex);
  if (factor.isConstant()) return true;
  if (factor.isRelation()) return passRelation(static_cast<Relation&>(factor), factorIndex, endRow);
  // A plain factor, as external samples have them, knows no distribution.
  auto* distribution = dynamic_cast<Distribution*>(&factor);
  const bool refused =
      distribution == nullptr || (nextRow_ == 0 && distribution->needsTable() && !distribution->prepareInverse());
  if (refused)
    return fail("I cannot calculate the inverse cumulative of factor " + std::to_string(nextFactor_ + 1) +
                " : generation aborted");
  std::array<double, kCellsAReport> block;
  const std::size_t count = static_cast<std::size_t>(endRow - nextRow_);
  for (std::size_t i = 0; i < count; ++i)
    if (!samples.getColumnValue(nextRow_ + static_cast<std::int32_t>(i), factorIndex, block[i]))
      return fail(samples.errorText());
  distribution->values(block.data(), block.data(), count);
  for (std::size_t i = 0; i < count; ++i)
    if (!samples.setColumnValue(nextRow_ + static_cast<std::int32_t>(i), factorIndex, block[i]))
      return fail(samples.errorText());
  return true;
}

bool PrepConfiguration::passRelation(Relation& relation, std::int32_t factorIndex, std::int32_t endRow) {
  if (nextRow_ == 0) relation.bindNames(factorNames);
  constexpr std::int32_t kRows = Equation::kBlockRows;
  std::array<double, kRows> values;
  for (std::int32_t first = nextRow_; first < endRow; first += kRows) {
    const std::int32_t count = std::min(kRows, endRow - first);
    for (std::int32_t i = 0; i < count; ++i) {
      const double* row = samples.rowPointer(first + i);
      if (row == nullptr) return fail(samples.errorText());
      relation.enter(static_cast<std::size_t>(i), row);
    }
    failedRows_[static_cast<std::size_t>(factorIndex)] +=
        relation.evaluateEntered(static_cast<std::size_t>(count), values.data());
    for (std::int32_t i = 0; i < count; ++i) {
      double* row = samples.rowPointer(first + i);
      if (row == nullptr) return fail(samples.errorText());
      row[factorIndex] = values[static_cast<std::size_t>(i)];
    }
  }
  return true;
}

}  // namespace tarvex
