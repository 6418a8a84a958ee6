#include "panels/help/hintText.h"

#include <QFile>
#include <QFileInfo>

#include "toolkit/Display.h"

namespace tarvex {

QString hintText(const Display& display, const QString& bitmap) {
  const QFileInfo picture(bitmap);
  const QString path = display.find(picture.path() + "/hints/" + picture.completeBaseName() + ".html");
  QFile file(path);
  return !path.isEmpty() && file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

}  // namespace tarvex
