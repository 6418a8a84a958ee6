#pragma once

#include <QAbstractTableModel>
#include <memory>
#include <optional>
#include <vector>

#include "toolkit/TableSource.h"

namespace tarvex {

// A source behind Qt's tables, with an order and a choice of rows of its own: sorting a million rows takes half a
// second and eight megabytes, and the source stays as it is.
class TableModel : public QAbstractTableModel {
  Q_OBJECT

 public:
  explicit TableModel(QObject* parent = nullptr) : QAbstractTableModel(parent) {}

  // Shows all rows of the source in its order. Null: an empty table.
  void setSource(std::shared_ptr<const TableSource> source);
  // The same for one that the user changes.
  void setEditable(std::shared_ptr<EditableTableSource> source);
  EditableTableSource* editable() const { return editable_.get(); }
  // The source has other rows or texts than before.
  void sourceChanged();
  const TableSource* source() const { return source_.get(); }
  // Shows these rows of the source alone; an empty choice shows none.
  void setRows(std::vector<int> rows);
  void showAllRows();
  // The rows that are shown, in the order of the source or of the choice.
  void unsort();
  // The row of the source that stands in row `row` of the table.
  int sourceRow(int row) const;
  // The row of the table, or -1, whose first cell at or behind (row, column) contains `text`, whatever its case; the
  // search goes round. `column` is then the cell's.
  int find(const QString& text, int row, int& column) const;

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
  void sort(int column, Qt::SortOrder order) override;
  Qt::ItemFlags flags(const QModelIndex& index) const override;
  bool setData(const QModelIndex& index, const QVariant& value, int role) override;

  // All rows are shown, in the source's order.
  bool isWhole() const { return !choice_ && order_.empty(); }

 Q_SIGNALS:
  // The user changed the source.
  void edited();
  // Why the source didn't take what was typed; empty after it took something.
  void refused(const QString& why);

 private:
  void fillOrder();

  std::shared_ptr<const TableSource> source_;
  std::shared_ptr<EditableTableSource> editable_;  // the source, if it can be changed
  std::vector<int> order_;  // rows of the source as they are shown; empty while all stand in their own order
  std::optional<std::vector<int>> choice_;  // the rows that are shown alone
};

}  // namespace tarvex
