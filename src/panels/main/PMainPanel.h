#pragma once

#include <memory>

#include "app/Changes.h"
#include "app/Descriptions.h"
#include "app/LaunchRequest.h"
#include "panels/main/PanelFrontEnd.h"
#include "toolkit/Panel.h"

class QAbstractButton;

namespace tarvex {

class RunController;
enum class Step;

// The program's one permanent window: what the project holds, and stage by stage what can be done next. Every gadget
// that can't be used says why in its tooltip; all of them follow the controller, which alone knows the rules.
class PMainPanel : public Panel {
 public:
  PMainPanel(const Display& display, const QString& name, const QString& title, const std::string& mainDirectory);
  ~PMainPanel() override;

  RunController& controller() { return *controller_; }

  // What Tarvex.ini asks for. Once, before the panel is shown.
  void readLaunchRequest();
  // Opens a file by what it is: a project, a sample or results.
  void openFile(const QString& path);

 protected:
  bool closing() override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  // The source of the sample, in the order of the selector.
  enum Source { kExternalFile = 0, kSavedFile = 1, kNewConfiguration = 2 };

  void monteCarlo();
  void changeSel();
  void configure();
  void generate();
  void visualize();
  void oldGeneration();
  void importGeneration();
  void selectInput();
  void start();
  void analyse();
  void abortMonteCarlo();
  void velsFile();
  void loadCfg();
  void saveCfg();
  void quickSave();
  void resetConfiguration();
  void resetPanel();
  void demo(const char* caseName);
  void seeLog();
  void help();
  void helpSearch();
  void showAbout();
  void terminate();

  void loadSample(const QString& path);
  void importSample(const QString& path);
  void loadResults(const QString& path);
  void loadProject(const QString& path);
  void say(const QString& text);
  void describePrep(PrepOrigin origin);
  void describeModel();
  void notYet(const QString& what);
  Source source();

  void refresh();
  void refreshStages();
  void refreshTitle();
  void allow(const char* gadgetName, bool sensitive, const QString& reason = {});
  void allow(const char* gadgetName, Step step, bool also = true);
  void showStage(const char* stage, const QString& word, const QString& bitmap, const QString& reason);

  PanelFrontEnd frontEnd_;
  std::unique_ptr<RunController> controller_;
  ChangeNotifier::Subscription subscription_;
  QString title_;            // without the star of unsaved changes
  QString demoCase_;         // of the demonstration mode; empty outside
  bool logOffered_ = false;  // a run has been tried in this stage
  bool configured_ = false;  // a configuration was made here, so that a sample can be generated from it
};

}  // namespace tarvex
