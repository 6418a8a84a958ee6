#include "toolkit/Display.h"

#include <QBuffer>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QGuiApplication>
#include <QImageReader>
#include <QPalette>
#include <QSettings>

namespace tarvex {
namespace {

constexpr int kIconSizes[] = {16, 24, 32, 48, 64};  // what labels and buttons ask for at one and two pixels a point

QPixmap drawn(QByteArray drawing, const QColor& ink, int pixels) {
  drawing.replace("currentColor", ink.name().toLatin1());
  QBuffer buffer(&drawing);
  QImageReader reader(&buffer, "svg");
  reader.setScaledSize({pixels, pixels});
  return QPixmap::fromImageReader(&reader);
}

}  // namespace

void Display::appendToSearchPath(const QString& directory) {
  directories_.append(directory);
}

void Display::keepIn(const QString& path) {
  kept_ = std::make_shared<QSettings>(path, QSettings::IniFormat);
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
      QString path = find(stem + QLatin1String(served));
      if (!path.isEmpty()) return path;
    }
  }
  return find(name);
}

QPixmap Display::bitmap(const QString& name) const {
  QString path = findBitmap(name);
  if (!path.endsWith(".svg")) {
    const QFileInfo picture(path);
    const QString twofold = picture.path() + '/' + picture.completeBaseName() + "@2x." + picture.suffix();
    if (qGuiApp->devicePixelRatio() > 1.0 && QFileInfo::exists(twofold)) path = twofold;  // its name sets the ratio
    return path.isEmpty() ? QPixmap() : QPixmap(path);
  }
  QFile file(path);
  if (!file.open(QIODevice::ReadOnly)) return {};
  const qreal ratio = qGuiApp->devicePixelRatio();
  QByteArray drawing = file.readAll();
  drawing.replace("currentColor", QGuiApplication::palette().color(QPalette::WindowText).name().toLatin1());
  QBuffer buffer(&drawing);
  QImageReader reader(&buffer, "svg");
  reader.setScaledSize(reader.size() * ratio);
  QPixmap pixmap = QPixmap::fromImageReader(&reader);
  pixmap.setDevicePixelRatio(ratio);
  return pixmap;
}

QIcon Display::icon(const QString& name) const {
  const QString path = findBitmap(name);
  if (!path.endsWith(".svg")) return path.isEmpty() ? QIcon() : QIcon(path);
  const QPalette palette = QGuiApplication::palette();
  const QColor usual = palette.color(QPalette::Active, QPalette::ButtonText);
  const QColor weak = palette.color(QPalette::Disabled, QPalette::ButtonText);
  QIcon& icon = icons_[path + ' ' + usual.name() + ' ' + weak.name()];
  QFile file(path);
  if (!icon.isNull() || !file.open(QIODevice::ReadOnly)) return icon;
  const QByteArray drawing = file.readAll();
  for (const int pixels : kIconSizes) {
    icon.addPixmap(drawn(drawing, usual, pixels), QIcon::Normal);
    icon.addPixmap(drawn(drawing, weak, pixels), QIcon::Disabled);
  }
  return icon;
}

}  // namespace tarvex
