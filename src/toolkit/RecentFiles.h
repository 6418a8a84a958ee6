#pragma once

#include <QString>
#include <QStringList>
#include <functional>

class QMenu;

namespace tarvex {

class Display;

// The files of late, the last one first, as a menu; kept with the display's other things of the user.
class RecentFiles {
 public:
  // `open` is called with the path that the user picked. The menu must outlive the object.
  RecentFiles(const Display& display, QMenu& menu, std::function<void(const QString&)> open);

  void add(const QString& path);
  const QStringList& paths() const { return paths_; }

 private:
  void fillMenu();

  const Display& display_;
  QMenu& menu_;
  std::function<void(const QString&)> open_;
  QStringList paths_;
};

}  // namespace tarvex
