#pragma once

#include <vector>

#include "plots/Canvas.h"
#include "plots/Figure.h"
#include "plots/Rect.h"
#include "plots/Ticks.h"

namespace tarvex {

// From values of an axis to positions on the canvas.
class AxisMap {
 public:
  // `from` is where the lower limit stands, `to` the upper.
  AxisMap(const Axis& axis, double from, double to);

  // Far outside for values far outside; nan for nan.
  double operator()(double value) const;
  bool holds(double value) const { return value >= axis_.lower && value <= axis_.upper; }
  double clamped(double value) const;

 private:
  Axis axis_;
  double from_, to_;
};

// What stands around a plane: heading, tick texts, axis titles. Made smaller until the plane has enough room.
struct AxisFrame {
  Rect plane;
  std::vector<Tick> xTicks, yTicks;
  bool heading = false, xTitle = false, yTitle = false, xTexts = false, yTexts = false;
};

AxisFrame layOutFrame(Canvas& canvas, const Rect& area, const std::string& heading, const Axis& x, const Axis& y);

// Ticks of a horizontal axis whose texts stand apart over `width`.
std::vector<Tick> horizontalTicks(Canvas& canvas, const Axis& axis, double width);

// Of a frame: the grid lines, which data cover; and everything else.
void drawGrid(Canvas& canvas, const AxisFrame& frame, const AxisMap& x, const AxisMap& y);
void drawHorizontalAxis(Canvas& canvas, const Rect& plane, const std::vector<Tick>& ticks, const AxisMap& map,
                        bool texts);
void drawFrame(Canvas& canvas, const AxisFrame& frame, const Rect& area, const std::string& heading, const Axis& x,
               const Axis& y);

}  // namespace tarvex
