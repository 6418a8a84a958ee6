#pragma once

#include <QColor>
#include <QString>
#include <QStringList>
#include <QVariant>
#include <vector>

namespace tarvex {

// What a table shows. Cells are asked for as they come into view, so a source may have millions of rows. Rows and
// columns count from 0; the numbers of rows that a user sees count from 1 and stay with their rows.
class TableSource {
 public:
  virtual ~TableSource() = default;
  virtual int rows() const = 0;
  virtual int columns() const = 0;
  virtual QString header(int column) const = 0;
  // What stands beside a row; empty: its number.
  virtual QString rowName(int /*row*/) const { return {}; }
  // What a column means; empty: its name says all.
  virtual QString headerToolTip(int /*column*/) const { return {}; }
  virtual QString text(int row, int column) const = 0;
  // What stands in the cell, where its text is longer than anybody reads.
  virtual QString shownText(int row, int column) const { return text(row, column); }
  // Numbers stand to the right and are sorted as numbers.
  virtual bool isNumeric(int /*column*/) const { return true; }
  // The value that rows are sorted by. Requires: a numeric column. Not-a-numbers sort last.
  virtual double number(int row, int column) const = 0;
  // Colours of a cell that has its own; invalid ones are the table's.
  virtual QColor ink(int /*row*/, int /*column*/) const { return {}; }
  virtual QColor paper(int /*row*/, int /*column*/) const { return {}; }
};

// A table that a user changes. Every change is asked of the source, which takes it or says why not in a sentence; it
// may as well take what is not right yet, and say so in problem().
class EditableTableSource : public TableSource {
 public:
  virtual bool isEditable(int /*row*/, int /*column*/) const { return true; }
  // Takes what was typed. Empty: taken; else why not, and nothing has changed.
  [[nodiscard]] virtual QString setText(int row, int column, const QString& text) = 0;
  // What is wrong with a cell as it is; empty: nothing.
  virtual QString problem(int /*row*/, int /*column*/) const { return {}; }
  // One more row at the end, of which pasted text needs some. False where rows can't be added.
  [[nodiscard]] virtual bool appendRow() { return false; }
  // Whether rows can be put into another order; moveRow() does it: row `from` then stands at `to`.
  virtual bool canMoveRows() const { return false; }
  [[nodiscard]] virtual bool moveRow(int /*from*/, int /*to*/) { return false; }
  // Takes a block of texts whose first stands at (row, column), as a spreadsheet copies it. As it is, the source takes
  // text by text up to the first that it refuses, and the answer says which; one that can takes all or nothing.
  [[nodiscard]] virtual QString setBlock(int row, int column, const std::vector<QStringList>& block);
};

}  // namespace tarvex
