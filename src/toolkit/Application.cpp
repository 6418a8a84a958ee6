#include "toolkit/Application.h"

#include <unistd.h>

#include <QFontMetrics>
#include <QLocale>
#include <QStringList>
#include <utility>

#include "toolkit/Theme.h"
#include "toolkit/print.h"

namespace tarvex {
namespace {

constexpr int kNoDisplay = 255;  // -1 as the shell sees it

// Warnings of the start, which are of no use to a user who is then told that there is no display.
QStringList& ofTheStart() {
  static QStringList warnings;
  return warnings;
}

void handleMessage(QtMsgType type, const QMessageLogContext&, const QString& text) {
  if (type == QtFatalMsg) {
    const bool starting = QCoreApplication::startingUp();
    print(starting ? "There is no display on which windows could be shown (DISPLAY, WAYLAND_DISPLAY)." : text);
    ::_exit(kNoDisplay);
  }
  if (text.startsWith("QStandardPaths:"))
    return;  // where the session has no runtime directory; nothing of ours needs it
  if (type != QtWarningMsg && type != QtCriticalMsg) return;
  if (QCoreApplication::startingUp())
    ofTheStart() << text;
  else
    print(text);
}

}  // namespace

Application::Application(int& argc, char** argv, const QString& name, const QString& version) {
  qInstallMessageHandler(handleMessage);
  QLocale::setDefault(QLocale::c());
  QCoreApplication::setApplicationName(name);
  QCoreApplication::setApplicationVersion(version);
  QCoreApplication::setOrganizationName(name);
  application_ = std::make_unique<QApplication>(argc, argv);
  for (const QString& warning : std::exchange(ofTheStart(), {})) print(warning);
  // Some other font takes the place of one that isn't there, and boxes that of letters where there is none.
  if (!QFontMetrics(QApplication::font()).inFont('a'))
    print("No font is installed, so that panels can't show their texts; any will do, such as DejaVu Sans.");
  applyTheme();
}

Application::~Application() = default;

int Application::run() {
  return QApplication::exec();
}

void Application::exit(int status) {
  QApplication::exit(status);
}

void Application::drainEvents() {
  QCoreApplication::processEvents();
}

}  // namespace tarvex
