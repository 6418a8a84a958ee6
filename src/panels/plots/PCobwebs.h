#pragma once

#include <QTimer>
#include <cstddef>
#include <vector>

#include "panels/plots/RunPanel.h"
#include "panels/vels/TimeSlider.h"

namespace tarvex {

struct BrushRange;

// A cobweb over some columns. A drag on an axis is a filter of its column, in all plots and tables. Axes of
// outputs at a time move to the time that was picked, with their filters.
class PCobwebs : public RunPanel {
 public:
  // Requires: columns that there are, one at least.
  PCobwebs(ResultDesk& desk, std::shared_ptr<Selection> selection, std::vector<std::size_t> columns);

 protected:
  void showSelection() override;

 private:
  void draw();
  void moveInTime();
  void filters();
  void brush(const std::vector<BrushRange>& ranges);

  std::vector<std::size_t> columns_;  // of the table, an axis each
  bool brushing_ = false;             // the filters follow the axes, not the axes the filters
  std::size_t known_ = 0;             // columns that the slider has been told
  TimeSlider slider_;
  QTimer redraw_;  // a picture that can't be drawn beside another one
};

}  // namespace tarvex
