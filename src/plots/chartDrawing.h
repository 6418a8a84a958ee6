#pragma once

#include "base/Progress.h"
#include "plots/FigureLayout.h"
#include "plots/drawFigure.h"

namespace tarvex {

class Canvas;

inline constexpr double kThinLine = 0.8;
inline constexpr double kOutlinedFrom = 3.0;  // narrower bars would be all outline

// Each draws one layer of a chart where its layout says. False when it was stopped.
[[nodiscard]] bool drawChart(Canvas& canvas, FigureLayer layer, const XyChart& chart, const PlaneLayout& layout,
                             const Progress& progress);
[[nodiscard]] bool drawChart(Canvas& canvas, FigureLayer layer, const CobwebChart& chart, const CobwebLayout& layout,
                             const Progress& progress);
[[nodiscard]] bool drawChart(Canvas& canvas, FigureLayer layer, const BarChart& chart, const BarLayout& layout,
                             const Progress& progress);
[[nodiscard]] bool drawChart(Canvas& canvas, FigureLayer layer, const PieChart& chart, const PieLayout& layout,
                             const Progress& progress);

// A layer of a plane.
void drawCells(Canvas& canvas, const PlaneLayout& layout, const Cells& cells);

}  // namespace tarvex
