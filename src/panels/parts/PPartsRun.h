#pragma once

#include <QElapsedTimer>
#include <QTimer>
#include <functional>
#include <string>
#include <vector>

#include "parts/RunFollower.h"
#include "toolkit/Panel.h"

namespace tarvex {

class RunController;

// Looks at a run in parts, which a program of its own drives: this panel reads what the run's directory tells, asks
// that program by commands, and may be closed and opened at any time. When the run is over its results become the
// project's, once.
class PPartsRun : public Panel {
 public:
  // What the panel tells, none of which may destroy it.
  struct Told {
    std::function<void()> taken;    // the project has the results
    std::function<void()> changed;  // whyHeld() may say something else
  };
  // The controller outlives the panel.
  PPartsRun(const Display& display, RunController& controller, const std::string& directory, Told told,
            QWidget* parent);

  const RunFollower& run() const { return run_; }
  // Why the project's sample must stay as it is; empty: it needn't.
  std::string whyHeld() const;
  // A program was started to drive the run.
  void expectStart() { asked_.start(); }
  // Looks now, and shows what has changed.
  void look();

 protected:
  bool closing() override;

 private:
  void selectPart();
  void showPage();
  void retry();
  void retryAll();
  void goOn();
  void stop();
  void soFar();
  void take();
  void detach();
  bool command(const std::vector<std::string>& words, const char* what);

  bool isDriven() const;
  void showState();
  void showPart();
  void refresh();
  QString partText(int part) const;
  std::vector<std::string> failedParts() const;

  RunController& controller_;
  RunFollower run_;
  Told told_;
  QTimer timer_;
  QElapsedTimer asked_;      // valid: a program was started to drive the run
  std::uint64_t shown_ = 0;  // of the ledger
  bool held_ = false;
  std::string problem_;  // why the run can't be looked at
  bool working_ = false;
  bool takes_ = true;  // the results when they are there, which was not tried yet
};

}  // namespace tarvex
