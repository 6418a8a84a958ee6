#include "panels/help/hintText.h"

#include <QFile>
#include <QFileInfo>

#include "toolkit/Display.h"

namespace tarvex {

QString hintText(const Display& display, const QString& bitmap) {
  const QFileInfo picture(bitmap);
  QFile file(display.find(picture.path() + "/hints/" + picture.completeBaseName() + ".html"));
  return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

}  // namespace tarvex
