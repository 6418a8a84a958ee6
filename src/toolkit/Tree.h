#pragma once

#include <QString>
#include <QTreeWidget>
#include <functional>
#include <vector>

namespace tarvex {

inline constexpr int kNoParent = -1;

// An item of a tree. Ids are the caller's own, each once in a tree, and not negative.
struct TreeItem {
  int id = 0;
  int parent = kNoParent;  // an id, or kNoParent for an item of the top
  QString text;
  QString toolTip = {};
};

class Tree;

// What a user wants to be moved, and where to.
struct TreeDrop {
  Tree* source = nullptr;  // the tree in which the item is; maybe another one
  int id = 0;
  int parent = kNoParent;
  int place = 0;  // among the parent's children as they are before the move, 0 to their number
};

// A tree, or, without nesting, a list, whose items are moved by drag and drop, also from one Tree to another. It never
// changes by itself: it asks `refusal`, then tells dropped(), and the panel changes what it edits and sets the items
// anew, by which the user's place and what is unfolded stay.
//
// By keyboard: Alt with up and down moves among siblings, Alt+Right below the item above, Alt+Left out of its parent;
// Ctrl+X picks an item up, and Ctrl+V, in whatever Tree of the program, puts it below the current item.
//
// In a panel's file: class Tree, base QTreeWidget; the property "nesting" says whether items may have children, and
// with "dragDropOverwriteMode" an item is put on the one under the pointer only, never between two.
class Tree : public QTreeWidget {
  Q_OBJECT
  Q_PROPERTY(bool nesting MEMBER nesting_)

 public:
  explicit Tree(QWidget* parent = nullptr);

  // Parents stand before their children. Items of an unknown parent stand at the top.
  void setItems(const std::vector<TreeItem>& items);
  // In the order in which they are shown.
  std::vector<TreeItem> items() const;
  // The id of the current item, or -1.
  int current() const;
  void setCurrent(int id);
  // The item at a place of the widget, or -1.
  int idAt(const QPoint& place) const;
  // Whether `id` is `ancestor` or below it.
  bool isWithin(int id, int ancestor) const;

  void setNesting(bool nesting) { nesting_ = nesting; }
  void setReadOnly(bool readOnly);
  // A sentence in the place of the items while there are none.
  void setEmptyText(const QString& text);

  // Why an item can't be moved there; empty when it can. Asked while the user drags, and before dropped(). Without one
  // everything goes but what isn't a tree: an item below itself.
  std::function<QString(const TreeDrop&)> refusal;

 Q_SIGNALS:
  void dropped(const tarvex::TreeDrop& drop);
  // Why what the user tries can't be, for the status line; empty when it can.
  void refused(const QString& why);
  // What is held over the tree.
  void hovered(const tarvex::TreeDrop& drop);
  // Told by the tree that the item comes from, whichever it is held over: behind hovered() and dropped() of that one.
  void dragStarted();
  void dragMoved();
  void dragEnded();

 protected:
  void startDrag(Qt::DropActions actions) override;
  void keyPressEvent(QKeyEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  void dragEnterEvent(QDragEnterEvent* event) override;
  void dragMoveEvent(QDragMoveEvent* event) override;
  void dropEvent(QDropEvent* event) override;
  QStringList mimeTypes() const override;
  QMimeData* mimeData(const QList<QTreeWidgetItem*>& items) const override;
  Qt::DropActions supportedDropActions() const override { return Qt::MoveAction; }

 private:
  QTreeWidgetItem* itemOf(int id) const;
  TreeDrop dropAt(const QMimeData& carried, const QPoint& place) const;
  QString whyNot(const TreeDrop& drop) const;
  bool offer(const TreeDrop& drop);
  bool moveByKey(int key);

  bool nesting_ = true;
  QString emptyText_;
};

}  // namespace tarvex
