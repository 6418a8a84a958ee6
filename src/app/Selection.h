#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "app/Notifier.h"
#include "base/Progress.h"
#include "plots/RunTable.h"

namespace tarvex {

// Which runs of a study a user has in view: some or all of them, less those that filters leave out. One object for all
// charts and tables of the study: each shows what it keeps, changes it, and is told of every change. It looks at the
// runs as they were when it was made, whatever becomes of the project (see RunController::readRuns).
class Selection {
 public:
  using Changed = Notifier<>;

  // All runs of the table, which charts may hold, too. `sample` is what tells its runs from those of another sample.
  Selection(std::shared_ptr<const RunTable> table, std::uint64_t sample);

  const std::shared_ptr<const RunTable>& table() const { return table_; }
  std::uint64_t sample() const { return sample_; }

  // What is kept. Runs count from 0.
  std::int32_t keptCount() const { return kept_; }
  bool keeps(std::int32_t run) const;
  std::vector<std::int32_t> runs() const;  // upwards
  // A mark for each run that is not kept, as RunMarks takes them; valid until the next change.
  const std::vector<std::uint8_t>& dropped() const { return dropped_; }
  const std::vector<RunRange>& filters() const { return filters_; }  // of each column one at most
  const std::vector<RunRange>& region() const { return region_; }    // none, or two

  // Changes. Filters, the region and the runs that were taken must all agree to keep a run. A range that is none is
  // refused with the system's text, and nothing changes. Require: columns and runs that there are.

  // The filter of a column, in place of the one that it had.
  [[nodiscard]] bool setFilter(std::size_t column, double lower, double upper, std::string& message);
  void clearFilter(std::size_t column);
  // A frame in the plane of two columns; its upper bounds don't belong to it.
  [[nodiscard]] bool setRegion(RunRange x, RunRange y, std::string& message);
  void clearRegion();
  // Takes these runs, or all but these, before any filter; `take` adds or drops a single one.
  void takeRuns(const std::vector<std::int32_t>& runs);
  void take(std::int32_t run, bool taken);
  // Keeps what was dropped and the other way round; no filter is left.
  void complement();
  // All runs, no filters.
  void clear();
  // More columns of the same runs behind those that there are, which keep their places. The table is then another one.
  // Requires: as many runs.
  void addColumns(const RunTable& more);

  // Calls the listener after every change, as long as the subscription is held.
  [[nodiscard]] Changed::Subscription subscribe(Changed::Listener listener) {
    return notifier_.subscribe(std::move(listener));
  }

  // Writes the kept runs as comma-separated values: a line of names, then of each run its number, from 1, and its value
  // in each column of the table, to the last digit. False, with the message for the user, when the file can't be
  // written, and after a stop.
  [[nodiscard]] bool saveCsv(const std::string& path, std::string& message, const Progress& progress = {}) const;

 private:
  void update();

  std::shared_ptr<const RunTable> table_;
  std::uint64_t sample_;
  std::vector<std::uint8_t> out_;  // of each run, 1 where it isn't taken
  std::vector<RunRange> filters_;
  std::vector<RunRange> region_;
  std::vector<std::uint8_t> dropped_;
  std::int32_t kept_ = 0;
  Changed notifier_;
};

}  // namespace tarvex
