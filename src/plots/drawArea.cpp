#include <cairo.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <utility>
#include <vector>

#include "plots/Canvas.h"
#include "plots/chartDrawing.h"
#include "plots/pixelColumns.h"

namespace tarvex {

namespace {

constexpr double kBarGap = 0.12;  // of a separated column, on each side

// One shape for neighbours: where two columns meet there is neither a gap nor a seam.
void fillColumns(Canvas& canvas, const PlaneLayout& layout, const Area& area) {
  const double zero = layout.y.clamped(0.0);
  cairo_t* context = canvas.context();
  std::vector<std::pair<double, double>> outline;
  const auto flush = [&] {
    if (outline.empty()) return;
    if (!canvas.isVector()) outline = pixelColumns(std::move(outline), canvas.pixelsPerUnit());
    canvas.setColour(area.colour);
    cairo_move_to(context, outline.front().first, zero);
    for (const auto& [x, y] : outline) cairo_line_to(context, x, y);
    cairo_line_to(context, outline.back().first, zero);
    cairo_fill(context);
    outline.insert(outline.begin(), {outline.front().first, zero});
    outline.emplace_back(outline.back().first, zero);
    canvas.setColour(outlineOf(area.colour));
    strokePolyline(canvas, layout.frame.plane, outline, kThinLine, LineStyle::Solid);
    outline.clear();
  };
  for (std::size_t i = 0; i + 1 < area.edges.size() && i < area.heights.size(); ++i) {
    const double left = layout.x.clamped(area.edges[i]);
    const double right = layout.x.clamped(area.edges[i + 1]);
    const double top = layout.y.clamped(area.heights[i]);
    if (!std::isfinite(left) || !std::isfinite(right) || !std::isfinite(area.heights[i])) {
      flush();
      continue;
    }
    outline.emplace_back(left, top);
    outline.emplace_back(right, top);
  }
  flush();
}

void fillBars(Canvas& canvas, const PlaneLayout& layout, const Area& area) {
  const double zero = layout.y.clamped(0.0);
  for (std::size_t i = 0; i + 1 < area.edges.size() && i < area.heights.size(); ++i) {
    const double left = layout.x.clamped(area.edges[i]);
    const double right = layout.x.clamped(area.edges[i + 1]);
    const double top = layout.y.clamped(area.heights[i]);
    if (!std::isfinite(left) || !std::isfinite(right) || !std::isfinite(area.heights[i])) continue;
    if (area.heights[i] == 0.0) continue;
    const double gap = (right - left) * kBarGap;
    const Rect bar{left + gap, std::min(top, zero), right - left - 2.0 * gap, std::abs(zero - top)};
    canvas.fill(bar, area.colour);
    if (bar.width >= kOutlinedFrom) canvas.outline(bar, outlineOf(area.colour), kThinLine);
  }
}

}  // namespace

void drawArea(Canvas& canvas, const PlaneLayout& layout, const Area& area) {
  const SavedState state(canvas.context(), layout.frame.plane);
  if (area.separated) {
    fillBars(canvas, layout, area);
  } else {
    fillColumns(canvas, layout, area);
  }
}

// Each stretch of finite points is a shape of its own.
void drawBand(Canvas& canvas, const PlaneLayout& layout, const Band& band) {
  const SavedState state(canvas.context(), layout.frame.plane);
  const std::size_t size = std::min({band.x.size(), band.lower.size(), band.upper.size()});
  const auto isFinite = [&](std::size_t i) {
    return std::isfinite(band.x[i]) && std::isfinite(band.lower[i]) && std::isfinite(band.upper[i]);
  };
  canvas.setColour(band.colour);
  for (std::size_t first = 0; first < size; ++first) {
    std::size_t end = first;
    while (end < size && isFinite(end)) ++end;
    if (end == first) continue;
    for (std::size_t i = first; i < end; ++i)
      cairo_line_to(canvas.context(), layout.x(band.x[i]), layout.y(band.upper[i]));
    for (std::size_t i = end; i-- > first;)
      cairo_line_to(canvas.context(), layout.x(band.x[i]), layout.y(band.lower[i]));
    cairo_fill(canvas.context());
    first = end;
  }
}

}  // namespace tarvex
