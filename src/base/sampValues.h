#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "base/Progress.h"
#include "base/WorkingFile.h"

namespace tarvex {

class TextReader;
class TextWriter;

// The sample store: a table of doubles of any size, rows are runs, columns are factors, kept in two working files
// behind a window of about two megabytes. One file holds the table by row, the other in blocks of `blockRows` rows,
// each block column after column, so that a pass over rows and a pass over a column both read contiguous bytes.
//
// Operations of the row family work on a window of rows, those of the column family on one whole column; the store
// changes between the two by itself. Indices count from 0. Operations return false (0, null) on failure, with the
// reason in errorText, and leave the table as it was. Reading can fail as well as writing: the window may have to go
// to the disk first.
class sampValues {
 public:
  static constexpr std::int32_t cacheLimit = 262144;  // doubles that the window aims at
  static constexpr int kTextPrecision = 10;           // significant digits of the text form

  sampValues();
  ~sampValues();
  sampValues(const sampValues&) = delete;  // a copy may find no room on the disk: assign()
  sampValues& operator=(const sampValues&) = delete;
  sampValues(sampValues&&) noexcept;
  sampValues& operator=(sampValues&&) noexcept;

  [[nodiscard]] bool allocate(std::int32_t columns);
  void clear();  // empty and without width; `order` stays

  // Appends one row of columns() doubles. The new row count; 0 on failure.
  [[nodiscard]] std::int32_t addRow(const double* values);
  // Appends `count` rows that stand one after the other. On failure those before a window that can't be made are there.
  [[nodiscard]] bool addRows(const double* values, std::int32_t count);
  // Makes `count` rows of zeros, ready to take columns, without a pass through them. Requires: no rows yet.
  [[nodiscard]] bool addZeroRows(std::int32_t count);

  [[nodiscard]] bool setValue(std::int32_t row, std::int32_t column, double value);
  [[nodiscard]] bool getValue(std::int32_t row, std::int32_t column, double& value) const;
  [[nodiscard]] bool setRow(std::int32_t row, const double* values);
  [[nodiscard]] bool getRow(std::int32_t row, double* values) const;
  // `count` rows from this one on, one behind the other; the window moves as it does for each of them.
  [[nodiscard]] bool getRows(std::int32_t row, std::int32_t count, double* values) const;
  // The row inside the window, for change in place; valid until the next call on the store. Null out of range.
  [[nodiscard]] double* rowPointer(std::int32_t row);

  [[nodiscard]] bool setColumnValue(std::int32_t row, std::int32_t column, double value);
  [[nodiscard]] bool getColumnValue(std::int32_t row, std::int32_t column, double& value) const;
  // One whole column, rows() doubles, through the column window.
  [[nodiscard]] bool getColumn(std::int32_t column, std::vector<double>& values) const;
  // Replaces a column without reading it. The values are taken over; what `values` holds then has no meaning.
  [[nodiscard]] bool setColumn(std::int32_t column, std::vector<double>&& values);
  // The whole column inside the window, for change in place; valid until the next call on the store. Null out of range.
  [[nodiscard]] double* columnPointer(std::int32_t column);
  // The same to look at; null on failure.
  [[nodiscard]] const double* columnValues(std::int32_t column) const;

  [[nodiscard]] bool setOrder(std::int32_t order);  // 0 by run, 1 by factor: how the text form lists the table
  // What each operation does by itself before it works on rows (false) or a column (true). Behind changed columns the
  // way back to rows is a pass through the whole table: who watches it asks for it here. A stop is a failure.
  [[nodiscard]] bool setColumnMode(bool columnMode, const Progress& progress = {}) const;
  // Makes this a table of its own with the other's `order` and rows, by row.
  [[nodiscard]] bool assign(const sampValues& other, const Progress& progress = {});

  std::int32_t rows() const { return rows_; }
  std::int32_t columns() const { return columns_; }
  std::int32_t order() const { return order_; }
  std::int32_t blockRows() const { return blockRows_; }
  const std::string& errorText() const { return errorText_; }

  // The text form: rows, columns, order, then a line a row (or a column), each number
  // followed by a tab. Leaves the writer's precision as it was. A table that can't be read back fails the writer.
  void write(TextWriter& out) const;
  // Replaces the table by what the text says; on failure the reader has failed too and the store is empty.
  [[nodiscard]] bool read(TextReader& in);

 private:
  static constexpr std::int32_t kColumnsTogether = 4;  // gathered in one pass through a window

  bool setError(const std::string& text) const;  // always false
  [[nodiscard]] bool openEnd(std::int32_t count, std::int32_t& room);
  [[nodiscard]] bool isCell(std::int32_t row, std::int32_t column) const;

  // Bytes in the column file before row `rowInBlock` of a column's part of a block.
  std::uint64_t columnOffset(std::int64_t block, std::int64_t column, std::int64_t rowInBlock) const;
  std::size_t rowBytes() const;
  bool fitsWindow() const { return rows_ <= blockRows_; }
  double* windowRow(std::int64_t row) const;

  [[nodiscard]] bool ensureMode(bool columnMode, const Progress& progress = {}) const;
  [[nodiscard]] bool ensureRow(std::int64_t row) const;
  [[nodiscard]] bool ensureColumn(std::int32_t column) const;
  [[nodiscard]] bool flush() const;
  [[nodiscard]] bool flushRows() const;
  void gatherColumns(std::int32_t first, std::int32_t count,
                     std::array<std::vector<double>, kColumnsTogether>& gathered) const;
  [[nodiscard]] bool flushBlockColumn(std::int32_t column, const std::vector<double>& gathered) const;
  [[nodiscard]] bool flushColumn() const;
  [[nodiscard]] bool patchRowFile(const Progress& progress) const;
  [[nodiscard]] bool patchRows(std::int64_t firstRow, std::vector<double>& part, std::vector<double>& rows) const;
  [[nodiscard]] bool loadRows(std::int64_t firstRow) const;
  [[nodiscard]] bool loadColumn(std::int32_t column) const;
  template <class Transfer>
  [[nodiscard]] bool forColumnParts(std::int32_t column, Transfer transfer) const;
  [[nodiscard]] bool readFrom(const WorkingFile& file, std::uint64_t offset, double* to, std::int64_t count) const;
  [[nodiscard]] bool writeTo(WorkingFile& file, std::uint64_t offset, const double* from, std::int64_t count) const;
  [[nodiscard]] bool resizeValues(std::vector<double>& values, std::int64_t size) const;

  [[nodiscard]] bool readTable(TextReader& in);
  [[nodiscard]] bool readByRow(TextReader& in, std::int32_t rows);
  [[nodiscard]] bool readByFactor(TextReader& in, std::int32_t rows);
  [[nodiscard]] bool readColumnsToFile(TextReader& in, std::int32_t rows);

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
  // In column mode, by column: changed in the column file, not yet in the row file. Empty while there is none.
  mutable std::vector<bool> unpatched_;
  // In column mode, by column: zeros since the table was made, and never written. Empty where none is known.
  mutable std::vector<bool> blank_;

  std::int32_t rows_ = 0;
  std::int32_t columns_ = 0;
  std::int32_t blockRows_ = 0;
  std::int32_t order_ = 0;
  mutable std::string errorText_ = "No errors";
};

}  // namespace tarvex
