#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "plots/Figure.h"
#include "plots/Rect.h"

namespace tarvex {

class Canvas;
class Metrics;

// The rows of a figure's legend, centred one below the other.
struct LegendLayout {
  struct Place {
    std::size_t entry;
    Rect mark;
    Rect text;
    Rect box() const { return {mark.x, text.y, text.right() - mark.x, text.height}; }
  };
  std::vector<Place> places;
  std::string more;  // how many entries have no room; empty: none
  Rect moreText;
  double height = 0.0;

  void move(double x, double y);
};

// As many rows as `room` holds, from (0, 0); how many entries stand past them is said behind the last.
LegendLayout layOutLegend(Metrics& metrics, const std::vector<LegendEntry>& entries, double width, double room);
void drawLegend(Canvas& canvas, const std::vector<LegendEntry>& entries, const LegendLayout& layout);

}  // namespace tarvex
