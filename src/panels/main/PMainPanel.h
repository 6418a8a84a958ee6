#pragma once

#include <memory>

#include "app/Changes.h"
#include "app/Descriptions.h"
#include "app/LaunchRequest.h"
#include "factors/DefaultTruncations.h"
#include "model/ModelChoice.h"
#include "panels/main/PanelFrontEnd.h"
#include "panels/main/ProjectGuard.h"
#include "sampling/PrepSettings.h"
#include "toolkit/Panel.h"
#include "toolkit/RecentFiles.h"
#include "toolkit/UndoStack.h"

namespace tarvex {

class PPartsRun;
class ResultDesk;
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
  // Opens a file by what it is: a project, a sample, results, factors, a model of equations; any other is an external
  // sample.
  void openFile(const QString& path);
  // Offers what a program left that died: of a project without a name, and of the projects of late.
  void offerRecovery();
  // The system asks for the end: what isn't saved is kept as a copy, what is in progress is stopped, nobody is asked.
  void endBySignal(int signal);

  // Takes over what a panel edited, as a change of that name which can be undone. False: refused, as it was said.
  // `factorFile` is where the factors come from, if that is a file; `defaults` what the default truncations were
  // before.
  bool acceptPrep(PrepSettings settings, const QString& name, const QString& factorFile = {},
                  const DefaultTruncations& defaults = {});
  bool acceptModel(const ModelChoice& choice, const QString& name);

  // Keeps a copy of what isn't saved, now.
  void saveCopyNow() { guard_->saveNow(); }
  // The run in parts that was looked at last; may be null.
  PPartsRun* partsRun() { return partsRun_.get(); }

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
  void runParts();
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
  void undo();
  void redo();

  void startParts();
  void openParts(const std::string& directory, bool starts);
  bool takeUpParts(const char* otherwise);
  void offerParts();
  QStringList keptRuns() const;
  void keepRuns(const QStringList& runs) const;
  std::string unfinishedRun(std::string& told) const;

  void loadSample(const QString& path);
  void importSample(const QString& path);
  void loadResults(const QString& path);
  void loadProject(const QString& path);
  void loadModel(const QString& path);
  void loadFactors(const QString& path);
  void showProject();
  void fileOpened(const QString& path);
  void sampleOpened(PrepOrigin origin, const char* field, const QString& path);
  void clearFileFields();
  bool applyPrep(const PrepSettings& settings);
  bool applyModel(const ModelChoice& choice);
  void forgetChanges();
  void say(const QString& text);
  void tellStop();
  void describePrep(PrepOrigin origin);
  void describeModel();
  Source source();

  void refresh();
  void refreshStages();
  void refreshTitle();
  void refreshGadgets();
  void refreshUndo();
  // Sensitive while there is no reason against it; the reason is told by tooltip and accessible description.
  void allow(const char* gadgetName, const QString& reason);
  QString why(Step step) const;
  void showStage(const char* stage, const QString& word, const QString& bitmap, const QString& reason);

  PanelFrontEnd frontEnd_;
  std::unique_ptr<RunController> controller_;
  std::unique_ptr<ResultDesk> results_;  // what shows samples and results, side by side
  ChangeNotifier::Subscription subscription_;
  UndoStack changes_;                    // of settings, as long as the project is the same
  std::unique_ptr<PPartsRun> partsRun_;  // the run in parts that was looked at last
  std::unique_ptr<ProjectGuard> guard_;
  std::unique_ptr<RecentFiles> recent_;
  QString title_;            // without the star of unsaved changes
  bool logOffered_ = false;  // a run has been tried in this stage
  int endStatus_ = -1;       // of the process, once the system has asked for its end
  QString factorFile_;       // that the factors were read from; empty for those of a panel
  bool configured_ = false;  // a configuration was made here, so that a sample can be generated from it
};

}  // namespace tarvex
