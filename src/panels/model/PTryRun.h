#pragma once

#include <memory>

#include "app/ModelTrial.h"
#include "model/ModelChoice.h"
#include "panels/model/ModelContext.h"
#include "toolkit/Panel.h"

namespace tarvex {

// One run of a model that isn't accepted yet: what is started, what it printed, what it wrote, and what of that was
// understood. Nothing is kept.
class PTryRun : public Panel {
 public:
  PTryRun(const Display& display, const ModelChoice& choice, ModelContext context, QWidget* parent);

  // What came of the last run.
  const TrialReport& report() const { return report_; }

 protected:
  bool closing() override;

 private:
  void trialRow();
  void tryRun();
  void stop();
  void close();
  void showReport();
  void showOutput();
  QString outcome() const;
  void refresh();

  ModelChoice choice_;
  ModelContext context_;
  TrialReport report_;
  bool isRunning_ = false;
  bool goesOn_ = true;  // as long as nobody wants to stop
};

}  // namespace tarvex
