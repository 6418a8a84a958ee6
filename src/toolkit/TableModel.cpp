#include "toolkit/TableModel.h"

#include <QApplication>
#include <QIcon>
#include <QStyle>
#include <algorithm>
#include <cmath>
#include <numeric>
#include <utility>

namespace tarvex {
namespace {

constexpr int kLongCell = 24;  // characters that a column may have no room for

// Keys in one array, so that a comparison asks no source; equal keys keep their order, not-a-numbers come last.
template <class Key, class Less>
void sortRows(std::vector<int>& rows, const std::vector<Key>& keys, bool ascending, Less less) {
  std::vector<int> positions(rows.size());
  std::iota(positions.begin(), positions.end(), 0);
  std::stable_sort(positions.begin(), positions.end(), [&](int a, int b) {
    const Key& left = keys[static_cast<std::size_t>(a)];
    const Key& right = keys[static_cast<std::size_t>(b)];
    return ascending ? less(left, right) : less(right, left);
  });
  std::vector<int> sorted(rows.size());
  std::transform(positions.begin(), positions.end(), sorted.begin(),
                 [&](int position) { return rows[static_cast<std::size_t>(position)]; });
  rows = std::move(sorted);
}

}  // namespace

void TableModel::setSource(std::shared_ptr<const TableSource> source) {
  beginResetModel();
  source_ = std::move(source);
  editable_.reset();
  order_.clear();
  choice_.reset();
  endResetModel();
}

void TableModel::setEditable(std::shared_ptr<EditableTableSource> source) {
  setSource(source);
  editable_ = std::move(source);
}

void TableModel::sourceChanged() {
  showAllRows();
}

void TableModel::setRows(std::vector<int> rows) {
  beginResetModel();
  order_ = rows;
  choice_ = std::move(rows);
  endResetModel();
}

void TableModel::unsort() {
  if (choice_) return setRows(*choice_);
  showAllRows();
}

void TableModel::showAllRows() {
  beginResetModel();
  order_.clear();
  choice_.reset();
  endResetModel();
}

int TableModel::sourceRow(int row) const {
  return isWhole() ? row : order_[static_cast<std::size_t>(row)];
}

int TableModel::find(const QString& text, int row, int& column) const {
  const int rows = rowCount();
  const int columns = columnCount();
  for (int passed = 0; passed <= rows && columns > 0; ++passed, column = 0) {
    const int at = (row + passed) % std::max(rows, 1);
    for (; column < columns && rows > 0; ++column)
      if (source_->text(sourceRow(at), column).contains(text, Qt::CaseInsensitive)) return at;
  }
  return -1;
}

int TableModel::rowCount(const QModelIndex& parent) const {
  if (parent.isValid() || source_ == nullptr) return 0;
  return isWhole() ? source_->rows() : static_cast<int>(order_.size());
}

int TableModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() || source_ == nullptr ? 0 : source_->columns();
}

QVariant TableModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid() || source_ == nullptr) return {};
  if (role == Qt::DisplayRole) return source_->shownText(sourceRow(index.row()), index.column());
  if (role == Qt::EditRole) return source_->text(sourceRow(index.row()), index.column());
  if (role == Qt::TextAlignmentRole)
    return QVariant(Qt::AlignVCenter | (source_->isNumeric(index.column()) ? Qt::AlignRight : Qt::AlignLeft));
  if (role == Qt::ForegroundRole || role == Qt::BackgroundRole) {
    const int row = sourceRow(index.row());
    const QColor own =
        role == Qt::ForegroundRole ? source_->ink(row, index.column()) : source_->paper(row, index.column());
    return own.isValid() ? QVariant(own) : QVariant();
  }
  if (editable_ != nullptr && (role == Qt::ToolTipRole || role == Qt::DecorationRole)) {
    const QString wrong = editable_->problem(sourceRow(index.row()), index.column());
    if (!wrong.isEmpty())
      return role == Qt::ToolTipRole ? QVariant(wrong)
                                     : QVariant(QApplication::style()->standardIcon(QStyle::SP_MessageBoxWarning));
  }
  if (role != Qt::ToolTipRole) return {};
  const QString text = source_->shownText(sourceRow(index.row()), index.column());
  return text.size() > kLongCell ? QVariant(text) : QVariant();
}

Qt::ItemFlags TableModel::flags(const QModelIndex& index) const {
  const Qt::ItemFlags usual = QAbstractTableModel::flags(index);
  if (!index.isValid() || editable_ == nullptr) return usual;
  return editable_->isEditable(sourceRow(index.row()), index.column()) ? usual | Qt::ItemIsEditable : usual;
}

bool TableModel::setData(const QModelIndex& index, const QVariant& value, int role) {
  if (!index.isValid() || editable_ == nullptr || role != Qt::EditRole) return false;
  const int row = sourceRow(index.row());
  const QString typed = value.toString();
  if (typed == editable_->text(row, index.column())) return true;
  const QString why = editable_->setText(row, index.column(), typed);
  Q_EMIT refused(why);
  if (!why.isEmpty()) return false;
  // One text may change what others of its row say.
  Q_EMIT dataChanged(this->index(index.row(), 0), this->index(index.row(), columnCount() - 1));
  Q_EMIT edited();
  return true;
}

QVariant TableModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (source_ == nullptr) return {};
  if (role == Qt::ToolTipRole && orientation == Qt::Horizontal) {
    const QString meaning = source_->headerToolTip(section);
    if (!meaning.isEmpty()) return meaning;
    const QString text = source_->header(section);
    return text.size() > kLongCell ? QVariant(text) : QVariant();
  }
  if (role != Qt::DisplayRole) return {};
  if (orientation == Qt::Horizontal) return source_->header(section);
  if (section >= rowCount()) return {};
  const QString named = source_->rowName(sourceRow(section));
  return named.isEmpty() ? QVariant(sourceRow(section) + 1) : named;
}

void TableModel::fillOrder() {
  if (!isWhole()) return;
  order_.resize(static_cast<std::size_t>(source_->rows()));
  std::iota(order_.begin(), order_.end(), 0);
}

void TableModel::sort(int column, Qt::SortOrder order) {
  if (source_ == nullptr || column < 0 || column >= source_->columns()) return;
  beginResetModel();
  fillOrder();
  const bool ascending = order == Qt::AscendingOrder;
  if (source_->isNumeric(column)) {
    std::vector<double> keys(order_.size());
    std::transform(order_.begin(), order_.end(), keys.begin(), [&](int row) { return source_->number(row, column); });
    const auto less = [ascending](double a, double b) {
      if (std::isnan(a) || std::isnan(b))
        return ascending ? !std::isnan(a) && std::isnan(b) : std::isnan(a) && !std::isnan(b);
      return a < b;
    };
    sortRows(order_, keys, ascending, less);
  } else {
    std::vector<QString> keys(order_.size());
    std::transform(order_.begin(), order_.end(), keys.begin(),
                   [&](int row) { return source_->shownText(row, column); });
    const auto less = [ascending](const QString& a, const QString& b) {
      if (a.isEmpty() || b.isEmpty()) return ascending ? b.isEmpty() && !a.isEmpty() : a.isEmpty() && !b.isEmpty();
      return a.localeAwareCompare(b) < 0;
    };
    sortRows(order_, keys, ascending, less);
  }
  endResetModel();
}

}  // namespace tarvex
