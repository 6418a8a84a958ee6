#include "toolkit/Tree.h"

#include <QCoreApplication>
#include <QDragMoveEvent>
#include <QDropEvent>
#include <QHeaderView>
#include <QKeyEvent>
#include <QMimeData>
#include <QPainter>
#include <QPointer>
#include <set>
#include <utility>

namespace tarvex {
namespace {

constexpr int kIdRole = Qt::UserRole;
constexpr int kNoItem = -1;
constexpr int kItemMargin = 8;

// Items are moved within the program: the type of what is dragged is its own.
QString dragType() {
  return "application/x-tree-item-" + QString::number(QCoreApplication::applicationPid());
}

// What is being moved: one item at a time in the whole program.
struct Picked {
  QPointer<Tree> tree;
  int id = kNoItem;
};
Picked& dragged() {
  static Picked item;
  return item;
}
Picked& pickedUp() {
  static Picked item;
  return item;
}

int idOf(const QTreeWidgetItem* item) {
  return item != nullptr ? item->data(0, kIdRole).toInt() : kNoItem;
}

template <class Visit>
void visitItems(QTreeWidgetItem* item, const Visit& visit) {
  for (int i = 0; i < item->childCount(); ++i) {
    visit(item->child(i));
    visitItems(item->child(i), visit);
  }
}

}  // namespace

Tree::Tree(QWidget* parent) : QTreeWidget(parent) {
  setHeaderHidden(true);
  setColumnCount(1);
  setReadOnly(false);
  setSelectionMode(QAbstractItemView::SingleSelection);
}

void Tree::setReadOnly(bool readOnly) {
  setDragDropMode(readOnly ? QAbstractItemView::NoDragDrop : QAbstractItemView::DragDrop);
  setDropIndicatorShown(true);
}

void Tree::setItems(const std::vector<TreeItem>& items) {
  const int currentId = current();
  std::set<int> folded;
  visitItems(invisibleRootItem(), [&](const QTreeWidgetItem* item) {
    if (item->childCount() > 0 && !item->isExpanded()) folded.insert(idOf(item));
  });
  clear();
  for (const TreeItem& item : items) {
    QTreeWidgetItem* const parent = item.parent == kNoParent ? nullptr : itemOf(item.parent);
    auto* const added = parent != nullptr ? new QTreeWidgetItem(parent) : new QTreeWidgetItem(this);
    added->setText(0, item.text);
    added->setToolTip(0, item.toolTip);
    added->setData(0, kIdRole, item.id);
    added->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsDragEnabled | Qt::ItemIsDropEnabled);
  }
  visitItems(invisibleRootItem(), [&](QTreeWidgetItem* item) { item->setExpanded(folded.count(idOf(item)) == 0); });
  setCurrent(currentId);
}

std::vector<TreeItem> Tree::items() const {
  std::vector<TreeItem> items;
  visitItems(invisibleRootItem(), [&](const QTreeWidgetItem* item) {
    items.push_back({idOf(item), idOf(item->parent()), item->text(0), item->toolTip(0)});
  });
  return items;
}

QTreeWidgetItem* Tree::itemOf(int id) const {
  QTreeWidgetItem* found = nullptr;
  visitItems(invisibleRootItem(), [&](QTreeWidgetItem* item) {
    if (idOf(item) == id) found = item;
  });
  return found;
}

int Tree::current() const {
  return idOf(currentItem());
}

void Tree::setCurrent(int id) {
  if (QTreeWidgetItem* const item = itemOf(id)) setCurrentItem(item);
}

int Tree::idAt(const QPoint& place) const {
  return idOf(itemAt(viewport()->mapFrom(this, place)));
}

bool Tree::isWithin(int id, int ancestor) const {
  for (const QTreeWidgetItem* item = itemOf(id); item != nullptr; item = item->parent())
    if (idOf(item) == ancestor) return true;
  return false;
}

void Tree::setEmptyText(const QString& text) {
  emptyText_ = text;
  viewport()->update();
}

void Tree::paintEvent(QPaintEvent* event) {
  QTreeWidget::paintEvent(event);
  if (topLevelItemCount() > 0 || emptyText_.isEmpty()) return;
  QPainter painter(viewport());
  painter.setPen(palette().color(QPalette::PlaceholderText));
  painter.drawText(viewport()->rect().adjusted(kItemMargin, kItemMargin, -kItemMargin, -kItemMargin),
                   Qt::AlignCenter | Qt::TextWordWrap, emptyText_);
}

QStringList Tree::mimeTypes() const {
  return {dragType()};
}

QMimeData* Tree::mimeData(const QList<QTreeWidgetItem*>& items) const {
  if (items.isEmpty()) return nullptr;
  dragged() = {const_cast<Tree*>(this), idOf(items.front())};  // it is told how the drag goes on
  auto* const dragData = new QMimeData;                        // the drag takes it over
  dragData->setData(dragType(), QByteArray::number(idOf(items.front())));
  return dragData;
}

TreeDrop Tree::dropAt(const QMimeData& carried, const QPoint& place) const {
  TreeDrop drop{dragged().tree, carried.data(dragType()).toInt(), kNoParent, topLevelItemCount()};
  const QTreeWidgetItem* const item = itemAt(place);
  if (item == nullptr) return drop;
  const QTreeWidgetItem* const parent = item->parent() != nullptr ? item->parent() : invisibleRootItem();
  const int number = parent->indexOfChild(const_cast<QTreeWidgetItem*>(item));
  DropIndicatorPosition where = dropIndicatorPosition();
  if (dragDropOverwriteMode()) where = OnItem;
  if (where == OnItem && !nesting_) where = AboveItem;
  if (where == OnItem) return {drop.source, drop.id, idOf(item), item->childCount()};
  return {drop.source, drop.id, item->parent() != nullptr ? idOf(item->parent()) : kNoParent,
          number + (where == BelowItem ? 1 : 0)};
}

QString Tree::whyNot(const TreeDrop& drop) const {
  if (drop.source == nullptr) return "It is gone.";
  if (refusal) return refusal(drop);
  if (drop.source == this && drop.parent != kNoParent && isWithin(drop.parent, drop.id))
    return "An item can't stand below itself.";
  return {};
}

bool Tree::offer(const TreeDrop& drop) {
  const QString why = whyNot(drop);
  Q_EMIT refused(why);
  if (!why.isEmpty()) return false;
  const QPointer<Tree> source = drop.source;
  Q_EMIT dropped(drop);
  if (source) Q_EMIT source->dragEnded();
  return true;
}

void Tree::startDrag(Qt::DropActions actions) {
  Q_EMIT dragStarted();
  QTreeWidget::startDrag(actions);
}

void Tree::dragEnterEvent(QDragEnterEvent* event) {
  if (event->mimeData()->hasFormat(dragType()) && dragDropMode() == QAbstractItemView::DragDrop)
    event->acceptProposedAction();
  else
    event->ignore();
}

void Tree::dragMoveEvent(QDragMoveEvent* event) {
  QTreeWidget::dragMoveEvent(event);  // scrolls, and finds where the item would stand
  if (!event->mimeData()->hasFormat(dragType()) || dragDropMode() != QAbstractItemView::DragDrop)
    return event->ignore();
  const TreeDrop drop = dropAt(*event->mimeData(), event->position().toPoint());
  const QString why = whyNot(drop);
  Q_EMIT refused(why);
  Q_EMIT hovered(drop);
  if (drop.source != nullptr) Q_EMIT drop.source->dragMoved();
  if (why.isEmpty())
    event->acceptProposedAction();
  else
    event->ignore();
}

void Tree::dropEvent(QDropEvent* event) {
  if (!event->mimeData()->hasFormat(dragType())) return event->ignore();
  const TreeDrop drop = dropAt(*event->mimeData(), event->position().toPoint());
  // A move would make the drag's source take its item out, which is the panel's to do.
  event->setDropAction(Qt::CopyAction);
  event->accept();
  setState(NoState);
  offer(drop);
}

void Tree::keyPressEvent(QKeyEvent* event) {
  const bool editable = dragDropMode() == QAbstractItemView::DragDrop && currentItem() != nullptr;
  if (editable && event->modifiers() == Qt::AltModifier && moveByKey(event->key())) return;
  if (editable && event->matches(QKeySequence::Cut)) {
    pickedUp() = {this, current()};
    return;
  }
  if (dragDropMode() == QAbstractItemView::DragDrop && event->matches(QKeySequence::Paste) && pickedUp().tree) {
    const Picked item = std::exchange(pickedUp(), {});
    const QTreeWidgetItem* const on = nesting_ ? currentItem() : nullptr;
    offer({item.tree, item.id, on != nullptr ? idOf(on) : kNoParent,
           on != nullptr ? on->childCount() : topLevelItemCount()});
    return;
  }
  QTreeWidget::keyPressEvent(event);
}

bool Tree::moveByKey(int key) {
  QTreeWidgetItem* const item = currentItem();
  QTreeWidgetItem* const up = item->parent();
  const QTreeWidgetItem* const parent = up != nullptr ? up : invisibleRootItem();
  const int number = parent->indexOfChild(item);
  TreeDrop drop{this, idOf(item), up != nullptr ? idOf(up) : kNoParent, number};
  switch (key) {
    case Qt::Key_Up:
      if (number == 0) return true;
      drop.place = number - 1;
      break;
    case Qt::Key_Down:
      if (number + 1 == parent->childCount()) return true;
      drop.place = number + 2;
      break;
    case Qt::Key_Right:
      if (number == 0 || !nesting_) return true;
      drop.parent = idOf(parent->child(number - 1));
      drop.place = parent->child(number - 1)->childCount();
      break;
    case Qt::Key_Left: {
      if (up == nullptr) return true;
      QTreeWidgetItem* const above = up->parent() != nullptr ? up->parent() : invisibleRootItem();
      drop.parent = up->parent() != nullptr ? idOf(up->parent()) : kNoParent;
      drop.place = above->indexOfChild(up) + 1;
      break;
    }
    default:
      return false;
  }
  offer(drop);
  return true;
}

}  // namespace tarvex
