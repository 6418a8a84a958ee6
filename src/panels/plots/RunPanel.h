#pragma once

#include <memory>
#include <vector>

#include "app/Changes.h"
#include "app/Selection.h"
#include "toolkit/Panel.h"

namespace tarvex {

class ResultDesk;

// A window beside others that shows the runs of the study's selection. It says how many of them are kept, saves them,
// and turns them round; and it says so when sample or results have changed since it was opened.
class RunPanel : public Panel {
 public:
  // The desk outlives the panel.
  RunPanel(ResultDesk& desk, std::shared_ptr<Selection> selection, const QString& file, const QString& name,
           const QString& title);

  // What it shows is of an earlier sample or of earlier results.
  bool isPast() const;

 protected:
  ResultDesk& desk() { return desk_; }
  Selection& selection() { return *selection_; }
  const std::shared_ptr<Selection>& shared() const { return selection_; }
  const RunTable& table() const { return *selection_->table(); }

  // Registers these and the callbacks that all such panels have; the panel then follows the selection.
  void start(std::vector<PanelCallback> callbacks);
  // The selection has changed.
  virtual void showSelection() = 0;
  // In the message line; empty: what it says at rest.
  void say(const QString& text);

 private:
  void follow();
  void saveSample();
  void saveRuns();

  ResultDesk& desk_;
  std::shared_ptr<Selection> selection_;
  Selection::Changed::Subscription selectionSubscription_;
  ChangeNotifier::Subscription subscription_;
};

}  // namespace tarvex
