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
  TableModel& tableModel() { return model_; }
  // A sentence in the place of the rows while there are none.
  void setEmptyText(const QString& text);

  // Everything shown, or the selection, as the clipboard gets it; fields are separated by tabs or, for CSV, commas.
  QString selectionText() const;
  QString selectionHtml() const;

  // Called with the number of cells when a copy would be larger than the clipboard can be asked to hold.
  std::function<void(qint64 cells)> tooLargeToCopy;

  QSize sizeHint() const override;

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  void copy();
  void openSearch();
  void findNext();
  void turnOrder(int column);
  qint64 selectedCells() const;

  TableModel model_;
  QLineEdit* search_;
  QString emptyText_;
  int sortedColumn_ = -1;
  Qt::SortOrder sortOrder_ = Qt::AscendingOrder;
};

}  // namespace tarvex
