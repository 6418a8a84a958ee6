#include "app/Selection.h"

#include <algorithm>
#include <utility>

#include "base/TextWriter.h"
#include "base/csvText.h"
#include "postproc/ResultExport.h"

namespace tarvex {

namespace {

// The system's text against bounds that are no range.
bool isRange(double lower, double upper, std::string& message) {
  message = rangeProblem(lower, upper);
  return message.empty();
}

// A factor and a variable of one name are told apart as in lists.
std::string headingOf(const RunTable& table, const RunColumn& column) {
  const auto same = [&](const RunColumn& other) { return other.name == column.name; };
  return csvText(std::count_if(table.columns.begin(), table.columns.end(), same) > 1 ? column.label() : column.name);
}

}  // namespace

Selection::Selection(std::shared_ptr<const RunTable> table, std::uint64_t sample)
    : table_(std::move(table)), sample_(sample), out_(static_cast<std::size_t>(table_->runs), 0) {
  update();
}

bool Selection::keeps(std::int32_t run) const {
  return run >= 0 && run < table_->runs && dropped_[static_cast<std::size_t>(run)] == 0;
}

std::vector<std::int32_t> Selection::runs() const {
  std::vector<std::int32_t> kept;
  kept.reserve(static_cast<std::size_t>(kept_));
  for (std::int32_t run = 0; run < table_->runs; ++run)
    if (keeps(run)) kept.push_back(run);
  return kept;
}

void Selection::update() {
  std::vector<RunRange> ranges = filters_;
  ranges.insert(ranges.end(), region_.begin(), region_.end());
  markDropped(*table_, ranges, dropped_);
  for (std::size_t run = 0; run < out_.size(); ++run) dropped_[run] |= out_[run];
  kept_ = static_cast<std::int32_t>(std::count(dropped_.begin(), dropped_.end(), 0));
  notifier_.tell();
}

bool Selection::setFilter(std::size_t column, double lower, double upper, std::string& message) {
  if (!isRange(lower, upper, message)) return false;
  std::erase_if(filters_, [column](const RunRange& filter) { return filter.column == column; });
  filters_.push_back({column, lower, upper});
  update();
  return true;
}

void Selection::clearFilter(std::size_t column) {
  if (std::erase_if(filters_, [column](const RunRange& filter) { return filter.column == column; }) > 0) update();
}

bool Selection::setRegion(RunRange x, RunRange y, std::string& message) {
  if (!isRange(x.lower, x.upper, message) || !isRange(y.lower, y.upper, message)) return false;
  x.upperIncluded = y.upperIncluded = false;
  region_ = {x, y};
  update();
  return true;
}

void Selection::clearRegion() {
  if (region_.empty()) return;
  region_.clear();
  update();
}

void Selection::takeRuns(const std::vector<std::int32_t>& runs) {
  std::fill(out_.begin(), out_.end(), 1);
  for (const std::int32_t run : runs) out_[static_cast<std::size_t>(run)] = 0;
  update();
}

void Selection::take(std::int32_t run, bool taken) {
  out_[static_cast<std::size_t>(run)] = taken ? 0 : 1;
  update();
}

void Selection::complement() {
  for (std::size_t run = 0; run < out_.size(); ++run) out_[run] = dropped_[run] == 0 ? 1 : 0;
  filters_.clear();
  region_.clear();
  update();
}

void Selection::clear() {
  std::fill(out_.begin(), out_.end(), 0);
  filters_.clear();
  region_.clear();
  update();
}

void Selection::addColumns(const RunTable& more) {
  auto table = std::make_shared<RunTable>(*table_);
  table->columns.insert(table->columns.end(), more.columns.begin(), more.columns.end());
  table_ = std::move(table);
  notifier_.tell();
}

bool Selection::saveCsv(const std::string& path, std::string& message, const Progress& progress) const {
  constexpr std::uint64_t kBytesANumber = 20;  // about
  TextWriter out(path);
  out.watch(progress, kBytesANumber * static_cast<std::uint64_t>(kept_) * (table_->columns.size() + 1));
  out.setPrecision(kCsvPrecision);
  out << "run";
  for (const RunColumn& column : table_->columns) out << ',' << headingOf(*table_, column);
  out << '\n';
  for (std::int32_t run = 0; run < table_->runs && out.ok(); ++run) {
    if (!keeps(run)) continue;
    out << run + 1;
    for (const RunColumn& column : table_->columns) out << ',' << column.values[static_cast<std::size_t>(run)];
    out << '\n';
  }
  if (out.commit()) return true;
  message = withProblem(kCannotSave, out);
  return false;
}

}  // namespace tarvex
