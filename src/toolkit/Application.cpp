#include "toolkit/Application.h"

#include <unistd.h>

#include <QLocale>

#include "toolkit/Theme.h"
#include "toolkit/print.h"

namespace tarvex {
namespace {

constexpr int kNoDisplay = 255;  // -1 as the shell sees it

void handleMessage(QtMsgType type, const QMessageLogContext&, const QString& text) {
  if (type == QtFatalMsg) {
    const bool starting = QCoreApplication::startingUp();
    print(starting ? "There is no display on which windows could be shown (DISPLAY, WAYLAND_DISPLAY)." : text);
    ::_exit(kNoDisplay);
  }
  if (text.startsWith("QStandardPaths:"))
    return;  // where the session has no runtime directory; nothing of ours needs it
  if (type == QtWarningMsg || type == QtCriticalMsg) print(text);
}

}  // namespace

Application::Application(int& argc, char** argv, const QString& name, const QString& version) {
  qInstallMessageHandler(handleMessage);
  QLocale::setDefault(QLocale::c());
  QCoreApplication::setApplicationName(name);
  QCoreApplication::setApplicationVersion(version);
  QCoreApplication::setOrganizationName(name);
  application_ = std::make_unique<QApplication>(argc, argv);
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
