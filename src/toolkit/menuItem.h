#pragma once

class QAction;
class QMenuBar;

namespace tarvex {

// The item at `item` of the menu at `menu`, both counted from 0 and separators not counted; null when there is none.
QAction* menuItem(const QMenuBar& bar, int menu, int item);

}  // namespace tarvex
