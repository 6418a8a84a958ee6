#include <cairo.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <utility>
#include <variant>
#include <vector>

#include "plots/AxisFrame.h"
#include "plots/Canvas.h"
#include "plots/chartDrawing.h"

namespace tarvex {

namespace {

constexpr double kLineWidth = 1.6;
constexpr double kThinLine = 0.8;
constexpr double kBarGap = 0.12;  // of a separated column, on each side

// Draws one layer of a plane after the other.
class PlanePainter {
 public:
  PlanePainter(Canvas& canvas, const Rect& plane, const XyChart& chart)
      : canvas_(canvas),
        plane_(plane),
        x_(chart.x, plane.x, plane.right()),
        y_(chart.y, plane.bottom(), plane.y),
        zero_(y_.clamped(0.0)) {}

  void operator()(const Area& area) const;
  void operator()(const Points& points) const;
  void operator()(const Line& line) const;
  void operator()(const LabelledPoints& points) const;
  void operator()(const Region& region) const;

 private:
  using Place = std::pair<double, double>;

  void fillColumns(const Area& area) const;
  void fillBars(const Area& area) const;

  Canvas& canvas_;
  Rect plane_;
  AxisMap x_, y_;
  double zero_;  // where heights start
};

void PlanePainter::operator()(const Area& area) const {
  const SavedState state(canvas_.context(), plane_);
  if (area.separated) {
    fillBars(area);
  } else {
    fillColumns(area);
  }
}

// One shape for neighbours: where two columns meet there is neither a gap nor a seam.
void PlanePainter::fillColumns(const Area& area) const {
  cairo_t* context = canvas_.context();
  std::vector<Place> outline;
  const auto flush = [&] {
    if (outline.empty()) return;
    canvas_.setColour(area.colour);
    cairo_move_to(context, outline.front().first, zero_);
    for (const auto& [x, y] : outline) cairo_line_to(context, x, y);
    cairo_line_to(context, outline.back().first, zero_);
    cairo_fill(context);
    outline.insert(outline.begin(), {outline.front().first, zero_});
    outline.emplace_back(outline.back().first, zero_);
    canvas_.setColour(outlineOf(area.colour));
    strokePolyline(canvas_, plane_, outline, kThinLine, LineStyle::Solid);
    outline.clear();
  };
  for (std::size_t i = 0; i + 1 < area.edges.size() && i < area.heights.size(); ++i) {
    const double left = x_.clamped(area.edges[i]);
    const double right = x_.clamped(area.edges[i + 1]);
    const double top = y_.clamped(area.heights[i]);
    if (!std::isfinite(left) || !std::isfinite(right) || !std::isfinite(area.heights[i])) {
      flush();
      continue;
    }
    outline.emplace_back(left, top);
    outline.emplace_back(right, top);
  }
  flush();
}

void PlanePainter::fillBars(const Area& area) const {
  for (std::size_t i = 0; i + 1 < area.edges.size() && i < area.heights.size(); ++i) {
    const double left = x_.clamped(area.edges[i]);
    const double right = x_.clamped(area.edges[i + 1]);
    const double top = y_.clamped(area.heights[i]);
    if (!std::isfinite(left) || !std::isfinite(right) || !std::isfinite(area.heights[i])) continue;
    if (area.heights[i] == 0.0) continue;
    const double gap = (right - left) * kBarGap;
    const Rect bar{left + gap, std::min(top, zero_), right - left - 2.0 * gap, std::abs(zero_ - top)};
    canvas_.fill(bar, area.colour);
    canvas_.outline(bar, outlineOf(area.colour), kThinLine);
  }
}

void PlanePainter::operator()(const Points& points) const {
  const std::size_t count = std::min(points.x.size(), points.y.size());
  const double radius = (count <= 300 ? 2.8 : count <= 3000 ? 2.0 : 1.5) * canvas_.scale();
  canvas_.setColour(points.colour);
  for (std::size_t i = 0; i < count; ++i) {
    if (!x_.holds(points.x[i]) || !y_.holds(points.y[i])) continue;
    cairo_arc(canvas_.context(), x_(points.x[i]), y_(points.y[i]), radius, 0.0, 2.0 * M_PI);
    cairo_fill(canvas_.context());
  }
}

void PlanePainter::operator()(const Line& line) const {
  std::vector<Place> places;
  for (std::size_t i = 0; i < std::min(line.x.size(), line.y.size()); ++i) {
    const bool finite = std::isfinite(line.x[i]) && std::isfinite(line.y[i]);
    const Place place = {finite ? x_(line.x[i]) : NAN, finite ? y_(line.y[i]) : NAN};
    if (line.steps && !places.empty()) places.emplace_back(place.first, places.back().second);
    places.push_back(place);
  }
  canvas_.setColour(line.colour);
  strokePolyline(canvas_, plane_, places, kLineWidth * canvas_.scale(), line.style);
}

void PlanePainter::operator()(const LabelledPoints&) const {}

void PlanePainter::operator()(const Region& region) const {
  const std::vector<Place> corners = {{x_(region.lowerX), y_(region.lowerY)},
                                      {x_(region.upperX), y_(region.lowerY)},
                                      {x_(region.upperX), y_(region.upperY)},
                                      {x_(region.lowerX), y_(region.upperY)},
                                      {x_(region.lowerX), y_(region.lowerY)}};
  canvas_.setColour(region.colour);
  strokePolyline(canvas_, plane_, corners, kLineWidth * canvas_.scale(), LineStyle::Solid);
}

}  // namespace

void drawChart(Canvas& canvas, const Rect& area, const XyChart& chart) {
  const AxisFrame frame = layOutFrame(canvas, area, chart.title, chart.x, chart.y);
  const AxisMap x(chart.x, frame.plane.x, frame.plane.right());
  const AxisMap y(chart.y, frame.plane.bottom(), frame.plane.y);
  drawGrid(canvas, frame, x, y);
  drawFrame(canvas, frame, area, chart.title, chart.x, chart.y);
  const PlanePainter painter(canvas, frame.plane, chart);
  for (const XyChart::Layer& layer : chart.layers) std::visit(painter, layer);
}

}  // namespace tarvex
