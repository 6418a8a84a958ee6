#include <cairo.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "plots/Canvas.h"
#include "plots/ColourSet.h"
#include "plots/DiscCounts.h"
#include "plots/PixelLayer.h"
#include "plots/chartDrawing.h"
#include "plots/pixelColumns.h"

namespace tarvex {

namespace {

constexpr double kLineWidth = 1.6;
constexpr double kBarGap = 0.12;  // of a separated column, on each side

constexpr double kRing = 3.0;                 // around a point that stands out, beyond its radius
constexpr std::size_t kPointsAtOnce = 20000;  // between two reports: milliseconds where a disc has many pixels
constexpr double kCountingShare = 0.6;        // of the time until points are painted, roughly

// More points than this let each other through. Alone they must still be seen.
constexpr std::size_t kMostOpaquePoints = 20000;
constexpr double kCrowdedOpacity = 0.6;

// More points than this are painted as pixels.
std::size_t mostSinglePoints(Surface surface) {
  return surface == Surface::Screen ? 3000 : kMostOpaquePoints;
}

// Draws the data of a plane.
class PlanePainter {
 public:
  PlanePainter(Canvas& canvas, const PlaneLayout& layout)
      : canvas_(canvas),
        layout_(layout),
        plane_(layout.frame.plane),
        x_(layout.x),
        y_(layout.y),
        zero_(y_.clamped(0.0)) {}

  void drawArea(const Area& area) const;
  void drawBand(const Band& band) const;
  bool drawPoints(const Points& points, std::size_t shown, bool dropped, const Progress& progress) const;
  void drawLine(const Line& line) const;
  void drawLabelled(const LabelledPoints& points, std::size_t layer) const;
  void drawNote(const std::string& text) const;
  void drawRegion(const Region& region) const;
  void ringMarked(const Points& points, std::size_t shown) const;
  void ringMarked(const LabelledPoints& points, std::size_t layer) const;

 private:
  using Place = std::pair<double, double>;

  void fillColumns(const Area& area) const;
  void fillBars(const Area& area) const;
  bool countPoints(const Points& points, std::size_t shown, bool dropped, const Progress& progress) const;
  void ring(double x, double y, double radius) const;

  Canvas& canvas_;
  const PlaneLayout& layout_;
  const Rect& plane_;
  const AxisMap& x_;
  const AxisMap& y_;
  double zero_;  // where heights start
};

void PlanePainter::drawArea(const Area& area) const {
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
    if (!canvas_.isVector()) outline = pixelColumns(std::move(outline), canvas_.pixelsPerUnit());
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

// Each stretch of finite points is a shape of its own.
void PlanePainter::drawBand(const Band& band) const {
  const SavedState state(canvas_.context(), plane_);
  const std::size_t size = std::min({band.x.size(), band.lower.size(), band.upper.size()});
  const auto isFinite = [&](std::size_t i) {
    return std::isfinite(band.x[i]) && std::isfinite(band.lower[i]) && std::isfinite(band.upper[i]);
  };
  canvas_.setColour(band.colour);
  for (std::size_t first = 0; first < size; ++first) {
    std::size_t end = first;
    while (end < size && isFinite(end)) ++end;
    if (end == first) continue;
    for (std::size_t i = first; i < end; ++i) cairo_line_to(canvas_.context(), x_(band.x[i]), y_(band.upper[i]));
    for (std::size_t i = end; i-- > first;) cairo_line_to(canvas_.context(), x_(band.x[i]), y_(band.lower[i]));
    cairo_fill(canvas_.context());
    first = end;
  }
}

bool PlanePainter::drawPoints(const Points& points, std::size_t shown, bool dropped, const Progress& progress) const {
  if (dropped && !points.runs.showDropped) return true;
  if (points.shaded || shown > mostSinglePoints(canvas_.surface()))
    return countPoints(points, shown, dropped, progress);
  const double radius = pointRadius(shown, canvas_.scale());
  canvas_.setColour(dropped ? points.runs.droppedColour : points.colour);
  for (std::size_t i = 0; i < std::min(points.x.size(), points.y.size()); ++i) {
    const double x = points.shownX(i);
    const double y = points.shownY(i);
    if (points.runs.isDropped(i) != dropped || !x_.holds(x) || !y_.holds(y)) continue;
    cairo_arc(canvas_.context(), x_(x), y_(y), radius, 0.0, 2.0 * M_PI);
    cairo_fill(canvas_.context());
  }
  return progress.report(1.0);
}

bool PlanePainter::countPoints(const Points& points, std::size_t shown, bool dropped, const Progress& progress) const {
  const double radius = pointRadius(shown, canvas_.scale());
  PixelLayer layer(canvas_, plane_.grown(radius + 1.0), progress);
  DiscCounts discs(layer.width(), layer.height(), radius * layer.perUnit());
  // In pixels, without a division for each. Limits that are too far apart for it are the maps' own affair.
  const auto pixels = [&](const AxisMap& map, double from, double to) {
    const double share = (to - from) / (map.upper() - map.lower());
    return std::pair(share, from - map.lower() * share);
  };
  const auto [shareX, startX] = pixels(x_, layer.pixelX(x_.from()), layer.pixelX(x_.to()));
  const auto [shareY, startY] = pixels(y_, layer.pixelY(y_.from()), layer.pixelY(y_.to()));
  const bool straight =
      std::isnormal(shareX) && std::isnormal(shareY) && std::isfinite(startX) && std::isfinite(startY);
  const std::size_t size = std::min(points.x.size(), points.y.size());
  const bool allKept = points.runs.dropped.empty();
  const Progress counting = progress.part(0.0, kCountingShare);
  for (std::size_t i = 0; i < size; ++i) {
    if (i % kPointsAtOnce == 0 && !counting.report(i, size)) return false;
    const double x = points.shownX(i);
    const double y = points.shownY(i);
    if ((allKept ? dropped : points.runs.isDropped(i) != dropped) || !x_.holds(x) || !y_.holds(y)) continue;
    if (straight)
      discs.add(startX + x * shareX, startY + y * shareY);
    else
      discs.add(layer.pixelX(x_(x)), layer.pixelY(y_(y)));
  }
  const Progress covering = progress.part(kCountingShare, 1.0);
  if (points.shaded && !dropped) {
    return layer.cover(discs, densityColours(canvas_.inks()), covering) && layer.paint(progress.part(1.0, 1.0));
  }
  const double opacity = shown > kMostOpaquePoints ? kCrowdedOpacity : 1.0;
  if (!layer.cover(discs, dropped ? points.runs.droppedColour : points.colour, opacity, covering)) return false;
  return layer.paint(progress.part(1.0, 1.0));
}

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

void PlanePainter::drawLabelled(const LabelledPoints& points, std::size_t layer) const {
  cairo_t* context = canvas_.context();
  canvas_.setLine(kThinLine);
  for (const PlaneLayout::LabelPlace& place : layout_.labels) {
    if (place.layer != layer || !place.label.led) continue;
    canvas_.setColour(canvas_.inks().frame);
    cairo_move_to(context, place.x, place.y);
    cairo_line_to(context, place.label.lineX, place.label.lineY);
    cairo_stroke(context);
  }
  std::size_t without = 0;  // names that have no room
  for (const PlaneLayout::LabelPlace& place : layout_.labels) {
    if (place.layer != layer) continue;
    if (!place.label.placed) ++without;
    canvas_.setColour(points.colour);
    cairo_arc(context, place.x, place.y, layout_.markRadius, 0.0, 2.0 * M_PI);
    cairo_fill(context);
    if (!place.label.placed) continue;
    const Rect& box = place.label.box;
    canvas_.setColour(canvas_.inks().text);
    canvas_.pen().draw(points.labels[place.point], canvas_.tickStyle(), box.x, box.centreY(), Anchor::Left, box.width,
                       Shorten::InMiddle);
  }
  if (without > 0) drawNote(std::to_string(without) + (without == 1 ? " name has no room" : " names have no room"));
}

// In the first corner of the plane that no label and no mark of one needs.
void PlanePainter::drawNote(const std::string& text) const {
  const TextStyle style = canvas_.tickStyle();
  const double width = std::min(canvas_.pen().width(text, style), plane_.width);
  const double height = canvas_.pen().height(style);
  const double gap = canvas_.gap();
  const auto isFree = [&](const Rect& box) {
    return std::ranges::none_of(layout_.labels, [&](const PlaneLayout::LabelPlace& place) {
      const double radius = layout_.markRadius;
      const Rect mark{place.x - radius, place.y - radius, 2.0 * radius, 2.0 * radius};
      return mark.overlaps(box) || (place.label.placed && place.label.box.overlaps(box));
    });
  };
  const double right = plane_.right() - gap - width;
  const double low = plane_.bottom() - gap - height;
  const Rect corners[] = {{right, plane_.y + gap, width, height},
                          {plane_.x + gap, plane_.y + gap, width, height},
                          {plane_.x + gap, low, width, height},
                          {right, low, width, height}};
  const Rect* const found = std::ranges::find_if(corners, isFree);
  const Rect& box = found == std::end(corners) ? corners[0] : *found;
  canvas_.setColour(canvas_.inks().faintText);
  canvas_.pen().draw(text, style, box.x, box.centreY(), Anchor::Left, plane_.width);
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
      if (points != nullptr && !painter.drawPoints(*points, layout.shown[i], dropped, progress)) return false;
    }
    if (figureLayer == FigureLayer::Kept) {
      if (const auto* area = std::get_if<Area>(&layer)) painter.drawArea(*area);
      if (const auto* band = std::get_if<Band>(&layer)) painter.drawBand(*band);
      if (const auto* line = std::get_if<Line>(&layer)) painter.drawLine(*line);
      if (labelled != nullptr) painter.drawLabelled(*labelled, i);
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
