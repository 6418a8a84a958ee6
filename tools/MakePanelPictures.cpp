// Draws every panel as it looks at work: make-panel-pictures MAIN STUDY.spc MODEL.imd DIRECTORY SUFFIX [dark]
#include <QApplication>
#include <QFont>
#include <QPalette>
#include <QWidget>
#include <cstdio>
#include <cstring>

#include "app/RunController.h"
#include "panels/main/PAbout.h"
#include "panels/main/PExternalModel.h"
#include "panels/main/PGenerate.h"
#include "panels/main/PHelp.h"
#include "panels/main/PLinkFactors.h"
#include "panels/main/PLogFile.h"
#include "panels/main/PMainPanel.h"
#include "toolkit/Application.h"
#include "toolkit/Display.h"
#include "toolkit/Theme.h"

namespace tarvex {
namespace {

constexpr int kFontPixels = 12;
constexpr double kSomeWay = 42.0;  // percent
constexpr int kRuns = 10'000;

// Saves panels as pictures; says which it couldn't.
class Pictures {
 public:
  Pictures(QString directory, QString suffix) : directory_(std::move(directory)), suffix_(std::move(suffix)) {}

  void draw(const QString& name, Panel& panel) {
    if (!panel.show()) {
      failed_ = true;
      return;
    }
    Application::drainEvents();
    const QString path = directory_ + '/' + name + suffix_ + ".png";
    if (!panel.window()->grab().save(path)) {
      failed_ = true;
      std::fprintf(stderr, "%s can't be written\n", qPrintable(path));
    }
    panel.hide();
  }
  bool failed() const { return failed_; }

 private:
  QString directory_;
  QString suffix_;
  bool failed_ = false;
};

bool drawAll(const Display& display, char** argv, Pictures& pictures) {
  PMainPanel main(display, "PMainPanel", "Tarvex", argv[1]);
  pictures.draw("PMainPanel-start", main);
  main.openFile(argv[2]);
  main.call("monteCarlo");
  pictures.draw("PMainPanel", main);
  PAbout about(display, nullptr);
  pictures.draw("PAbout", about);
  PGenerate generate(display, "generation", "Sample generation", kRuns, nullptr);
  generate.setPercentage(kSomeWay);
  generate.setStatus("Output file: /home/user/flood.sam");
  pictures.draw("PGenerate", generate);
  PExternalModel run(display, "External model execution", "/home/user/flood", "/home/user/flood.sam", nullptr);
  pictures.draw("PExternalModel", run);
  PLogFile log(display, argv[3], nullptr);
  pictures.draw("PLogFile", log);
  PHelp help(display, "Help - Ishigami", "Ishigami model description", "../help/Ishigami.bmp", nullptr);
  pictures.draw("PHelp", help);
  Panel quick(display, "PQuickHelp", "Quick", "Quick Help");
  pictures.draw("PQuickHelp", quick);
  InternalModel model;
  std::string message;
  if (!loadModelFile(argv[3], model, message)) {
    std::fprintf(stderr, "%s\n", message.c_str());
    return false;
  }
  PLinkFactors link(display, main.controller().project().prep.factors, model, nullptr);
  pictures.draw("PLinkFactors", link);
  return !pictures.failed();
}

}  // namespace
}  // namespace tarvex

int main(int argc, char** argv) {
  if (argc < 6) return 2;
  tarvex::Application application(argc, argv, "Tarvex", "");
  QFont font("DejaVu Sans");
  font.setPixelSize(tarvex::kFontPixels);
  QApplication::setFont(font);
  const bool dark = argc > 6 && std::strcmp(argv[6], "dark") == 0;
  QApplication::setPalette(dark ? QPalette(Qt::white, Qt::black, Qt::black, Qt::black, Qt::black, Qt::white, Qt::black)
                                : QPalette());
  tarvex::applyTheme();
  application.display().appendToSearchPath(QString(argv[1]) + "/Tarvex/TarvexPanels");
  tarvex::Pictures pictures(argv[4], argv[5]);
  return tarvex::drawAll(application.display(), argv, pictures) ? 0 : 1;
}
