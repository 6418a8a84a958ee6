#include "toolkit/menuItem.h"

#include <QMenu>
#include <QMenuBar>

namespace tarvex {

QAction* menuItem(const QMenuBar& bar, int menu, int item) {
  const QList<QAction*> menus = bar.actions();
  if (menu < 0 || menu >= menus.size() || menus[menu]->menu() == nullptr) return nullptr;
  int passed = 0;
  for (QAction* const action : menus[menu]->menu()->actions())
    if (!action->isSeparator() && passed++ == item) return action;
  return nullptr;
}

}  // namespace tarvex
