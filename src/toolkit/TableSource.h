#pragma once

#include <QString>
#include <QVariant>

namespace tarvex {

// What a table shows. Cells are asked for as they come into view, so a source may have millions of rows. Rows and
// columns count from 0; the numbers of rows that a user sees count from 1 and stay with their rows.
class TableSource {
 public:
  virtual ~TableSource() = default;
  virtual int rows() const = 0;
  virtual int columns() const = 0;
  virtual QString header(int column) const = 0;
  virtual QString text(int row, int column) const = 0;
  // Numbers stand to the right and are sorted as numbers.
  virtual bool isNumeric(int /*column*/) const { return true; }
  // The value that rows are sorted by. Requires: a numeric column. Not-a-numbers sort last.
  virtual double number(int row, int column) const = 0;
};

}  // namespace tarvex
