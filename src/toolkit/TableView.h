#pragma once

#include <QTableView>
#include <functional>
#include <memory>

#include "toolkit/TableModel.h"

class QLineEdit;

namespace tarvex {

// The one table of all panels: rows of fixed height, sorted by a click on a header (a second click turns the order
// round, a third gives it back), Ctrl+F finds, Ctrl+C copies the selection with its headers as text and HTML.
class TableView : public QTableView {
  Q_OBJECT

 public:
  explicit TableView(QWidget* parent = nullptr);

  void setSource(std::shared_ptr<const TableSource> source);
  // A table that the user changes: by typing into a cell (F2 or any key), by Ctrl+V of what a spreadsheet copied, from
  // the current cell on, and, where the source's rows can be moved, by dragging their numbers or by Alt with up and
  // down.
  void setEditable(std::shared_ptr<EditableTableSource> source);
  TableModel& tableModel() { return model_; }
  // A sentence in the place of the rows while there are none.
  void setEmptyText(const QString& text);

  // Everything shown, or the selection, as the clipboard gets it; fields are separated by tabs or, for CSV, commas.
  QString selectionText() const;
  QString selectionHtml() const;

  // Called with the number of cells when a copy would be larger than the clipboard can be asked to hold.
  std::function<void(qint64 cells)> tooLargeToCopy;

  QSize sizeHint() const override;

 Q_SIGNALS:
  // The user changed the source.
  void edited();
  // Why the source didn't take a change, for the panel's message line; empty after it took one.
  void refused(const QString& why);

 protected:
  // What is typed may fill the table anew, which takes the editor away before it is asked to close.
  void closeEditor(QWidget* editor, QAbstractItemDelegate::EndEditHint hint) override;
  bool event(QEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  void copy();
  void paste();
  void moveRow(int from, int to);
  void followHeader(int from, int to);
  void openSearch();
  void findNext();
  void turnOrder(int column);
  void forgetOrder();
  qint64 selectedCells() const;

  TableModel model_;
  QLineEdit* search_;
  QString emptyText_;
  int sortedColumn_ = -1;
  Qt::SortOrder sortOrder_ = Qt::AscendingOrder;
};

}  // namespace tarvex
