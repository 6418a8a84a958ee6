#pragma once

#include <array>
#include <memory>
#include <string>
#include <vector>

#include "factors/IntervalDistribution.h"
#include "toolkit/TableSource.h"

namespace tarvex {

// The rows of an interval distribution as texts that a user edits: ends and weight, or value and weight of a point.
// They may be anything; read() judges them.
class IntervalTable : public EditableTableSource {
 public:
  explicit IntervalTable(bool points) : points_(points) {}

  void take(const IntervalDistribution& list);
  // Fills `list` with the rows. False, with the reason and the row's number, when one isn't taken or the weights don't
  // sum to 1.
  bool read(IntervalDistribution& list, QString& problem) const;
  void insertRow(int row);
  void removeRow(int row) { rows_.erase(rows_.begin() + row); }
  QString weightSum() const;

  int rows() const override { return static_cast<int>(rows_.size()); }
  int columns() const override { return points_ ? 2 : 3; }
  QString header(int column) const override;
  QString text(int row, int column) const override;
  double number(int row, int column) const override;
  QString setText(int row, int column, const QString& text) override;
  QString problem(int row, int column) const override;
  bool appendRow() override;

 private:
  // What was typed, and its number; of a factor's own numbers the text is made when it is asked for.
  struct Cell {
    QString typed = {};
    double number = 0.0;
    bool isTyped = false;
  };
  using Row = std::array<Cell, 3>;
  const Cell& cell(int row, int column) const {
    return rows_[static_cast<std::size_t>(row)][static_cast<std::size_t>(column)];
  }

  bool points_;
  std::vector<Row> rows_;
};

}  // namespace tarvex
