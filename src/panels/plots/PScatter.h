#pragma once

#include <cstddef>

#include "panels/plots/RunPanel.h"
#include "panels/vels/TimeSlider.h"
#include "toolkit/ChartView.h"

namespace tarvex {

// A scattergram of two columns. A drag frames a region, whose runs are then kept in all plots and tables. It moves to
// the time that was picked with its columns.
class PScatter : public RunPanel {
 public:
  // Requires: columns that there are.
  PScatter(ResultDesk& desk, std::shared_ptr<Selection> selection, std::size_t x, std::size_t y);

 protected:
  void showSelection() override;

 private:
  void fillColumns();
  void choose();
  // Of the columns that the lists say, without looks of their own.
  void describe();
  void moveInTime();
  void draw();
  void frame(const ChartView::Box& box);
  std::size_t column(bool across);
  bool hasRegion();

  std::size_t listed_ = 0;  // columns that the lists name
  TimeSlider slider_;
};

}  // namespace tarvex
