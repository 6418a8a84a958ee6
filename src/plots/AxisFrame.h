#pragma once

#include <string>
#include <vector>

#include "plots/AxisMap.h"
#include "plots/Figure.h"
#include "plots/Rect.h"
#include "plots/Ticks.h"

namespace tarvex {

class Canvas;
class Metrics;

// What stands around a plane: heading, tick texts, axis titles. Made smaller until the plane has enough room.
struct AxisFrame {
  Rect plane;
  std::vector<Tick> xTicks, yTicks;
  bool heading = false, xTitle = false, yTitle = false, xTexts = false, yTexts = false;
  Rect headingBox, xTitleBox, yTitleBox;  // of what is shown; a longer text is shortened
};

AxisFrame layOutFrame(Metrics& metrics, const Rect& area, const std::string& heading, const Axis& x, const Axis& y);

// Ticks of a horizontal axis whose texts stand apart over `width`.
std::vector<Tick> horizontalTicks(Metrics& metrics, const Axis& axis, double width);

// Of a frame: the grid lines, which data cover; and everything else.
void drawGrid(Canvas& canvas, const AxisFrame& frame, const AxisMap& x, const AxisMap& y);
void drawHorizontalAxis(Canvas& canvas, const Rect& plane, const std::vector<Tick>& ticks, const AxisMap& map,
                        bool texts);
void drawFrame(Canvas& canvas, const AxisFrame& frame, const AxisMap& x, const AxisMap& y);
// Texts in the middle of their boxes: the heading and titles of the axes.
void drawFrameTitles(Canvas& canvas, const AxisFrame& frame, const std::string& heading, const Axis& x, const Axis& y);

}  // namespace tarvex
