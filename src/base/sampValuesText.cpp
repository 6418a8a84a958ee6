// The text form of the sample store.

#include <algorithm>

#include "base/TextReader.h"
#include "base/TextWriter.h"
#include "base/sampValues.h"

namespace tarvex {
namespace {

constexpr std::uint64_t kLeastNumberBytes = 2;  // a digit and what parts it from the number before

}  // namespace

void sampValues::write(TextWriter& out) const {
  const int precision = out.setPrecision(kTextPrecision);
  out << rows_ << '\n' << columns_ << '\n' << order_ << '\n';
  const bool byFactor = order_ == 1;
  bool ok = ensureMode(byFactor);
  for (std::int32_t column = 0; byFactor && column < columns_ && ok && out.ok(); ++column) {
    ok = ensureColumn(column);
    if (ok) out.writeNumbers(cache_.data(), static_cast<std::size_t>(rows_), '\t') << '\n';
  }
  for (std::int64_t row = 0; !byFactor && row < rows_ && ok && out.ok();) {
    ok = ensureRow(row);
    if (!ok) break;
    const std::int64_t end = std::min<std::int64_t>(lastRow_ + 1, rows_);
    const auto width = static_cast<std::size_t>(columns_);
    out.writeNumbers(windowRow(row), static_cast<std::size_t>(end - row) * width, '\t', width);
    row = end;
  }
  if (!ok) out.refuse(errorText_);
  out.setPrecision(precision);
}

bool sampValues::read(TextReader& in) {
  clear();
  const bool done = readTable(in);
  in.skipLine();
  if (done && in.ok()) return true;
  const std::string error = errorText_;
  clear();
  errorText_ = error;
  return false;
}

bool sampValues::readTable(TextReader& in) {
  std::int32_t rows = 0;
  std::int32_t columns = 0;
  std::int32_t order = 0;
  in.expect("the number of runs") >> rows;
  if (rows < 0) return in.refuse("the number of runs must not be below 0, it is " + std::to_string(rows));
  in.expect("the number of factors") >> columns;
  if (columns < 0 || (rows > 0 && columns == 0))
    return in.refuse("the number of factors must be at least " + std::string(rows > 0 ? "1" : "0") + ", it is " +
                     std::to_string(columns));
  in.expect("the order of the table") >> order;
  if (order != 0 && order != 1)
    return in.refuse("the order of the table must be 0 (by run) or 1 (by factor), it is " + std::to_string(order));
  if (!in.checkCount(static_cast<std::int64_t>(rows) * columns, kLeastNumberBytes)) return false;
  const bool done = columns == 0 || (allocate(columns) && (order == 0 ? readByRow(in, rows) : readByFactor(in, rows)));
  if (!done) return in.refuse(errorText_);  // of the store; what the reader found wrong stands
  order_ = order;
  return true;
}

bool sampValues::readByRow(TextReader& in, std::int32_t rows) {
  // A file that holds less than it promises shall not take the room of the promise first.
  constexpr std::int32_t kValuesAtOnce = 4096;
  while (rows_ < rows) {
    std::int32_t room = 0;
    if (!openEnd(std::clamp(kValuesAtOnce / columns_, 1, rows - rows_), room)) return false;
    dirty_ = true;
    const std::size_t values = static_cast<std::size_t>(room) * static_cast<std::size_t>(columns_);
    if (in.readNumbers(windowRow(rows_), values).fail()) return false;
    rows_ += room;
  }
  return true;
}

bool sampValues::readByFactor(TextReader& in, std::int32_t rows) {
  if (rows > blockRows_) return readColumnsToFile(in, rows);
  if (!resizeValues(cache_, static_cast<std::int64_t>(rows) * columns_)) return false;
  rows_ = rows;
  dirty_ = rows > 0;
  for (std::int32_t column = 0; column < columns_ && in.ok(); ++column)
    for (std::int32_t row = 0; row < rows; ++row) in >> windowRow(row)[column];
  return in.ok();
}

// Each column goes straight to its parts of the column file; the row file is made from them at the end.
bool sampValues::readColumnsToFile(TextReader& in, std::int32_t rows) {
  std::vector<double> part;
  if (!resizeValues(part, blockRows_)) return false;
  for (std::int32_t column = 0; column < columns_; ++column) {
    for (std::int64_t row = 0; row < rows; row += blockRows_) {
      const std::int64_t count = std::min<std::int64_t>(blockRows_, rows - row);
      if (in.readNumbers(part.data(), static_cast<std::size_t>(count)).fail()) return false;
      if (!writeTo(columnFile_, columnOffset(row / blockRows_, column, 0), part.data(), count)) return false;
    }
  }
  rows_ = rows;
  columnMode_ = true;
  unpatched_.assign(static_cast<std::size_t>(columns_), true);
  return ensureMode(false);
}

}  // namespace tarvex
