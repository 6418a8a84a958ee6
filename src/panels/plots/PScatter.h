#pragma once

#include <cstddef>

#include "panels/plots/RunPanel.h"
#include "toolkit/ChartView.h"

namespace tarvex {

// A scattergram of two columns. A drag frames a region, whose runs are then kept in all plots and tables.
class PScatter : public RunPanel {
 public:
  // Requires: columns that there are.
  PScatter(ResultDesk& desk, std::shared_ptr<Selection> selection, std::size_t x, std::size_t y);

 protected:
  void showSelection() override;

 private:
  void fillColumns();
  void choose();
  void draw();
  void frame(const ChartView::Box& box);
  std::size_t column(bool across);

  std::size_t listed_ = 0;  // columns that the lists name
};

}  // namespace tarvex
