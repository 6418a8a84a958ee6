#include "panels/main/TarvexApplication.h"

#include <QWidget>

#include "app/MainDirectory.h"
#include "app/StartUp.h"
#include "panels/main/PMainPanel.h"
#include "report/versions.h"
#include "toolkit/print.h"

namespace tarvex {
namespace {

constexpr int kLeft = 30;
constexpr int kTop = 154;

}  // namespace

TarvexApplication::TarvexApplication(int& argc, char** argv)
    : application_(argc, argv, "Tarvex", QString::fromStdString(versionsInUse().front().second)) {}

TarvexApplication::~TarvexApplication() = default;

void TarvexApplication::buildPanels() {
  for (const std::string& directory : MainDirectory::panelDirectories())
    application_.display().appendToSearchPath(QString::fromStdString(directory));
  panel_ = std::make_unique<PMainPanel>(application_.display(), "PMainPanel",
                                        "Tarvex: Simulation environment for uncertainty and sensitivity analysis",
                                        MainDirectory::get());
  panel_->window()->move(kLeft, kTop);
  panel_->readLaunchRequest();
}

int TarvexApplication::run(const std::vector<std::string>& files) {
  StartUp startUp;
  if (!startUp.run()) {
    print(QString::fromStdString(startUp.errorText()));
    return 0;  // Kept: a start that failed in this way counts as a normal end.
  }
  buildPanels();
  if (!panel_->show()) return 1;
  for (const std::string& file : files) panel_->openFile(QString::fromStdString(file));
  return application_.run();
}

}  // namespace tarvex
