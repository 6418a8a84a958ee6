#include <cairo.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "plots/AxisFrame.h"
#include "plots/Canvas.h"
#include "plots/PixelLayer.h"
#include "plots/chartDrawing.h"
#include "plots/labelPlacement.h"

namespace tarvex {

namespace {

constexpr double kLineWidth = 1.6;
constexpr double kThinLine = 0.8;
constexpr double kBarGap = 0.12;  // of a separated column, on each side

constexpr double kOutlinedFrom = 3.0;  // narrower bars would be all outline
constexpr double kLabelledRadius = 3.2;
constexpr double kWidestLabel = 0.4;  // of the plane
// More points than this are painted as pixels.
constexpr std::size_t kMostSinglePoints = 20000;

// Fewer points are larger: a few are found, many don't hide each other.
double radiusFor(std::size_t points) {
  constexpr double kLargest = 2.8;
  constexpr double kSmallest = 1.0;
  return std::clamp(kLargest * std::pow(300.0 / static_cast<double>(points + 1), 0.15), kSmallest, kLargest);
}

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

  std::vector<Place> placesOf(const std::vector<double>& xs, const std::vector<double>& ys) const;
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
    if (bar.width >= kOutlinedFrom) canvas_.outline(bar, outlineOf(area.colour), kThinLine);
  }
}

// Of the points within the axes.
std::vector<PlanePainter::Place> PlanePainter::placesOf(const std::vector<double>& xs,
                                                        const std::vector<double>& ys) const {
  std::vector<Place> places;
  for (std::size_t i = 0; i < std::min(xs.size(), ys.size()); ++i) {
    if (x_.holds(xs[i]) && y_.holds(ys[i])) places.emplace_back(x_(xs[i]), y_(ys[i]));
  }
  return places;
}

void PlanePainter::operator()(const Points& points) const {
  const std::vector<Place> places = placesOf(points.x, points.y);
  const double radius = radiusFor(places.size()) * canvas_.scale();
  if (places.size() > kMostSinglePoints) {
    PixelLayer layer(canvas_, plane_.grown(radius + 1.0));
    layer.addDiscs(places, radius, points.colour);
    layer.paint();
    return;
  }
  canvas_.setColour(points.colour);
  for (const auto& [x, y] : places) {
    cairo_arc(canvas_.context(), x, y, radius, 0.0, 2.0 * M_PI);
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

void PlanePainter::operator()(const LabelledPoints& points) const {
  cairo_t* context = canvas_.context();
  const TextStyle style = canvas_.tickStyle();
  const double radius = kLabelledRadius * canvas_.scale();
  const double height = canvas_.pen().height(style);
  std::vector<LabelToPlace> labels;
  std::vector<std::string> texts;
  for (std::size_t i = 0; i < std::min({points.x.size(), points.y.size(), points.labels.size()}); ++i) {
    if (!x_.holds(points.x[i]) || !y_.holds(points.y[i])) continue;
    const double width = canvas_.pen().width(points.labels[i], style);
    labels.push_back({x_(points.x[i]), y_(points.y[i]), std::min(width, plane_.width * kWidestLabel), height});
    texts.push_back(points.labels[i]);
  }
  const std::vector<PlacedLabel> places = placeLabels(labels, radius, plane_.grown(-1.0));
  canvas_.setLine(kThinLine);
  for (std::size_t i = 0; i < labels.size(); ++i) {
    if (!places[i].led) continue;
    canvas_.setColour(kFrameInk);
    cairo_move_to(context, labels[i].x, labels[i].y);
    cairo_line_to(context, places[i].lineX, places[i].lineY);
    cairo_stroke(context);
  }
  for (std::size_t i = 0; i < labels.size(); ++i) {
    canvas_.setColour(points.colour);
    cairo_arc(context, labels[i].x, labels[i].y, radius, 0.0, 2.0 * M_PI);
    cairo_fill(context);
    if (!places[i].placed) continue;
    canvas_.setColour(kInk);
    canvas_.pen().draw(texts[i], style, places[i].box.x, places[i].box.centreY(), Anchor::Left, places[i].box.width,
                       Shorten::InMiddle);
  }
}

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
