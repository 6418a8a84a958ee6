#include "toolkit/Tree.h"

#include <gtest/gtest.h>

#include <QDragEnterEvent>
#include <QMimeData>
#include <QTest>
#include <memory>

namespace tarvex {
namespace {

class TreeTest : public testing::Test {
 protected:
  TreeTest() {
    tree_.setItems({{1, kNoParent, "one"}, {2, 1, "two"}, {3, 2, "three"}, {4, kNoParent, "four"}});
    list_.setNesting(false);
    list_.setItems({{7, kNoParent, "seven"}, {8, kNoParent, "eight"}});
    for (Tree* const tree : {&tree_, &list_}) {
      tree->resize(300, 300);
      tree->show();
      QObject::connect(tree, &Tree::dropped, tree, [this, tree](const TreeDrop& drop) {
        told_ = (drop.source == tree ? "" : "from the other ") + std::to_string(drop.id) + " to " +
                std::to_string(drop.parent) + " at " + std::to_string(drop.place);
      });
      QObject::connect(tree, &Tree::refused, tree, [this](const QString& why) { refused_ = why.toStdString(); });
    }
    QCoreApplication::processEvents();
  }
  QPoint placeOf(Tree& tree, int id) {
    tree.setCurrent(id);
    return tree.visualItemRect(tree.currentItem()).center();
  }
  // What a drag of the mouse sends.
  std::string drag(Tree& from, int id, Tree& to, const QPoint& place) {
    told_.clear();
    refused_.clear();
    placeOf(from, id);
    const std::unique_ptr<QMimeData> data(from.model()->mimeData({from.currentIndex()}));
    QDragEnterEvent enter(place, Qt::MoveAction, data.get(), Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(to.viewport(), &enter);
    QDragMoveEvent move(place, Qt::MoveAction, data.get(), Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(to.viewport(), &move);
    if (!move.isAccepted()) return "refused: " + refused_;
    QDropEvent drop(place, Qt::MoveAction, data.get(), Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(to.viewport(), &drop);
    return told_;
  }
  std::string key(Tree& tree, int id, Qt::Key pressed) {
    told_.clear();
    tree.setCurrent(id);
    QTest::keyClick(&tree, pressed, Qt::AltModifier);
    return told_;
  }

  Tree tree_, list_;
  std::string told_, refused_;
};

TEST_F(TreeTest, DragsAreToldAndTheTreeStaysAsItIs) {
  EXPECT_EQ(drag(tree_, 4, tree_, placeOf(tree_, 3)), "4 to 3 at 0");
  EXPECT_EQ(drag(list_, 8, tree_, placeOf(tree_, 1)), "from the other 8 to 1 at 1");
  EXPECT_EQ(drag(list_, 8, tree_, {100, 280}), "from the other 8 to -1 at 2");
  EXPECT_EQ(drag(tree_, 3, list_, placeOf(list_, 7)), "from the other 3 to -1 at 0");
  EXPECT_EQ(drag(tree_, 1, tree_, placeOf(tree_, 3)), "refused: An item can't stand below itself.");
  tree_.refusal = [](const TreeDrop&) { return QString("not now"); };
  EXPECT_EQ(drag(tree_, 4, tree_, placeOf(tree_, 3)), "refused: not now");
  tree_.refusal = nullptr;
  tree_.setReadOnly(true);
  EXPECT_EQ(drag(list_, 8, tree_, placeOf(tree_, 1)), "refused: ");
  ASSERT_EQ(tree_.items().size(), 4U);
  EXPECT_EQ(tree_.items()[2].parent, 2);
}

TEST_F(TreeTest, KeysDoTheSame) {
  EXPECT_EQ(key(tree_, 4, Qt::Key_Up), "4 to -1 at 0");
  EXPECT_EQ(key(tree_, 1, Qt::Key_Down), "1 to -1 at 2");
  EXPECT_EQ(key(tree_, 4, Qt::Key_Right), "4 to 1 at 1");
  EXPECT_EQ(key(tree_, 3, Qt::Key_Left), "3 to 1 at 1");
  EXPECT_EQ(key(tree_, 4, Qt::Key_Down) + key(tree_, 1, Qt::Key_Left) + key(list_, 8, Qt::Key_Right), "");
  tree_.setCurrent(3);
  QTest::keySequence(&tree_, QKeySequence::Cut);
  QTest::keySequence(&list_, QKeySequence::Paste);
  EXPECT_EQ(told_, "from the other 3 to -1 at 2");
  EXPECT_EQ(tree_.current(), 3);
  tree_.setItems({{3, kNoParent, "three"}, {1, kNoParent, "one"}});
  EXPECT_EQ(tree_.current(), 3);
}

}  // namespace
}  // namespace tarvex
