#include <algorithm>
#include <cmath>
#include <cstddef>
#include <vector>

#include "plots/AxisFrame.h"
#include "plots/Canvas.h"
#include "plots/chartDrawing.h"

namespace tarvex {

namespace {

constexpr double kMarkedBarLine = 2.0;  // around a bar that stands out

void drawTexts(Canvas& canvas, const BarChart& chart, const BarLayout& layout) {
  TextPen& pen = canvas.pen();
  canvas.setColour(canvas.inks().text);
  for (std::size_t i = 0; i < chart.categories.size(); i += layout.everyName) {
    const Rect box = layout.nameBox(i, canvas.gap());
    pen.draw(chart.categories[i], layout.nameStyle, box.right(), box.centreY(), Anchor::Right, box.width,
             Shorten::InMiddle);
  }
  const Rect& area = layout.area;
  const Rect& plane = layout.plane;
  if (layout.heading) {
    const double middle = area.y + pen.height(canvas.headingStyle()) / 2.0;
    pen.draw(chart.title, canvas.headingStyle(), area.centreX(), middle, Anchor::Centre, area.width);
  }
  if (layout.title) {
    const double middle = area.bottom() - pen.height(canvas.bodyStyle()) / 2.0;
    pen.draw(chart.values.title, canvas.bodyStyle(), plane.centreX(), middle, Anchor::Centre, plane.width);
  }
}

void drawBarFrame(Canvas& canvas, const BarChart& chart, const BarLayout& layout) {
  const Rect& plane = layout.plane;
  for (const Tick& tick : layout.ticks)
    if (!tick.text.empty()) canvas.vertical(layout.values(tick.at), plane.y, plane.bottom(), canvas.inks().grid);
  drawHorizontalAxis(canvas, plane, layout.ticks, layout.values, true);
  drawTexts(canvas, chart, layout);
}

void drawBar(Canvas& canvas, const BarLayout& layout, const Bar& bar, const Rect& box) {
  canvas.fill(box, bar.colour);
  if (box.height >= kOutlinedFrom && box.width > 0.0) canvas.outline(box, outlineOf(bar.colour), kThinLine);
  if (!layout.valueTexts) return;
  canvas.setColour(bar.faint ? canvas.inks().faintText : canvas.inks().text);
  const bool left = std::isfinite(bar.value) && bar.value < 0.0;
  const double to = left ? box.x : box.right();
  canvas.pen().draw(bar.text, layout.barStyle, left ? to - canvas.gap() : to + canvas.gap(), box.centreY(),
                    left ? Anchor::Right : Anchor::Left, left ? to - layout.plane.x : layout.plane.right() - to);
}

// Calls `visit` with each bar, the number of its category and its box.
template <class Visit>
void forEachBar(const BarChart& chart, const BarLayout& layout, Visit visit) {
  for (std::size_t i = 0; i < chart.categories.size(); ++i)
    for (std::size_t series = 0; series < chart.series.size(); ++series)
      if (i < chart.series[series].size()) {
        const Bar& bar = chart.series[series][i];
        visit(bar, i, layout.barBox(series, i, bar));
      }
}

}  // namespace

bool drawChart(Canvas& canvas, FigureLayer layer, const BarChart& chart, const BarLayout& layout,
               const Progress& /*progress*/) {
  const Rect& plane = layout.plane;
  switch (layer) {
    case FigureLayer::Frame:
      drawBarFrame(canvas, chart, layout);
      break;
    case FigureLayer::Kept:
      forEachBar(chart, layout,
                 [&](const Bar& bar, std::size_t, const Rect& box) { drawBar(canvas, layout, bar, box); });
      break;
    case FigureLayer::Front:
      canvas.vertical(layout.values(layout.zero), plane.y, plane.bottom(), canvas.inks().frame);
      canvas.outline(plane, canvas.inks().frame, 1.0);
      break;
    case FigureLayer::Overlay:
      forEachBar(chart, layout, [&](const Bar&, std::size_t category, const Rect& box) {
        if (canvas.isMarked(chart.recordOf(category))) canvas.outline(box, canvas.inks().text, kMarkedBarLine);
      });
      break;
    case FigureLayer::Dropped:
      break;
  }
  return true;
}

}  // namespace tarvex
