#pragma once

#include <optional>
#include <string>

#include "plots/MeasureDisplay.h"
#include "postproc/SensitivityStats.h"
#include "toolkit/TableSource.h"

namespace tarvex {

class TableView;

// Measures of a variable as a sheet: a row a record, a column a measure. Of the regression's measures one, with its
// rank and its significance, or all.
class SaTable : public TableSource {
 public:
  // `slots`: the measures; the rank and the significance of the first follow where `withTest` says so.
  SaTable(std::shared_ptr<const SensitivityStats> stats, std::int32_t variable, std::vector<std::int32_t> slots,
          const MeasureDisplay& display, bool withTest);

  // The record that a row shows, and the row of a record or -1.
  std::size_t record(int row) const { return rows_[static_cast<std::size_t>(row)]; }
  int rowOf(std::size_t record) const;

  int rows() const override { return static_cast<int>(rows_.size()); }
  int columns() const override { return static_cast<int>(columns_.size()) + 1; }
  QString header(int column) const override;
  QString headerToolTip(int column) const override;
  QString text(int row, int column) const override;
  bool isNumeric(int column) const override;
  double number(int row, int column) const override;
  QColor ink(int row, int column) const override;
  QColor paper(int row, int column) const override;

 private:
  enum class Role { Measure, Rank, Significance };
  struct Column {
    Role role;
    std::int32_t slot;
    QString title;
    std::vector<std::optional<double>> values;  // by record
  };
  const Column& at(int column) const { return columns_[static_cast<std::size_t>(column - 1)]; }
  std::optional<double> valueAt(int row, int column) const { return at(column).values[record(row)]; }
  std::optional<bool> significant(int row, int column) const;
  bool hasTest(std::int32_t measure) const;
  void addTest(std::int32_t measure);

  std::shared_ptr<const SensitivityStats> stats_;
  std::int32_t variable_;
  std::vector<std::size_t> rows_;
  std::vector<Column> columns_;
};

// A colour of the system's, by its name.
QColor screenColour(const char* name);

// Shows the sheet, its columns as wide as what they hold, within reason.
void showSheet(TableView& view, std::shared_ptr<SaTable> table);

}  // namespace tarvex
