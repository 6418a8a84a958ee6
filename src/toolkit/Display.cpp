#include "toolkit/Display.h"

#include <QDir>
#include <QFileInfo>

namespace tarvex {

void Display::appendToSearchPath(const QString& directory) {
  directories_.append(directory);
}

QString Display::find(const QString& name) const {
  for (const QString& directory : directories_) {
    const QFileInfo file(QDir(directory).filePath(name));
    if (file.isFile()) return QDir::cleanPath(file.absoluteFilePath());
  }
  return {};
}

QString Display::findBitmap(const QString& name) const {
  const QString suffix = QFileInfo(name).suffix().toLower();
  if (suffix == "bmp" || suffix == "gif") {
    const QString stem = name.chopped(suffix.size());
    for (const char* const served : {"svg", "png"}) {
      const QString path = find(stem + QLatin1String(served));
      if (!path.isEmpty()) return path;
    }
  }
  return find(name);
}

QPixmap Display::bitmap(const QString& name) const {
  const QString path = findBitmap(name);
  return path.isEmpty() ? QPixmap() : QPixmap(path);
}

QIcon Display::icon(const QString& name) const {
  const QString path = findBitmap(name);
  return path.isEmpty() ? QIcon() : QIcon(path);
}

}  // namespace tarvex
