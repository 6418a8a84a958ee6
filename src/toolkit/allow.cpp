#include "toolkit/allow.h"

#include <QVariant>
#include <QWidget>

namespace tarvex {

void allow(QObject& gadget, const QString& reason) {
  constexpr const char* kUsual = "usualToolTip";
  if (!gadget.property(kUsual).isValid()) gadget.setProperty(kUsual, gadget.property("toolTip"));
  const QString usual = gadget.property(kUsual).toString();
  gadget.setProperty("enabled", reason.isEmpty());
  gadget.setProperty("toolTip", reason.isEmpty() ? usual : usual + '\n' + reason);
  if (auto* const widget = qobject_cast<QWidget*>(&gadget)) widget->setAccessibleDescription(reason);
}

}  // namespace tarvex
