#pragma once

#include <cstddef>
#include <vector>

#include "panels/plots/RunPanel.h"

namespace tarvex {

struct BrushRange;

// A cobweb over some columns. A drag on an axis is a filter of its column, in all plots and tables.
class PCobwebs : public RunPanel {
 public:
  // Requires: columns that there are, one at least.
  PCobwebs(ResultDesk& desk, std::shared_ptr<Selection> selection, std::vector<std::size_t> columns);

 protected:
  void showSelection() override;

 private:
  void draw();
  void filters();
  void brush(const std::vector<BrushRange>& ranges);

  std::vector<std::size_t> columns_;  // of the table, an axis each
  bool brushing_ = false;             // the filters follow the axes, not the axes the filters
};

}  // namespace tarvex
