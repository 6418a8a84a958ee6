// The window of the sample store: its two shapes, and what moves between it and the working files.

#include <algorithm>
#include <iterator>

#include "base/LargePages.h"
#include "base/Memory.h"
#include "base/sampValues.h"

namespace tarvex {
namespace {

constexpr std::uint64_t kValueBytes = sizeof(double);

}  // namespace

std::uint64_t sampValues::columnOffset(std::int64_t block, std::int64_t column, std::int64_t rowInBlock) const {
  return static_cast<std::uint64_t>((block * columns_ + column) * blockRows_ + rowInBlock) * kValueBytes;
}

std::size_t sampValues::rowBytes() const {
  return static_cast<std::size_t>(columns_) * kValueBytes;
}

bool sampValues::resizeValues(std::vector<double>& values, std::int64_t size) const {
  const auto count = static_cast<std::size_t>(size);
  const auto resize = [&] {
    if (values.capacity() < count) {
      values.reserve(count);
      useLargePages(values.data(), count * kValueBytes);
    }
    values.resize(count);
  };
  return fitsInMemory(resize) || setError(kNotEnoughMemory);
}

bool sampValues::readFrom(const WorkingFile& file, std::uint64_t offset, double* to, std::int64_t count) const {
  return file.read(offset, to, static_cast<std::size_t>(count) * kValueBytes) || setError(file.errorText());
}

bool sampValues::writeTo(WorkingFile& file, std::uint64_t offset, const double* from, std::int64_t count) const {
  return file.write(offset, from, static_cast<std::size_t>(count) * kValueBytes) || setError(file.errorText());
}

bool sampValues::ensureMode(bool columnMode, const Progress& progress) const {
  if (columnMode == columnMode_) return true;
  if (dirty_ && !flush()) return false;
  cachedColumn_ = -1;
  loaded_ = false;
  cache_ = std::vector<double>();  // `{}` would keep its memory
  if (!patchRowFile(progress)) return false;
  columnMode_ = columnMode;
  firstRow_ = 0;
  lastRow_ = columnMode ? -1 : blockRows_ - 1;
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
  if (!readFrom(rowFile_, static_cast<std::uint64_t>(firstRow) * rowBytes(), cache_.data(),
                std::min(count, held) * columns_))
    return false;
  firstRow_ = firstRow;
  lastRow_ = lastRow;
  loaded_ = true;
  return true;
}

// The whole window goes to both files, rows not yet used included; of a table that fits the window, what it holds.
bool sampValues::flushRows() const {
  const std::int64_t held = fitsWindow() ? rows_ : blockRows_;
  std::array<std::vector<double>, kColumnsTogether> gathered;
  const std::int32_t together = std::min(kColumnsTogether, columns_);
  for (std::int32_t i = 0; i < together; ++i)
    if (!resizeValues(gathered[static_cast<std::size_t>(i)], held)) return false;
  if (!writeTo(rowFile_, static_cast<std::uint64_t>(firstRow_) * rowBytes(), cache_.data(), held * columns_))
    return false;
  for (std::int32_t column = 0; column < columns_; column += together) {
    const std::int32_t count = std::min(together, columns_ - column);
    gatherColumns(column, count, gathered);
    for (std::int32_t i = 0; i < count; ++i)
      if (!flushBlockColumn(column + i, gathered[static_cast<std::size_t>(i)])) return false;
  }
  dirty_ = false;
  return true;
}

// Neighbouring columns of the window, in one pass through it where they are as many as usual.
void sampValues::gatherColumns(std::int32_t first, std::int32_t count,
                               std::array<std::vector<double>, kColumnsTogether>& gathered) const {
  const std::size_t rows = gathered[0].size();
  const double* from = cache_.data() + first;
  if (count == kColumnsTogether) {
    double* const to[] = {gathered[0].data(), gathered[1].data(), gathered[2].data(), gathered[3].data()};
    static_assert(std::size(to) == kColumnsTogether);
    for (std::size_t row = 0; row < rows; ++row, from += columns_)
      for (std::size_t i = 0; i < kColumnsTogether; ++i) to[i][row] = from[i];
    return;
  }
  for (std::int32_t i = 0; i < count; ++i)
    for (std::size_t row = 0; row < rows; ++row)
      gathered[static_cast<std::size_t>(i)][row] =
          from[row * static_cast<std::size_t>(columns_) + static_cast<std::size_t>(i)];
}

bool sampValues::flushBlockColumn(std::int32_t column, const std::vector<double>& gathered) const {
  const std::int64_t block = firstRow_ / blockRows_;
  const std::int64_t rowInBlock = firstRow_ % blockRows_;
  if (rowInBlock == 0)
    return writeTo(columnFile_, columnOffset(block, column, 0), gathered.data(),
                   static_cast<std::int64_t>(gathered.size()));
  const std::int64_t first = blockRows_ - rowInBlock;
  if (!writeTo(columnFile_, columnOffset(block, column, rowInBlock), gathered.data(), first)) return false;
  // Kept: the rest of a window that straddles two blocks lands at this offset, not at the column's part of the next
  // block; samples of large tables were made this way. No more than was gathered is written.
  const std::int64_t offset = ((block + 1) * blockRows_ + column) * columns_;
  const std::int64_t rest = std::min<std::int64_t>(lastRow_ > rows_ ? rowInBlock - 1 : blockRows_, rowInBlock);
  return writeTo(columnFile_, static_cast<std::uint64_t>(offset) * kValueBytes, gathered.data() + first, rest);
}

// transfer(offset in the column file, place in the window, rows) for each block's part of one column.
template <class Transfer>
bool sampValues::forColumnParts(std::int32_t column, Transfer transfer) const {
  for (std::int64_t row = 0; row < rows_; row += blockRows_) {
    const std::int64_t count = std::min<std::int64_t>(blockRows_, rows_ - row);
    if (!transfer(columnOffset(row / blockRows_, column, 0), cache_.data() + row, count)) return false;
  }
  return true;
}

bool sampValues::loadColumn(std::int32_t column) const {
  cachedColumn_ = -1;
  if (!resizeValues(cache_, rows_)) return false;
  const bool isBlank = !blank_.empty() && blank_[static_cast<std::size_t>(column)];
  if (isBlank) std::fill(cache_.begin(), cache_.end(), 0.0);
  const bool ok = isBlank || forColumnParts(column, [this](std::uint64_t offset, double* part, std::int64_t count) {
                    return readFrom(columnFile_, offset, part, count);
                  });
  if (!ok) return false;
  cachedColumn_ = column;
  return true;
}

// Only the column file is complete again when this returns true: the row file takes its part of every changed column
// in one go before the next operation on rows. Until then the column stays dirty and is written anew.
bool sampValues::flushColumn() const {
  if (!fitsInMemory([this] { unpatched_.resize(static_cast<std::size_t>(columns_)); }))
    return setError(kNotEnoughMemory);
  if (!blank_.empty()) blank_[static_cast<std::size_t>(cachedColumn_)] = false;
  const bool ok = forColumnParts(cachedColumn_, [this](std::uint64_t offset, const double* part, std::int64_t count) {
    return writeTo(columnFile_, offset, part, count);
  });
  if (!ok) return false;
  unpatched_[static_cast<std::size_t>(cachedColumn_)] = true;
  dirty_ = false;
  return true;
}

// Brings the changed columns into the row file, block by block. After a failure it starts anew.
bool sampValues::patchRowFile(const Progress& progress) const {
  if (unpatched_.empty()) return true;
  const std::int64_t most = std::min(blockRows_, rows_);
  std::vector<double> part;
  std::vector<double> rows;
  if (!resizeValues(part, most) || !resizeValues(rows, most * columns_)) return false;
  for (std::int64_t row = 0; row < rows_; row += blockRows_) {
    if (!progress.report(row, std::int64_t{rows_})) return setError(kStoppedText);
    if (!patchRows(row, part, rows)) return false;
  }
  unpatched_ = {};
  blank_ = {};
  return true;
}

// One block's rows; the two buffers hold one column and all columns of a block.
bool sampValues::patchRows(std::int64_t firstRow, std::vector<double>& part, std::vector<double>& rows) const {
  const std::size_t columns = unpatched_.size();
  const std::int64_t count = std::min<std::int64_t>(blockRows_, rows_ - firstRow);
  const std::uint64_t offset = static_cast<std::uint64_t>(firstRow) * rowBytes();
  const bool all = std::find(unpatched_.begin(), unpatched_.end(), false) == unpatched_.end();
  if (!all && !readFrom(rowFile_, offset, rows.data(), count * columns_)) return false;
  for (std::size_t column = 0; column < columns; ++column) {
    if (!unpatched_[column]) continue;
    const std::uint64_t place = columnOffset(firstRow / blockRows_, static_cast<std::int64_t>(column), 0);
    if (!readFrom(columnFile_, place, part.data(), count)) return false;
    for (std::size_t i = 0; i < static_cast<std::size_t>(count); ++i) rows[i * columns + column] = part[i];
  }
  return writeTo(rowFile_, offset, rows.data(), count * columns_);
}

}  // namespace tarvex
