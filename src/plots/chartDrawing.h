#pragma once

#include "plots/Figure.h"
#include "plots/Rect.h"

namespace tarvex {

class Canvas;

// Each draws one chart within `area`.
void drawChart(Canvas& canvas, const Rect& area, const XyChart& chart);
void drawChart(Canvas& canvas, const Rect& area, const CobwebChart& chart);
void drawChart(Canvas& canvas, const Rect& area, const BarChart& chart);
void drawChart(Canvas& canvas, const Rect& area, const PieChart& chart);

}  // namespace tarvex
