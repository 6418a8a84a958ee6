// The window of the sample store: its two shapes, and what moves between it and the working files.

#include <algorithm>
#include <new>
#include <stdexcept>

#include "base/sampValues.h"

namespace tarvex {
namespace {

constexpr std::uint64_t kValueBytes = sizeof(double);
constexpr std::int32_t kPatchRows = 100;  // of the row file at a time, when a column is written back

}  // namespace

std::uint64_t sampValues::columnOffset(std::int64_t block, std::int64_t column, std::int64_t rowInBlock) const {
  return static_cast<std::uint64_t>((block * columns_ + column) * blockRows_ + rowInBlock) * kValueBytes;
}

std::size_t sampValues::rowBytes() const {
  return static_cast<std::size_t>(columns_) * kValueBytes;
}

bool sampValues::resizeValues(std::vector<double>& values, std::int64_t size) const {
  try {
    values.resize(static_cast<std::size_t>(size));
    return true;
  } catch (const std::bad_alloc&) {
    return setError("Not enough memory.");
  } catch (const std::length_error&) {
    return setError("Not enough memory.");
  }
}

bool sampValues::ensureMode(bool columnMode) const {
  if (columnMode == columnMode_) return true;
  if (dirty_ && !flush()) return false;
  columnMode_ = columnMode;
  cachedColumn_ = -1;
  firstRow_ = 0;
  lastRow_ = columnMode ? -1 : blockRows_ - 1;
  loaded_ = false;
  cache_ = {};
  return columnMode || fitsWindow() || loadRows(0);
}

// The window stays where it is as long as it holds the row; else it starts exactly there.
bool sampValues::ensureRow(std::int64_t row) const {
  if (row >= firstRow_ && row <= lastRow_) return loaded_ || loadRows(firstRow_);
  if (dirty_ && !flush()) return false;
  return loadRows(row);
}

bool sampValues::ensureColumn(std::int32_t column) const {
  if (cachedColumn_ == column) return true;
  if (dirty_ && !flush()) return false;
  return loadColumn(column);
}

bool sampValues::flush() const {
  return columnMode_ ? flushColumn() : flushRows();
}

bool sampValues::loadRows(std::int64_t firstRow) const {
  const std::int64_t lastRow = firstRow + blockRows_ - 1;
  const std::int64_t count = lastRow > rows_ ? rows_ - firstRow : blockRows_;
  const std::int64_t held = fitsWindow() ? rows_ : blockRows_;
  loaded_ = false;
  if (!resizeValues(cache_, held * columns_)) return false;
  if (!rowFile_.read(static_cast<std::uint64_t>(firstRow) * rowBytes(), cache_.data(),
                     static_cast<std::size_t>(std::min(count, held)) * rowBytes()))
    return setReadError();
  firstRow_ = firstRow;
  lastRow_ = lastRow;
  loaded_ = true;
  return true;
}

// The whole window goes to both files, rows not yet used included; of a table that fits the window, what it holds.
bool sampValues::flushRows() const {
  const std::int64_t held = fitsWindow() ? rows_ : blockRows_;
  if (!rowFile_.write(static_cast<std::uint64_t>(firstRow_) * rowBytes(), cache_.data(),
                      static_cast<std::size_t>(held) * rowBytes()))
    return setWriteError();
  std::vector<double> gathered(static_cast<std::size_t>(held));
  for (std::int32_t column = 0; column < columns_; ++column) {
    const double* from = cache_.data() + column;
    for (double& value : gathered) {
      value = *from;
      from += columns_;
    }
    if (!flushBlockColumn(column, gathered)) return setWriteError();
  }
  dirty_ = false;
  return true;
}

bool sampValues::flushBlockColumn(std::int32_t column, const std::vector<double>& gathered) const {
  const std::int64_t block = firstRow_ / blockRows_;
  const std::int64_t rowInBlock = firstRow_ % blockRows_;
  if (rowInBlock == 0)
    return columnFile_.write(columnOffset(block, column, 0), gathered.data(), gathered.size() * kValueBytes);
  const std::int64_t first = blockRows_ - rowInBlock;
  if (!columnFile_.write(columnOffset(block, column, rowInBlock), gathered.data(),
                         static_cast<std::size_t>(first) * kValueBytes))
    return false;
  // Kept: the rest of a window that straddles two blocks lands at this offset, not at the column's part of the next
  // block; samples of large tables were made this way. No more than was gathered is written.
  const std::int64_t offset = ((block + 1) * blockRows_ + column) * columns_;
  const std::int64_t rest = std::min<std::int64_t>(lastRow_ > rows_ ? rowInBlock - 1 : blockRows_, rowInBlock);
  return columnFile_.write(static_cast<std::uint64_t>(offset) * kValueBytes, gathered.data() + first,
                           static_cast<std::size_t>(rest) * kValueBytes);
}

// transfer(offset in the column file, place in the window, rows) for each block's part of one column.
template <class Transfer>
bool sampValues::forColumnParts(std::int32_t column, Transfer transfer) const {
  for (std::int64_t row = 0; row < rows_; row += blockRows_) {
    const std::int64_t count = std::min<std::int64_t>(blockRows_, rows_ - row);
    if (!transfer(columnOffset(row / blockRows_, column, 0), cache_.data() + row, static_cast<std::size_t>(count)))
      return false;
  }
  return true;
}

bool sampValues::loadColumn(std::int32_t column) const {
  cachedColumn_ = -1;
  if (!resizeValues(cache_, rows_)) return false;
  const bool ok = forColumnParts(column, [this](std::uint64_t offset, double* part, std::size_t count) {
    return columnFile_.read(offset, part, count * kValueBytes);
  });
  if (!ok) return setReadError();
  cachedColumn_ = column;
  return true;
}

// Both files are complete again when this returns true; until then the column stays dirty and is written anew.
bool sampValues::flushColumn() const {
  const bool ok = forColumnParts(cachedColumn_, [this](std::uint64_t offset, const double* part, std::size_t count) {
    return columnFile_.write(offset, part, count * kValueBytes);
  });
  if (!ok) return setWriteError();
  const std::size_t columns = static_cast<std::size_t>(columns_);
  const std::int32_t patchRows = std::min({kPatchRows, blockRows_, rows_});  // very wide rows: no more than a window
  std::vector<double> rows;
  if (!resizeValues(rows, static_cast<std::int64_t>(patchRows) * columns_)) return false;
  for (std::int64_t row = 0; row < rows_; row += patchRows) {
    const std::size_t count = static_cast<std::size_t>(std::min<std::int64_t>(patchRows, rows_ - row));
    const std::uint64_t offset = static_cast<std::uint64_t>(row) * rowBytes();
    if (!rowFile_.read(offset, rows.data(), count * rowBytes())) return setReadError();
    for (std::size_t i = 0; i < count; ++i)
      rows[i * columns + static_cast<std::size_t>(cachedColumn_)] = cache_[static_cast<std::size_t>(row) + i];
    if (!rowFile_.write(offset, rows.data(), count * rowBytes())) return setWriteError();
  }
  dirty_ = false;
  return true;
}

// Makes the row file from a complete column file.
bool sampValues::rowsFromColumns() const {
  std::vector<double> part(static_cast<std::size_t>(blockRows_));
  std::vector<double> rows;
  if (!resizeValues(rows, static_cast<std::int64_t>(blockRows_) * columns_)) return false;
  const std::size_t columns = static_cast<std::size_t>(columns_);
  for (std::int64_t row = 0; row < rows_; row += blockRows_) {
    const std::size_t count = static_cast<std::size_t>(std::min<std::int64_t>(blockRows_, rows_ - row));
    for (std::size_t column = 0; column < columns; ++column) {
      if (!columnFile_.read(columnOffset(row / blockRows_, static_cast<std::int64_t>(column), 0), part.data(),
                            count * kValueBytes))
        return setReadError();
      for (std::size_t i = 0; i < count; ++i) rows[i * columns + column] = part[i];
    }
    if (!rowFile_.write(static_cast<std::uint64_t>(row) * rowBytes(), rows.data(), count * rowBytes()))
      return setWriteError();
  }
  return loadRows(0);
}

}  // namespace tarvex
