#pragma once

#include <cstddef>
#include <vector>

#include "plots/Figure.h"
#include "plots/Rect.h"

namespace tarvex {

class Canvas;

// The rows of a figure's legend, centred one below the other.
class Legend {
 public:
  // As many rows as `room` holds; entries past them are left out.
  Legend(Canvas& canvas, const std::vector<LegendEntry>& entries, double width, double room);

  double height() const;
  void draw(double x, double y) const;

 private:
  struct Item {
    LegendEntry entry;
    double width;
  };
  struct Row {
    std::vector<Item> items;
    double width = 0.0;
  };

  double rowHeight() const;
  bool add(const LegendEntry& entry);
  void drawMark(const Rect& box, const LegendEntry& entry) const;

  Canvas& canvas_;
  double width_;
  std::size_t mostRows_;
  std::vector<Row> rows_;
};

}  // namespace tarvex
