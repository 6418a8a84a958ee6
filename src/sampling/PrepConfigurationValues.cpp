// The value pass of a generation: the numbers of the design become factor values, column by column, and the relations
// are evaluated over them, run by run.
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

// Relations stand last in the order. They are passed side by side: a pass over the rows for each of them would move the
// whole table as often.
std::int32_t PrepConfiguration::passWidth() {
  return factors.factor(factors.factorAt(nextFactor_)).isRelation() ? factors.factorCount() - nextFactor_ : 1;
}

bool PrepConfiguration::passValues(std::int32_t& percent, std::int32_t target, const Progress& progress) {
  const std::int32_t runs = samples.rows();
  const double cells = static_cast<double>(factors.factorCount()) * runs;
  bool first = true;
  while (percent < target) {
    const std::int32_t width = passWidth();
    const auto doneBefore = [&](std::int32_t row) {
      return (static_cast<double>(nextFactor_) * runs + static_cast<double>(row) * width) / cells;
    };
    const auto percentBefore = [&](std::int32_t row) {
      return static_cast<std::int32_t>((doneBefore(row) + 1.0) * (kDone - kSamplerShare));
    };
    const double done = kValuesShare * doneBefore(nextRow_);
    if (!std::exchange(first, false) && !progress.report(done)) return false;
    const Factor& factor = factors.factor(factors.factorAt(nextFactor_));
    if (nextRow_ == 0 && !openColumn(factor, progress.part(done, done))) return false;
    // The first row behind which the target is reached, or the column's last.
    std::int32_t end = nextRow_ + 1;
    for (std::int32_t last = std::min(nextRow_ + std::max(kCellsAReport / width, 1), runs); end < last;) {
      const std::int32_t middle = end + (last - end) / 2;
      if (percentBefore(middle) < target)
        end = middle + 1;
      else
        last = middle;
    }
    if (!passCells(end)) return false;
    percent = percentBefore(end);
    nextRow_ = end;
    if (nextRow_ < runs) continue;
    releaseTable(factors.factor(factors.factorAt(nextFactor_)));
    nextFactor_ += width;
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

// Turns the cells from the run `nextRow_` to before `endRow`, kCellsAReport at most, into factor values: those of the
// factor at `nextFactor_`, or of all relations.
bool PrepConfiguration::passCells(std::int32_t endRow) {
  const std::int32_t factorIndex = factors.factorAt(nextFactor_);
  Factor& factor = factors.factor(factorIndex);
  if (factor.isConstant()) return true;
  if (factor.isRelation()) return passRelations(endRow);
  // A plain factor, as external samples have them, knows no distribution.
  auto* distribution = dynamic_cast<Distribution*>(&factor);
  const bool refused =
      distribution == nullptr || (nextRow_ == 0 && distribution->needsTable() && !distribution->prepareInverse());
  if (refused)
    return fail("I cannot calculate the inverse cumulative of factor " + std::to_string(nextFactor_ + 1) +
                " : generation aborted");
  double* const column = samples.columnPointer(factorIndex);
  if (column == nullptr) return fail(samples.errorText());
  distribution->values(column + nextRow_, column + nextRow_, static_cast<std::size_t>(endRow - nextRow_));
  return true;
}

// In blocks of rows that end where the store's window does: a window goes forward only, as one that began in the middle
// of another would leave the table by factor behind.
bool PrepConfiguration::passRelations(std::int32_t endRow) {
  const std::int32_t count = factors.factorCount();
  for (std::int32_t k = nextFactor_; nextRow_ == 0 && k < count; ++k)
    static_cast<Relation&>(factors.factor(factors.factorAt(k))).bindNames(factorNames);
  const std::int32_t window = samples.blockRows();
  std::int32_t rows = 0;
  for (std::int32_t first = nextRow_; first < endRow; first += rows) {
    rows = std::min({static_cast<std::int32_t>(Equation::kBlockRows), endRow - first, window - first % window});
    for (std::int32_t k = nextFactor_; k < count; ++k)
      if (!passRelation(factors.factorAt(k), first, rows)) return false;
  }
  return true;
}

bool PrepConfiguration::passRelation(std::int32_t factorIndex, std::int32_t first, std::int32_t rows) {
  auto& relation = static_cast<Relation&>(factors.factor(factorIndex));
  for (std::int32_t i = 0; i < rows; ++i) {
    const double* row = samples.rowPointer(first + i);
    if (row == nullptr) return fail(samples.errorText());
    relation.enter(static_cast<std::size_t>(i), row);
  }
  std::array<double, Equation::kBlockRows> values;
  failedRows_[static_cast<std::size_t>(factorIndex)] +=
      relation.evaluateEntered(static_cast<std::size_t>(rows), values.data());
  for (std::int32_t i = 0; i < rows; ++i) {
    double* row = samples.rowPointer(first + i);
    if (row == nullptr) return fail(samples.errorText());
    row[factorIndex] = values[static_cast<std::size_t>(i)];
  }
  return true;
}

}  // namespace tarvex
