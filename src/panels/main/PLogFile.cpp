#include "panels/main/PLogFile.h"

#include <QFile>
#include <QKeySequence>
#include <QLabel>
#include <QPlainTextEdit>

#include "base/RememberedDirectories.h"
#include "toolkit/Dialogs.h"

namespace tarvex {
namespace {

constexpr qint64 kMostShown = 64LL << 20;  // bytes; a longer log shows its end, where the trouble is

}  // namespace

PLogFile::PLogFile(const Display& display, QWidget* parent)
    : Panel(display, "PLogFile", "LogFile", "Log File Panel", parent) {
  gadget<QLabel>("MFileName")->setText("No file selected");
  gadget<QPlainTextEdit>("TeText")->setPlaceholderText("Open a file to see what a model printed.");
  registerCallbacks({{"fileOpen", [this] { fileOpen(); }}, {"close", [this] { end(false); }}});
  bindKey(QKeySequence(Qt::Key_Escape), [this] { end(false); });
}

PLogFile::PLogFile(const Display& display, const QString& path, QWidget* parent) : PLogFile(display, parent) {
  load(path);
}

void PLogFile::fileOpen() {
  const FileChoice choice{"Open log file",
                          {{"*", "all files"}},
                          QString::fromStdString(RememberedDirectories::get(RememberedDirectories::Model))};
  const auto chosen = Dialogs::current().chooseFile(choice, window());
  if (!chosen) return;
  // A directory that is gone by now leaves the old one.
  static_cast<void>(RememberedDirectories::set(RememberedDirectories::Model, chosen->directory.toStdString()));
  load(chosen->path);
}

void PLogFile::load(const QString& path) {
  QFile file(path);
  if (!file.open(QIODevice::ReadOnly)) {
    Dialogs::current().message(DialogKind::Error, "Error", "Error opening file\n" + path + ": " + file.errorString(),
                               window());
    return;
  }
  if (file.size() > kMostShown && file.seek(file.size() - kMostShown)) file.readLine();
  gadget<QLabel>("MFileName")->setText(path);
  gadget<QPlainTextEdit>("TeText")->setPlainText(QString::fromUtf8(file.readAll()));
}

}  // namespace tarvex
