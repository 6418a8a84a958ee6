#include "toolkit/longNames.h"

#include <QComboBox>

namespace tarvex {

QString shortened(const QString& name, int most) {
  if (name.size() <= most) return name;
  const QChar dots(0x2026);
  const int tail = (most - 1) / 2;
  return name.left(most - 1 - tail) + dots + name.right(tail);
}

void addName(QComboBox& list, const QString& name) {
  list.addItem(name);
  list.setItemData(list.count() - 1, name, Qt::ToolTipRole);
}

}  // namespace tarvex
