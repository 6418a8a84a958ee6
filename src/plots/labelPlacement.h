#pragma once

#include <utility>
#include <vector>

#include "plots/Rect.h"

namespace tarvex {

// A text beside its mark.
struct LabelToPlace {
  double x = 0.0, y = 0.0;           // the mark's centre
  double width = 0.0, height = 0.0;  // the text's size
};

struct PlacedLabel {
  bool placed = false;  // false: there is no room
  Rect box;
  // A line leads from the mark to a box that isn't next to it.
  bool led = false;
  double lineX = 0.0, lineY = 0.0;  // its end at the box
};

// Places for the texts within `bounds` where no box overlaps another, a mark of the radius given, or a leading line,
// and no line crosses a box, nor, beyond the marks next to its own, a mark or another line. Several orders are tried.
std::vector<PlacedLabel> placeLabels(const std::vector<LabelToPlace>& labels, double radius, const Rect& bounds);

}  // namespace tarvex
