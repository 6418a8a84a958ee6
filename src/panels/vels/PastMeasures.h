#pragma once

#include <QString>
#include <functional>
#include <memory>

#include "app/Changes.h"

namespace tarvex {

struct AnalysisSnapshot;
class RunController;

// Whether the measures that a panel shows were replaced by others since, or already had been when it was opened. They
// stay past: another analysis of the same sample makes new ones.
class PastMeasures {
 public:
  // The controller outlives it. `replaced` is called once, when it happens, and not for what was past at first.
  PastMeasures(RunController& controller, std::shared_ptr<const AnalysisSnapshot> shown,
               std::function<void()> replaced);

  // What is to be said behind the panel's own sentence; empty while they are the project's.
  QString text() const;

 private:
  bool areReplaced() const;

  RunController& controller_;
  std::shared_ptr<const AnalysisSnapshot> shown_;
  std::function<void()> replaced_;
  bool past_ = false;
  ChangeNotifier::Subscription subscription_;
};

}  // namespace tarvex
