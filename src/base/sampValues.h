#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "base/WorkingFile.h"

namespace tarvex {

class TextReader;
class TextWriter;

// The sample store: a table of doubles of any size, rows are runs, columns are factors, kept in two working files
// behind a window of about two megabytes. One file holds the table by row, the other in blocks of `blockRows` rows,
// each block column after column, so that a pass over rows and a pass over a column both read contiguous bytes.
//
// Operations of the row family work on a window of rows, those of the column family on one whole column; the store
// changes between the two by itself. Indices count from 0. Operations return false on failure, with the reason in
// errorText, and leave the table as it was.
class sampValues {
 public:
  static constexpr std::int32_t cacheLimit = 262144;  // doubles that the window aims at
  static constexpr int kTextPrecision = 10;           // significant digits of the text form

  sampValues();
  ~sampValues();
  sampValues(const sampValues& other);  // a table of its own, by row
  sampValues& operator=(const sampValues& other);
  sampValues(sampValues&&) noexcept;
  sampValues& operator=(sampValues&&) noexcept;

  [[nodiscard]] bool allocate(std::int32_t columns);
  void clear();  // empty and without width; `order` stays

  // Appends one row of columns() doubles. The new row count; 0 on failure.
  std::int32_t addRow(const double* values);

  bool setValue(std::int32_t row, std::int32_t column, double value);
  bool getValue(std::int32_t row, std::int32_t column, double& value) const;
  bool setRow(std::int32_t row, const double* values);
  bool getRow(std::int32_t row, double* values) const;
  // The row inside the window, for change in place; valid until the next call on the store. Null out of range.
  double* rowPointer(std::int32_t row);

  bool setColumnValue(std::int32_t row, std::int32_t column, double value);
  bool getColumnValue(std::int32_t row, std::int32_t column, double& value) const;
  // One whole column, rows() doubles, through the column window.
  bool getColumn(std::int32_t column, std::vector<double>& values) const;
  bool setColumn(std::int32_t column, const std::vector<double>& values);

  bool setOrder(std::int32_t order);  // 0 by run, 1 by factor: how the text form lists the table
  bool setColumnMode(bool columnMode) const;
  [[nodiscard]] bool assign(const sampValues& other);  // its `order` and all its rows

  std::int32_t rows() const { return rows_; }
  std::int32_t columns() const { return columns_; }
  std::int32_t order() const { return order_; }
  std::int32_t blockRows() const { return blockRows_; }
  bool columnMode() const { return columnMode_; }
  const std::string& errorText() const { return errorText_; }

  // The text form: rows, columns, order, then a line a row (or a column), each number
  // followed by a tab. Leaves the writer's precision as it was.
  void write(TextWriter& out) const;
  // Replaces the table by what the text says; on a failed stream the store ends empty.
  void read(TextReader& in);

 private:
  bool setError(const char* text) const;
  bool setReadError() const { return setError("Cannot read the working file."); }
  bool setWriteError() const { return setError("Cannot write the working file."); }
  bool isCell(std::int32_t row, std::int32_t column) const;

  // Bytes in the column file before row `rowInBlock` of a column's part of a block.
  std::uint64_t columnOffset(std::int64_t block, std::int64_t column, std::int64_t rowInBlock) const;
  std::size_t rowBytes() const;
  bool fitsWindow() const { return rows_ <= blockRows_; }
  double* windowRow(std::int64_t row) const;

  bool ensureMode(bool columnMode) const;
  bool ensureRow(std::int64_t row) const;
  bool ensureColumn(std::int32_t column) const;
  bool flush() const;
  bool flushRows() const;
  bool flushBlockColumn(std::int32_t column, const std::vector<double>& gathered) const;
  bool flushColumn() const;
  bool loadRows(std::int64_t firstRow) const;
  bool loadColumn(std::int32_t column) const;
  template <class Transfer>
  bool forColumnParts(std::int32_t column, Transfer transfer) const;
  bool resizeValues(std::vector<double>& values, std::int64_t size) const;

  bool readByRow(TextReader& in, std::int32_t rows);
  bool readByFactor(TextReader& in, std::int32_t rows);
  bool readColumnsToFile(TextReader& in, std::int32_t rows);
  bool rowsFromColumns() const;
  int systemError() const;

  mutable WorkingFile rowFile_;
  mutable WorkingFile columnFile_;
  // In row mode rows firstRow_ to lastRow_, grown as rows come while the table is its first window; in column mode one
  // column.
  mutable std::vector<double> cache_;
  mutable std::int64_t firstRow_ = 0;
  mutable std::int64_t lastRow_ = -1;  // may lie beyond rows_
  mutable bool loaded_ = false;        // cache_ holds what the window says
  mutable bool dirty_ = false;         // cache_ differs from the files
  mutable bool columnMode_ = false;
  mutable std::int32_t cachedColumn_ = -1;

  std::int32_t rows_ = 0;
  std::int32_t columns_ = 0;
  std::int32_t blockRows_ = 0;
  std::int32_t order_ = 0;
  mutable std::string errorText_ = "No errors";
};

}  // namespace tarvex
