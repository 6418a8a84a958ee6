#include "base/sampValues.h"

#include <algorithm>
#include <limits>
#include <utility>

#include "base/Memory.h"
#include "base/WorkPace.h"

namespace tarvex {
namespace {

constexpr const char* kWrongElement = "Wrong element position.";
constexpr const char* kWrongLine = "Wrong line position.";

}  // namespace

sampValues::sampValues() = default;
sampValues::~sampValues() = default;

sampValues::sampValues(sampValues&& other) noexcept {
  *this = std::move(other);
}

sampValues& sampValues::operator=(sampValues&& other) noexcept {
  if (this == &other) return *this;
  rowFile_ = std::move(other.rowFile_);
  columnFile_ = std::move(other.columnFile_);
  cache_ = std::exchange(other.cache_, {});
  firstRow_ = std::exchange(other.firstRow_, 0);
  lastRow_ = std::exchange(other.lastRow_, -1);
  loaded_ = std::exchange(other.loaded_, false);
  dirty_ = std::exchange(other.dirty_, false);
  columnMode_ = std::exchange(other.columnMode_, false);
  cachedColumn_ = std::exchange(other.cachedColumn_, -1);
  unpatched_ = std::exchange(other.unpatched_, {});
  blank_ = std::exchange(other.blank_, {});
  rows_ = std::exchange(other.rows_, 0);
  columns_ = std::exchange(other.columns_, 0);
  blockRows_ = std::exchange(other.blockRows_, 0);
  order_ = other.order_;
  errorText_.swap(other.errorText_);
  return *this;
}

bool sampValues::setError(const std::string& text) const {
  errorText_ = text;
  return false;
}

bool sampValues::allocate(std::int32_t columns) {
  if (columns_ != 0) return setError("Column number already set. Can't allocate a new sampValues.");
  if (columns < 1) return setError("Invalid number of factors");
  clear();
  columns_ = columns;
  blockRows_ = cacheLimit / columns + 1;
  lastRow_ = blockRows_ - 1;
  loaded_ = true;  // nothing to load yet
  return true;
}

void sampValues::clear() {
  const std::int32_t order = order_;
  *this = sampValues();
  order_ = order;
}

bool sampValues::assign(const sampValues& other, const Progress& progress) {
  if (this == &other) return true;
  WorkPace pace(progress, other.rows_, other.columns_);
  sampValues copy;
  copy.order_ = other.order_;
  if (other.columns_ > 0 && !copy.allocate(other.columns_)) return setError(copy.errorText_);
  for (std::int32_t row = 0; row < other.rows_; ++row) {
    if (!pace.step()) return setError(kStoppedText);
    if (!other.ensureMode(false) || !other.ensureRow(row)) return setError(other.errorText_);
    if (copy.addRow(other.windowRow(row)) == 0) return setError(copy.errorText_);
  }
  *this = std::move(copy);
  return true;
}

std::int32_t sampValues::addRow(const double* values) {
  return addRows(values, 1) ? rows_ : 0;
}

bool sampValues::addRows(const double* values, std::int32_t count) {
  if (columns_ == 0 || count > std::numeric_limits<std::int32_t>::max() - rows_) return setError(kWrongLine);
  const auto width = static_cast<std::size_t>(columns_);
  std::int32_t room = 0;
  for (; count > 0; count -= room) {
    if (!openEnd(count, room)) return false;
    std::copy_n(values, static_cast<std::size_t>(room) * width, windowRow(rows_));
    values += static_cast<std::size_t>(room) * width;
    dirty_ = true;
    rows_ += room;
  }
  return true;
}

// Brings the window to the table's end, with memory for `room` of `count` more rows, 1 at least.
bool sampValues::openEnd(std::int32_t count, std::int32_t& room) {
  if (!ensureMode(false)) return false;
  if (rows_ > lastRow_) {
    if (dirty_ && !flush()) return false;
    firstRow_ = rows_;
    lastRow_ = firstRow_ + blockRows_ - 1;
    loaded_ = true;
  } else if (!loaded_ && !loadRows(firstRow_)) {
    return false;
  }
  room = static_cast<std::int32_t>(std::min<std::int64_t>(count, lastRow_ + 1 - rows_));
  const std::int64_t whole = static_cast<std::int64_t>(blockRows_) * columns_;
  const std::int64_t needed = rows_ < blockRows_ ? (std::int64_t{rows_} + room) * columns_ : whole;
  return static_cast<std::int64_t>(cache_.size()) >= needed || resizeValues(cache_, std::min(whole, 2 * needed));
}

// The files give zeros for what was never written, and the row file takes all columns before it is read.
bool sampValues::addZeroRows(std::int32_t count) {
  if (columns_ == 0 || rows_ != 0 || count < 1) return setError(kWrongLine);
  if (!ensureMode(true)) return false;
  const auto all = static_cast<std::size_t>(columns_);
  const auto mark = [&] {
    unpatched_.assign(all, true);
    blank_.assign(all, true);
  };
  if (!fitsInMemory(mark)) return setError(kNotEnoughMemory);
  rows_ = count;
  return true;
}

bool sampValues::isCell(std::int32_t row, std::int32_t column) const {
  return row >= 0 && row < rows_ && column >= 0 && column < columns_;
}

double* sampValues::windowRow(std::int64_t row) const {
  return cache_.data() + static_cast<std::size_t>(row - firstRow_) * static_cast<std::size_t>(columns_);
}

bool sampValues::setValue(std::int32_t row, std::int32_t column, double value) {
  if (!isCell(row, column)) return setError("Wrong element position to modify");
  if (!ensureMode(false) || !ensureRow(row)) return false;
  windowRow(row)[column] = value;
  dirty_ = true;
  return true;
}

bool sampValues::getValue(std::int32_t row, std::int32_t column, double& value) const {
  if (!isCell(row, column)) return setError(kWrongElement);
  if (!ensureMode(false) || !ensureRow(row)) return false;
  value = windowRow(row)[column];
  return true;
}

bool sampValues::setRow(std::int32_t row, const double* values) {
  if (!isCell(row, 0)) return setError(kWrongLine);
  if (!ensureMode(false) || !ensureRow(row)) return false;
  std::copy_n(values, columns_, windowRow(row));
  dirty_ = true;
  return true;
}

bool sampValues::getRow(std::int32_t row, double* values) const {
  if (!isCell(row, 0)) return setError(kWrongLine);
  if (!ensureMode(false) || !ensureRow(row)) return false;
  std::copy_n(windowRow(row), columns_, values);
  return true;
}

bool sampValues::getRows(std::int32_t row, std::int32_t count, double* values) const {
  if (count < 1) return count == 0;
  if (!isCell(row, 0) || count > rows_ - row) return setError(kWrongLine);
  if (!ensureMode(false)) return false;
  while (count > 0) {
    if (!ensureRow(row)) return false;
    const auto here = static_cast<std::int32_t>(std::min<std::int64_t>(count, lastRow_ - row + 1));
    values = std::copy_n(windowRow(row), static_cast<std::int64_t>(here) * columns_, values);
    row += here;
    count -= here;
  }
  return true;
}

double* sampValues::rowPointer(std::int32_t row) {
  if (!isCell(row, 0)) {
    setError(kWrongLine);
    return nullptr;
  }
  if (!ensureMode(false)) return nullptr;
  // Kept: a window that was only looked at is flushed here as well.
  if ((row < firstRow_ || row > lastRow_) && loaded_ && !flushRows()) return nullptr;
  if (!ensureRow(row)) return nullptr;
  dirty_ = true;
  return windowRow(row);
}

bool sampValues::setColumnValue(std::int32_t row, std::int32_t column, double value) {
  if (!isCell(row, column)) return setError(kWrongElement);
  if (!ensureMode(true) || !ensureColumn(column)) return false;
  cache_[static_cast<std::size_t>(row)] = value;
  dirty_ = true;
  return true;
}

bool sampValues::getColumnValue(std::int32_t row, std::int32_t column, double& value) const {
  if (!isCell(row, column)) return setError(kWrongElement);
  if (!ensureMode(true) || !ensureColumn(column)) return false;
  value = cache_[static_cast<std::size_t>(row)];
  return true;
}

bool sampValues::getColumn(std::int32_t column, std::vector<double>& values) const {
  if (column < 0 || column >= columns_) return setError(kWrongElement);
  if (!ensureMode(true) || !ensureColumn(column)) return false;
  if (!resizeValues(values, rows_)) return false;
  std::copy(cache_.begin(), cache_.end(), values.begin());
  return true;
}

const double* sampValues::columnValues(std::int32_t column) const {
  if (column < 0 || column >= columns_) {
    setError(kWrongElement);
    return nullptr;
  }
  if (!ensureMode(true) || !ensureColumn(column)) return nullptr;
  static constexpr double kNoRow = 0.0;
  return rows_ > 0 ? cache_.data() : &kNoRow;
}

bool sampValues::setColumn(std::int32_t column, std::vector<double>&& values) {
  if (column < 0 || column >= columns_ || values.size() != static_cast<std::size_t>(rows_))
    return setError(kWrongElement);
  if (!ensureMode(true)) return false;
  if (cachedColumn_ != column && dirty_ && !flush()) return false;
  cache_.swap(values);
  cachedColumn_ = column;
  dirty_ = true;
  return true;
}

double* sampValues::columnPointer(std::int32_t column) {
  if (!isCell(0, column)) {
    setError(kWrongElement);
    return nullptr;
  }
  if (!ensureMode(true) || !ensureColumn(column)) return nullptr;
  dirty_ = true;
  return cache_.data();
}

bool sampValues::setOrder(std::int32_t order) {
  if (order != 0 && order != 1) return false;
  order_ = order;
  return true;
}

bool sampValues::setColumnMode(bool columnMode, const Progress& progress) const {
  return ensureMode(columnMode, progress);
}

}  // namespace tarvex
