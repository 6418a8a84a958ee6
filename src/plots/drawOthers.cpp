#include "plots/Canvas.h"
#include "plots/chartDrawing.h"

namespace tarvex {
void drawChart(Canvas& canvas, const Rect& area, const CobwebChart&) {
  canvas.outline(area, kFrameInk, 1.0);
}
void drawChart(Canvas& canvas, const Rect& area, const BarChart&) {
  canvas.outline(area, kFrameInk, 1.0);
}
void drawChart(Canvas& canvas, const Rect& area, const PieChart&) {
  canvas.outline(area, kFrameInk, 1.0);
}
}  // namespace tarvex
