#include "toolkit/TableView.h"

#include <QApplication>
#include <QClipboard>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMimeData>
#include <QPainter>
#include <QSignalBlocker>
#include <algorithm>
#include <utility>

namespace tarvex {
namespace {

constexpr qint64 kMostCopiedCells = 1'000'000;  // beyond, a clipboard takes seconds and hundreds of megabytes
constexpr int kCellPadding = 10;                // beside and above a text, pixels in all
constexpr int kSearchWidth = 220;
constexpr int kCellMargin = 8;

bool isEnter(const QKeyEvent& event) {
  return event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter;
}

}  // namespace

TableView::TableView(QWidget* parent) : QTableView(parent), search_(new QLineEdit(this)) {
  setModel(&model_);
  // Asking every row for its height takes more than a minute for a million rows.
  verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
  verticalHeader()->setDefaultSectionSize(fontMetrics().height() + kCellPadding);
  verticalHeader()->setHighlightSections(false);
  horizontalHeader()->setHighlightSections(false);
  horizontalHeader()->setTextElideMode(Qt::ElideMiddle);  // a heading that is cut at both ends reads as another
  horizontalHeader()->setSortIndicatorShown(false);
  setAlternatingRowColors(true);
  setWordWrap(false);
  connect(horizontalHeader(), &QHeaderView::sectionClicked, this, [this](int column) { turnOrder(column); });
  connect(verticalHeader(), &QHeaderView::sectionMoved, this,
          [this](int, int from, int to) { followHeader(from, to); });
  connect(&model_, &TableModel::modelReset, this, [this] { forgetOrder(); });
  connect(&model_, &TableModel::edited, this, &TableView::edited);
  connect(&model_, &TableModel::refused, this, &TableView::refused);
  search_->setObjectName("tableSearch");
  search_->setPlaceholderText("Find");
  search_->setAccessibleName("Find in the table");
  search_->setToolTip("Text to find; Enter goes to the next place, Esc closes");
  search_->hide();
  connect(search_, &QLineEdit::returnPressed, this, [this] { findNext(); });
}

void TableView::setSource(std::shared_ptr<const TableSource> source) {
  model_.setSource(std::move(source));
  verticalHeader()->setSectionsMovable(false);
}

void TableView::setEditable(std::shared_ptr<EditableTableSource> source) {
  setSource(nullptr);
  const bool movable = source != nullptr && source->canMoveRows();
  model_.setEditable(std::move(source));
  verticalHeader()->setSectionsMovable(movable);
  setEditTriggers(QAbstractItemView::DoubleClicked | QAbstractItemView::EditKeyPressed |
                  QAbstractItemView::AnyKeyPressed);
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
  if (same && sortOrder_ == Qt::DescendingOrder) return model_.unsort();
  const Qt::SortOrder order = same ? Qt::DescendingOrder : Qt::AscendingOrder;
  model_.sort(column, order);
  sortOrder_ = order;
  sortedColumn_ = column;
  horizontalHeader()->setSortIndicatorShown(true);
  horizontalHeader()->setSortIndicator(column, order);
}

// Rows that come anew stand in their own order.
void TableView::forgetOrder() {
  sortedColumn_ = -1;
  horizontalHeader()->setSortIndicatorShown(false);
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

// Lines of fields with tabs between them; a first line that is our own header, as copy() writes it, is passed over.
void TableView::paste() {
  EditableTableSource* const source = model_.editable();
  if (source == nullptr) return;
  const QModelIndex at = currentIndex();
  const int column = at.isValid() ? at.column() : 0;
  std::vector<QStringList> block;
  for (QString line : QApplication::clipboard()->text().split('\n')) {
    if (line.endsWith('\r')) line.chop(1);
    block.push_back(line.split('\t'));
  }
  while (!block.empty() && block.back() == QStringList{QString()}) block.pop_back();
  QStringList names;
  for (int i = column; i < source->columns() && !block.empty() && names.size() < block.front().size(); ++i)
    names << source->header(i);
  if (!block.empty() && names == block.front()) block.erase(block.begin());
  if (block.empty()) return;
  if (!model_.isWhole()) return Q_EMIT refused("Show the rows in their own order before you paste.");
  const int row = at.isValid() ? at.row() : source->rows();
  const QString why = source->setBlock(row, column, block);
  model_.sourceChanged();
  setCurrentIndex(model_.index(std::min(row, model_.rowCount() - 1), column));
  Q_EMIT refused(why);
  Q_EMIT edited();
}

void TableView::moveRow(int from, int to) {
  EditableTableSource* const source = model_.editable();
  if (source == nullptr || !source->canMoveRows() || to < 0 || to >= source->rows()) return;
  if (!model_.isWhole()) return Q_EMIT refused("Show the rows in their own order before you move one.");
  const int column = std::max(currentIndex().column(), 0);
  if (!source->moveRow(from, to)) return;
  model_.sourceChanged();
  setCurrentIndex(model_.index(to, column));
  Q_EMIT edited();
}

// The header shows rows in another order; instead, the source takes that order, and the header goes back to its own.
void TableView::followHeader(int from, int to) {
  const QSignalBlocker quiet(verticalHeader());
  verticalHeader()->moveSection(to, from);
  moveRow(from, to);
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

void TableView::closeEditor(QWidget* editor, QAbstractItemDelegate::EndEditHint hint) {
  if (editor == nullptr || !editor->isHidden()) QTableView::closeEditor(editor, hint);
}

// While the search is open its keys go before those of the panel.
bool TableView::event(QEvent* event) {
  if (event->type() == QEvent::ShortcutOverride && search_->isVisible()) {
    const auto& key = *static_cast<QKeyEvent*>(event);
    if (key.key() == Qt::Key_Escape || (isEnter(key) && search_->hasFocus())) {
      event->accept();
      return true;
    }
  }
  return QTableView::event(event);
}

void TableView::keyPressEvent(QKeyEvent* event) {
  if (search_->hasFocus() && isEnter(*event)) return;  // the search has done what it says
  if (event->matches(QKeySequence::Copy)) return copy();
  if (event->matches(QKeySequence::Find)) return openSearch();
  if (event->matches(QKeySequence::Paste)) return paste();
  const bool up = event->key() == Qt::Key_Up;
  if (event->modifiers() == Qt::AltModifier && (up || event->key() == Qt::Key_Down) && currentIndex().isValid())
    return moveRow(currentIndex().row(), currentIndex().row() + (up ? -1 : 1));
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
  painter.drawText(viewport()->rect().adjusted(kCellMargin, kCellMargin, -kCellMargin, -kCellMargin),
                   Qt::AlignCenter | Qt::TextWordWrap, emptyText_);
}

void TableView::resizeEvent(QResizeEvent* event) {
  QTableView::resizeEvent(event);
  const QRect area = viewport()->geometry();
  search_->setGeometry(area.right() - kSearchWidth - kCellMargin,
                       area.bottom() - search_->sizeHint().height() - kCellMargin, kSearchWidth,
                       search_->sizeHint().height());
}

}  // namespace tarvex
