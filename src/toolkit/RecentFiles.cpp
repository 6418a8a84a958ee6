#include "toolkit/RecentFiles.h"

#include <QFileInfo>
#include <QMenu>
#include <QSettings>
#include <utility>

#include "toolkit/Display.h"

namespace tarvex {
namespace {

constexpr int kMostFiles = 8;
constexpr const char* kKey = "recent";

}  // namespace

RecentFiles::RecentFiles(const Display& display, QMenu& menu, std::function<void(const QString&)> open)
    : display_(display), menu_(menu), open_(std::move(open)) {
  if (display_.kept() != nullptr) paths_ = display_.kept()->value(kKey).toStringList();
  fillMenu();
}

void RecentFiles::add(const QString& path) {
  const QString absolute = QFileInfo(path).absoluteFilePath();
  paths_.removeAll(absolute);
  paths_.prepend(absolute);
  if (paths_.size() > kMostFiles) paths_.removeLast();
  if (display_.kept() != nullptr) display_.kept()->setValue(kKey, paths_);
  fillMenu();
}

// An entry is chosen while its menu is shown, so the menu is filled anew only after that.
void RecentFiles::fillMenu() {
  menu_.clear();
  for (int i = 0; i < paths_.size(); ++i) {
    const QFileInfo file(paths_[i]);
    QAction* const entry = menu_.addAction(QString("&%1  %2").arg(i + 1).arg(file.fileName().replace('&', "&&")));
    entry->setToolTip(paths_[i]);
    QObject::connect(
        entry, &QAction::triggered, &menu_, [this, path = paths_[i]] { open_(path); }, Qt::QueuedConnection);
  }
  menu_.setEnabled(!paths_.isEmpty());
  menu_.setToolTipsVisible(true);
}

}  // namespace tarvex
