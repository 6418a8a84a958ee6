#include "panels/main/TarvexApplication.h"

#include <QGuiApplication>
#include <QStandardPaths>
#include <QTimer>
#include <QWidget>

#include "app/MainDirectory.h"
#include "app/StartUp.h"
#include "panels/help/PHelpViewer.h"
#include "panels/main/PMainPanel.h"
#include "report/versions.h"
#include "toolkit/SignalWatch.h"
#include "toolkit/print.h"

namespace tarvex {
namespace {

constexpr int kLeft = 30;
constexpr int kTop = 154;

}  // namespace

TarvexApplication::TarvexApplication(int& argc, char** argv)
    : application_(argc, argv, "Tarvex", QString::fromStdString(programVersion())) {}

TarvexApplication::~TarvexApplication() = default;

void TarvexApplication::buildPanels() {
  // Not in the home directory: a main directory holds all that is the user's own.
  application_.display().keepIn(QString::fromStdString(MainDirectory::get() + "/desktop.ini"));
  for (const std::string& directory : MainDirectory::panelDirectories())
    application_.display().appendToSearchPath(QString::fromStdString(directory));
  QGuiApplication::setWindowIcon(application_.display().icon("../bitmaps/tarvex.svg"));
  QGuiApplication::setDesktopFileName("tarvex");
  application_.display().setHelp([this](HelpCommand command, const QString& topic) { showHelp(command, topic); });
  panel_ = std::make_unique<PMainPanel>(application_.display(), "PMainPanel",
                                        "Tarvex: Simulation environment for uncertainty and sensitivity analysis",
                                        MainDirectory::get());
  if (!panel_->hasPlace()) panel_->window()->move(kLeft, kTop);
  panel_->readLaunchRequest();
}

void TarvexApplication::showHelp(HelpCommand command, const QString& topic) {
  if (!help_) {
    const QString cache = QStandardPaths::writableLocation(QStandardPaths::GenericCacheLocation) + "/tarvex";
    help_ = std::make_unique<PHelpViewer>(application_.display(), cache);
  }
  help_->serve(command, topic);
}

int TarvexApplication::run(const std::vector<std::string>& files) {
  StartUp startUp;
  if (!startUp.run()) {
    print(QString::fromStdString(startUp.errorText()));
    return 0;  // Kept: a start that failed in this way counts as a normal end.
  }
  buildPanels();
  if (!panel_->show()) return 1;
  signals_ = std::make_unique<SignalWatch>([this](int signal) { panel_->endBySignal(signal); });
  // From the event loop, so that an end in the middle of a question is one.
  QTimer::singleShot(0, panel_->window(), [this, files] {
    if (files.empty()) panel_->offerRecovery();
    for (const std::string& file : files) panel_->openFile(QString::fromStdString(file));
  });
  return application_.run();
}

}  // namespace tarvex
