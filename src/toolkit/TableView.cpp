#include "toolkit/TableView.h"

#include <QApplication>
#include <QClipboard>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMimeData>
#include <QPainter>
#include <utility>

namespace tarvex {
namespace {

constexpr qint64 kMostCopiedCells = 1'000'000;  // beyond, a clipboard takes seconds and hundreds of megabytes
constexpr int kCellPadding = 10;                // beside and above a text, pixels in all
constexpr int kSearchWidth = 220;
constexpr int kMargin = 8;

}  // namespace

TableView::TableView(QWidget* parent) : QTableView(parent), search_(new QLineEdit(this)) {
  setModel(&model_);
  // Asking every row for its height takes more than a minute for a million rows.
  verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
  verticalHeader()->setDefaultSectionSize(fontMetrics().height() + kCellPadding);
  verticalHeader()->setHighlightSections(false);
  horizontalHeader()->setHighlightSections(false);
  horizontalHeader()->setSortIndicatorShown(false);
  setAlternatingRowColors(true);
  setWordWrap(false);
  connect(horizontalHeader(), &QHeaderView::sectionClicked, this, [this](int column) { turnOrder(column); });
  search_->setObjectName("tableSearch");
  search_->setPlaceholderText("Find");
  search_->setAccessibleName("Find in the table");
  search_->setToolTip("Text to find; Enter goes to the next place, Esc closes");
  search_->hide();
  connect(search_, &QLineEdit::returnPressed, this, [this] { findNext(); });
}

void TableView::setSource(std::shared_ptr<const TableSource> source) {
  sortedColumn_ = -1;
  horizontalHeader()->setSortIndicatorShown(false);
  model_.setSource(std::move(source));
}

void TableView::setEmptyText(const QString& text) {
  emptyText_ = text;
  viewport()->update();
}

QSize TableView::sizeHint() const {
  constexpr int kWidth = 480;
  constexpr int kHeight = 280;
  return {kWidth, kHeight};
}

void TableView::turnOrder(int column) {
  const bool same = column == sortedColumn_;
  if (same && sortOrder_ == Qt::DescendingOrder) {
    sortedColumn_ = -1;
    model_.showAllRows();
  } else {
    sortOrder_ = same ? Qt::DescendingOrder : Qt::AscendingOrder;
    sortedColumn_ = column;
    model_.sort(column, sortOrder_);
  }
  horizontalHeader()->setSortIndicatorShown(sortedColumn_ >= 0);
  if (sortedColumn_ >= 0) horizontalHeader()->setSortIndicator(sortedColumn_, sortOrder_);
}

qint64 TableView::selectedCells() const {
  qint64 cells = 0;
  for (const QItemSelectionRange& range : selectionModel()->selection())
    cells += qint64{range.width()} * range.height();
  return cells;
}

// By ranges: a list of every selected index would take half a gigabyte for a large table.
QString TableView::selectionText() const {
  QString text;
  for (const QItemSelectionRange& range : selectionModel()->selection()) {
    QStringList line;
    for (int column = range.left(); column <= range.right(); ++column) line << model_.source()->header(column);
    text += line.join('\t') + '\n';
    for (int row = range.top(); row <= range.bottom(); ++row) {
      line.clear();
      for (int column = range.left(); column <= range.right(); ++column)
        line << model_.source()->text(model_.sourceRow(row), column);
      text += line.join('\t') + '\n';
    }
  }
  return text;
}

QString TableView::selectionHtml() const {
  QString html = "<table>";
  for (const QString& line : selectionText().split('\n', Qt::SkipEmptyParts)) {
    html += "<tr>";
    for (const QString& cell : line.split('\t')) html += "<td>" + cell.toHtmlEscaped() + "</td>";
    html += "</tr>";
  }
  return html + "</table>";
}

void TableView::copy() {
  const qint64 cells = selectedCells();
  if (cells == 0) return;
  if (cells > kMostCopiedCells) {
    if (tooLargeToCopy) tooLargeToCopy(cells);
    return;
  }
  auto* const copied = new QMimeData;  // the clipboard takes it over
  copied->setText(selectionText());
  copied->setHtml(selectionHtml());
  QApplication::clipboard()->setMimeData(copied);
}

void TableView::openSearch() {
  search_->show();
  search_->raise();
  search_->setFocus();
  search_->selectAll();
}

void TableView::findNext() {
  const QModelIndex from = currentIndex();
  int column = from.isValid() ? from.column() + 1 : 0;
  const int row = model_.find(search_->text(), from.isValid() ? from.row() : 0, column);
  if (row >= 0) setCurrentIndex(model_.index(row, column));
}

void TableView::keyPressEvent(QKeyEvent* event) {
  if (event->matches(QKeySequence::Copy)) return copy();
  if (event->matches(QKeySequence::Find)) return openSearch();
  if (event->key() == Qt::Key_Escape && search_->isVisible()) {
    search_->hide();
    return setFocus();
  }
  QTableView::keyPressEvent(event);
}

void TableView::paintEvent(QPaintEvent* event) {
  QTableView::paintEvent(event);
  if (model_.rowCount() > 0 || emptyText_.isEmpty()) return;
  QPainter painter(viewport());
  painter.setPen(palette().color(QPalette::PlaceholderText));
  painter.drawText(viewport()->rect().adjusted(kMargin, kMargin, -kMargin, -kMargin),
                   Qt::AlignCenter | Qt::TextWordWrap, emptyText_);
}

void TableView::resizeEvent(QResizeEvent* event) {
  QTableView::resizeEvent(event);
  const QRect area = viewport()->geometry();
  search_->setGeometry(area.right() - kSearchWidth - kMargin, area.bottom() - search_->sizeHint().height() - kMargin,
                       kSearchWidth, search_->sizeHint().height());
}

}  // namespace tarvex
