#include <cairo.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <utility>
#include <variant>
#include <vector>

#include "plots/Canvas.h"
#include "plots/chartDrawing.h"
#include "plots/pixelColumns.h"

namespace tarvex {

namespace {

constexpr double kLineWidth = 1.6;
constexpr double kRing = 3.0;  // around a point that stands out, beyond its radius

// Draws lines and what stands out in a plane.
class PlanePainter {
 public:
  PlanePainter(Canvas& canvas, const PlaneLayout& layout)
      : canvas_(canvas), layout_(layout), plane_(layout.frame.plane), x_(layout.x), y_(layout.y) {}

  void drawLine(const Line& line) const;
  void drawRegion(const Region& region) const;
  void ringMarked(const Points& points, std::size_t shown) const;
  void ringMarked(const LabelledPoints& points, std::size_t layer) const;

 private:
  using Place = std::pair<double, double>;

  void ring(double x, double y, double radius) const;

  Canvas& canvas_;
  const PlaneLayout& layout_;
  const Rect& plane_;
  const AxisMap& x_;
  const AxisMap& y_;
};

void PlanePainter::drawLine(const Line& line) const {
  std::vector<Place> places;
  for (std::size_t i = 0; i < std::min(line.x.size(), line.y.size()); ++i) {
    const bool finite = std::isfinite(line.x[i]) && std::isfinite(line.y[i]);
    const Place place = {finite ? x_(line.x[i]) : NAN, finite ? y_(line.y[i]) : NAN};
    if (line.steps && !places.empty()) places.emplace_back(place.first, places.back().second);
    places.push_back(place);
  }
  if (!canvas_.isVector()) places = pixelColumns(std::move(places), canvas_.pixelsPerUnit());
  canvas_.setColour(line.colour);
  strokePolyline(canvas_, plane_, places, kLineWidth * canvas_.scale(), line.style);
}

void PlanePainter::drawRegion(const Region& region) const {
  const std::vector<Place> corners = {{x_(region.lowerX), y_(region.lowerY)},
                                      {x_(region.upperX), y_(region.lowerY)},
                                      {x_(region.upperX), y_(region.upperY)},
                                      {x_(region.lowerX), y_(region.upperY)},
                                      {x_(region.lowerX), y_(region.lowerY)}};
  canvas_.setColour(region.colour);
  strokePolyline(canvas_, plane_, corners, kLineWidth * canvas_.scale(), LineStyle::Solid);
}

void PlanePainter::ring(double x, double y, double radius) const {
  canvas_.setColour(canvas_.inks().text);
  canvas_.setLine(kLineWidth * canvas_.scale());
  cairo_arc(canvas_.context(), x, y, radius + kRing * canvas_.scale(), 0.0, 2.0 * M_PI);
  cairo_stroke(canvas_.context());
}

void PlanePainter::ringMarked(const Points& points, std::size_t shown) const {
  for (std::size_t i = 0; i < std::min(points.x.size(), points.y.size()); ++i)
    if (canvas_.isMarked(points.runs.numberOf(i)) && x_.holds(points.shownX(i)) && y_.holds(points.shownY(i)))
      ring(x_(points.shownX(i)), y_(points.shownY(i)), pointRadius(shown, canvas_.scale()));
}

void PlanePainter::ringMarked(const LabelledPoints& points, std::size_t layer) const {
  for (const PlaneLayout::LabelPlace& place : layout_.labels)
    if (place.layer == layer && canvas_.isMarked(points.recordOf(place.point)))
      ring(place.x, place.y, layout_.markRadius);
}

void drawPlaneFrame(Canvas& canvas, const XyChart& chart, const PlaneLayout& layout) {
  drawGrid(canvas, layout.frame, layout.x, layout.y);
  drawFrame(canvas, layout.frame, layout.x, layout.y);
  drawFrameTitles(canvas, layout.frame, chart.title, layout.xAxis, layout.yAxis);
}

}  // namespace

bool drawChart(Canvas& canvas, FigureLayer figureLayer, const XyChart& chart, const PlaneLayout& layout,
               const Progress& progress) {
  if (figureLayer == FigureLayer::Frame) drawPlaneFrame(canvas, chart, layout);
  const bool dropped = figureLayer == FigureLayer::Dropped;
  const PlanePainter painter(canvas, layout);
  for (std::size_t i = 0; i < chart.layers.size(); ++i) {
    const XyChart::Layer& layer = chart.layers[i];
    const auto* points = std::get_if<Points>(&layer);
    const auto* labelled = std::get_if<LabelledPoints>(&layer);
    if (dropped || figureLayer == FigureLayer::Kept) {
      if (points != nullptr && !drawPoints(canvas, layout, *points, layout.shown[i], dropped, progress)) return false;
    }
    if (figureLayer == FigureLayer::Kept) {
      if (const auto* area = std::get_if<Area>(&layer)) drawArea(canvas, layout, *area);
      if (const auto* band = std::get_if<Band>(&layer)) drawBand(canvas, layout, *band);
      if (const auto* line = std::get_if<Line>(&layer)) painter.drawLine(*line);
      if (labelled != nullptr) drawLabelled(canvas, layout, *labelled, i);
      if (const auto* cells = std::get_if<Cells>(&layer)) drawCells(canvas, layout, *cells);
    }
    if (figureLayer == FigureLayer::Overlay) {
      if (const auto* region = std::get_if<Region>(&layer)) painter.drawRegion(*region);
      if (points != nullptr && canvas.marksAny()) painter.ringMarked(*points, layout.shown[i]);
      if (labelled != nullptr && canvas.marksAny()) painter.ringMarked(*labelled, i);
    }
  }
  return true;
}

}  // namespace tarvex
