#include "panels/main/openedKind.h"

#include <QFile>
#include <QFileInfo>

namespace tarvex {

OpenedKind openedKind(const QString& path) {
  const QString suffix = QFileInfo(path).suffix().toLower();
  if (suffix == "sam") return OpenedKind::Sample;
  if (suffix == "spc" || suffix == "dem") return OpenedKind::Results;
  if (suffix == "fac") return OpenedKind::Factors;
  if (suffix == "imd") return OpenedKind::Model;
  QFile file(path);
  constexpr qint64 kHeading = 99;  // the longest that a project's reader takes
  if (suffix == "psc" || !file.open(QIODevice::ReadOnly)) return OpenedKind::Project;
  return file.readLine(kHeading).contains("Prep Configuration") ? OpenedKind::Project : OpenedKind::ExternalSample;
}

}  // namespace tarvex
