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

// Each draws a layer of a plane. Points: of `shown` ones those that a filter leaves, or those that it doesn't; false
// when it was stopped.
void drawArea(Canvas& canvas, const PlaneLayout& layout, const Area& area);
void drawBand(Canvas& canvas, const PlaneLayout& layout, const Band& band);
[[nodiscard]] bool drawPoints(Canvas& canvas, const PlaneLayout& layout, const Points& points, std::size_t shown,
                              bool dropped, const Progress& progress);
void drawLabelled(Canvas& canvas, const PlaneLayout& layout, const LabelledPoints& points, std::size_t layer);
void drawCells(Canvas& canvas, const PlaneLayout& layout, const Cells& cells);

}  // namespace tarvex
