// What the correlation panel does with the dependence tree.

#include <QTimer>
#include <algorithm>

#include "base/NumberText.h"
#include "panels/prep/PCorrelation.h"
#include "panels/prep/PCorrelationValue.h"

namespace tarvex {
namespace {

constexpr const char* kCyclic = "   Cyclic correlation not allowed";

void addItems(const CorrelationDraft& draft, int place, int parent, std::vector<TreeItem>& items) {
  const double correlation = draft.node(place).correlation;
  const QString tip = parent == kNoParent ? QString("A root: it has no parent.")
                                          : draft.name(place) + " with " + draft.name(parent) + ": " +
                                                QString::fromStdString(numberText(correlation));
  items.push_back({place, parent, QString::asprintf("%.2f   ", correlation) + draft.name(place), tip});
  for (const std::int32_t child : draft.node(place).children) addItems(draft, child, place, items);
}

}  // namespace

void PCorrelation::prepareTrees() {
  for (const char* const name : {"TrCorrelation", "SlFactors"}) {
    auto* const tree = gadget<Tree>(name);
    tree->setReadOnly(demo_);
    const bool isTree = name == QString("TrCorrelation");
    // A loop is told when the factor is dropped.
    tree->refusal = [](const TreeDrop&) { return QString(); };
    const auto keep = [this, isTree](const TreeDrop& drop) {
      drop_ = drop;
      onTree_ = isTree;
    };
    connect(tree, &Tree::hovered, this, keep);
    connect(tree, &Tree::dropped, this, keep);
  }
  gadget<Tree>("TrCorrelation")
      ->setEmptyText("No factor stands in the tree. Drag one here from the list, or double-click it.");
  gadget<Tree>("SlFactors")->setEmptyText("All factors stand in the tree.");
}

void PCorrelation::refreshTree() {
  std::vector<TreeItem> tree;
  std::vector<TreeItem> outside;
  for (const int place : draft_.places()) {
    if (!draft_.isInTree(place))
      outside.push_back({place, kNoParent, draft_.name(place)});
    else if (draft_.node(place).parent == kNoParentFactor)
      addItems(draft_, place, kNoParent, tree);
  }
  gadget<Tree>("TrCorrelation")->setItems(tree);
  auto* const list = gadget<Tree>("SlFactors");
  const int row = list->indexOfTopLevelItem(list->currentItem());
  list->setItems(outside);
  // Behind one that has gone to the tree the next is at hand.
  if (list->current() < 0 && row >= 0 && !outside.empty())
    list->setCurrent(outside[std::min(static_cast<std::size_t>(row), outside.size() - 1)].id);
}

void PCorrelation::duringDrag() {
  const QString name = draft_.name(drop_.id);
  if (!onTree_)
    say(drop_.source == gadget<Tree>("SlFactors") ? QString() : name + " out of the tree");
  else if (drop_.parent == kNoParent)
    say(name + " as a root");
  else if (drop_.parent != drop_.id && draft_.isWithin(drop_.parent, drop_.id))
    say(QString(kCyclic).trimmed());
  else
    say(name + " below " + draft_.name(drop_.parent));
}

// The drag has to be over before a panel asks for a value.
void PCorrelation::finishDrag() {
  QTimer::singleShot(0, this, [this, drop = drop_, intoTree = onTree_] { move(drop, intoTree); });
}

void PCorrelation::move(const TreeDrop& drop, bool intoTree) {
  if (intoTree) return link(drop.id, drop.parent, static_cast<std::size_t>(drop.place));
  if (drop.source == gadget<Tree>("TrCorrelation")) return takeOut(drop.id);
  refresh();
}

void PCorrelation::link(int child, int parent, std::size_t at) {
  refresh();  // what was said of the drag is past
  if (child == parent) return;
  const QString name = draft_.name(child);
  CorrelationDraft after = draft_;
  after.mode = kDependenceTree;
  if (parent == kNoParent) {
    if (draft_.isInTree(child) && draft_.node(child).parent == kNoParentFactor) return;
    after.makeRoot(child);
    enter("Root " + name, after);
  } else {
    if (draft_.isWithin(parent, child)) return tell("Error", kCyclic);
    double value = draft_.node(child).correlation;
    if (draft_.node(child).parent != parent && !askValue(child, parent, value)) return;
    after.link(child, parent, at, value);
    enter("Link " + name + " to " + draft_.name(parent), after);
  }
  gadget<Tree>("TrCorrelation")->setCurrent(child);
}

bool PCorrelation::askValue(int child, int parent, double& value) {
  PCorrelationValue panel(display(), draft_.name(child) + " with " + draft_.name(parent), value, window());
  panel.centre();
  if (!panel.runModal() || !panel.accepted()) return false;
  value = panel.value();
  return true;
}

void PCorrelation::takeOut(int place) {
  CorrelationDraft after = draft_;
  after.mode = kDependenceTree;
  after.takeOut(place);
  enter("Take " + draft_.name(place) + " out of the tree", after);
  gadget<Tree>("SlFactors")->setCurrent(place);
}

// Without a drag: below the current one of the tree.
void PCorrelation::takeFactor() {
  const int place = gadget<Tree>("SlFactors")->current();
  if (demo_ || place < 0) return;
  const int parent = gadget<Tree>("TrCorrelation")->current();
  link(place, parent < 0 ? kNoParent : parent, parent < 0 ? 0 : draft_.node(parent).children.size());
}

void PCorrelation::doubleClick() {
  const int child = gadget<Tree>("TrCorrelation")->current();
  if (demo_ || child < 0) return;
  const int parent = draft_.node(child).parent;
  if (parent == kNoParentFactor) return say(draft_.name(child) + " is a root: it has no parent to be correlated with.");
  double value = draft_.node(child).correlation;
  if (!askValue(child, parent, value)) return;
  const std::vector<std::int32_t>& children = draft_.node(parent).children;
  CorrelationDraft after = draft_;
  after.mode = kDependenceTree;
  after.link(child, parent, static_cast<std::size_t>(std::ranges::find(children, child) - children.begin()), value);
  enter("Correlation of " + draft_.name(child) + " and " + draft_.name(parent), after);
}

}  // namespace tarvex
