#pragma once

#include <QTimer>
#include <cstddef>
#include <memory>
#include <vector>

#include "app/Changes.h"
#include "app/Selection.h"
#include "panels/vels/TimeSlider.h"
#include "plots/histogramPlots.h"
#include "toolkit/Panel.h"

namespace tarvex {

class ResultDesk;

// Histograms and cumulative curves of columns, over all runs or those that are kept.
class PHistogram : public Panel {
 public:
  // The desk outlives the panel. Requires: columns that there are, one at least.
  PHistogram(ResultDesk& desk, std::shared_ptr<Selection> selection, std::vector<std::size_t> columns);

 protected:
  PHistogram(ResultDesk& desk, std::shared_ptr<Selection> selection, const QString& file, const QString& name);
  void start(std::vector<std::size_t> columns, std::vector<PanelCallback> more);
  virtual void showColumns(std::vector<std::size_t> columns);
  const RunTable& table() const { return *selection_->table(); }

 private:
  void choose(HistogramForm form);
  void draw();
  void say(const QString& text);

  ResultDesk& desk_;
  std::shared_ptr<Selection> selection_;
  std::vector<std::size_t> columns_;
  HistogramForm form_ = HistogramForm::Area;
  TimeSlider slider_;
  QTimer redraw_;  // a drag in another window changes the selection faster than many runs can be counted
  Selection::Changed::Subscription selectionSubscription_;
  ChangeNotifier::Subscription subscription_;
};

}  // namespace tarvex
