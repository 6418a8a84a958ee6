// The text form of the sample store.

#include <algorithm>
#include <cerrno>

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
  const std::int32_t lines = byFactor ? columns_ : rows_;
  for (std::int32_t i = 0; i < lines && ok && out.ok(); ++i) {
    ok = byFactor ? ensureColumn(i) : ensureRow(i);
    if (!ok) break;
    const double* value = byFactor ? cache_.data() : windowRow(i);
    const double* const end = value + (byFactor ? rows_ : columns_);
    for (; value != end; ++value) out << *value << '\t';
    out << '\n';
  }
  if (!ok) out.setError(systemError());
  out.setPrecision(precision);
}

void sampValues::read(TextReader& in) {
  clear();
  std::int32_t rows = 0;
  std::int32_t columns = 0;
  std::int32_t order = 0;
  in >> rows >> columns >> order;
  if (rows < 0 || columns < 0 || (rows > 0 && columns == 0)) in.setFail();
  if (order != 0 && order != 1) in.setFail();
  in.checkCount(static_cast<std::int64_t>(rows) * columns, kLeastNumberBytes);
  if (in.ok() && columns > 0) {
    const bool ok = allocate(columns) && (order == 0 ? readByRow(in, rows) : readByFactor(in, rows));
    if (!ok) in.setFail();
  }
  in.skipLine();
  if (in.ok()) {
    order_ = order;
    return;
  }
  const std::string error = errorText_;
  clear();
  errorText_ = error;
}

bool sampValues::readByRow(TextReader& in, std::int32_t rows) {
  std::vector<double> row;
  if (rows > 0 && !resizeValues(row, columns_)) return false;
  for (std::int32_t i = 0; i < rows; ++i) {
    for (double& value : row) in >> value;
    if (in.fail() || addRow(row.data()) == 0) return false;
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
  std::vector<double> part(static_cast<std::size_t>(blockRows_));
  for (std::int32_t column = 0; column < columns_; ++column) {
    for (std::int64_t row = 0; row < rows; row += blockRows_) {
      const std::size_t count = static_cast<std::size_t>(std::min<std::int64_t>(blockRows_, rows - row));
      for (std::size_t i = 0; i < count; ++i) in >> part[i];
      if (in.fail()) return false;
      if (!columnFile_.write(columnOffset(row / blockRows_, column, 0), part.data(), count * sizeof(double)))
        return setWriteError();
    }
  }
  rows_ = rows;
  return rowsFromColumns();
}

// The errno behind a failed read or write of a working file.
int sampValues::systemError() const {
  if (rowFile_.error() != 0) return rowFile_.error();
  return columnFile_.error() != 0 ? columnFile_.error() : ENOMEM;
}

}  // namespace tarvex
