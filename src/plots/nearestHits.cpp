#include "plots/nearestHits.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "plots/Canvas.h"
#include "plots/Figure.h"

namespace tarvex {

namespace {

using Place = std::pair<double, double>;

// Keeps the nearest of what is offered; of equals the last one, which lies in front.
class Nearest {
 public:
  explicit Nearest(const Pointer& pointer) : pointer_(pointer) {}

  const Pointer& pointer() const { return pointer_; }
  // How far from the pointer an offer may lie so as to count; below 0: it can't.
  double limit(bool dropped) const {
    if (!found_ || (dropped_ && !dropped)) return pointer_.reach;
    return dropped && !dropped_ ? -1.0 : found_->distance;
  }
  // Of a run that a filter left out: counts only while nothing else is found.
  void offerPoint(Hit hit, const Place& place, bool dropped = false) {
    hit.x = place.first;
    hit.y = place.second;
    hit.distance = std::hypot(place.first - pointer_.x, place.second - pointer_.y);
    if (!(hit.distance <= limit(dropped))) return;
    found_ = hit;
    dropped_ = dropped;
  }
  // What of a line can be seen in `clip`.
  void offerLine(const Hit& hit, const Rect& clip, Place from, Place to, bool dropped = false) {
    if (!clipLine(clip, from.first, from.second, to.first, to.second)) return;
    const double dx = to.first - from.first;
    const double dy = to.second - from.second;
    const double square = dx * dx + dy * dy;
    const double along = (pointer_.x - from.first) * dx + (pointer_.y - from.second) * dy;
    const double t = square > 0.0 ? std::clamp(along / square, 0.0, 1.0) : 0.0;
    offerPoint(hit, {from.first + t * dx, from.second + t * dy}, dropped);
  }
  void offerBox(const Hit& hit, const Rect& box) {
    offerPoint(hit, {std::clamp(pointer_.x, box.x, std::max(box.x, box.right())),
                     std::clamp(pointer_.y, box.y, std::max(box.y, box.bottom()))});
  }
  const std::optional<Hit>& found() const { return found_; }

 private:
  Pointer pointer_;
  std::optional<Hit> found_;
  bool dropped_ = false;
};

void offerPoints(const Points& points, std::size_t layer, const PlaneLayout& layout, const PointGrid& grid,
                 Nearest& nearest) {
  const Pointer& pointer = nearest.pointer();
  grid.visitNear(pointer.x, pointer.y, pointer.reach, [&](std::size_t i) {
    const bool dropped = points.runs.isDropped(i);
    if (dropped && !points.runs.showDropped) return;
    nearest.offerPoint({Hit::Kind::Run, 0, layer, points.runs.numberOf(i)},
                       {layout.x(points.shownX(i)), layout.y(points.shownY(i))}, dropped);
  });
}

void offerLine(const Line& line, std::size_t layer, const PlaneLayout& layout, Nearest& nearest) {
  for (std::size_t i = 1; i < std::min(line.x.size(), line.y.size()); ++i) {
    const Place from = {layout.x(line.x[i - 1]), layout.y(line.y[i - 1])};
    const Place to = {layout.x(line.x[i]), layout.y(line.y[i])};
    const bool first = std::abs(nearest.pointer().x - from.first) < std::abs(nearest.pointer().x - to.first);
    const Hit hit{Hit::Kind::Point, 0, layer, static_cast<std::int32_t>(line.steps || first ? i - 1 : i)};
    if (!line.steps) {
      nearest.offerLine(hit, layout.frame.plane, from, to);
      continue;
    }
    const Place corner = {to.first, from.second};
    nearest.offerLine(hit, layout.frame.plane, from, corner);
    nearest.offerLine({Hit::Kind::Point, 0, layer, static_cast<std::int32_t>(i)}, layout.frame.plane, corner, to);
  }
}

void offerLabels(const LabelledPoints& points, std::size_t layer, const PlaneLayout& layout, Nearest& nearest) {
  for (const PlaneLayout::LabelPlace& place : layout.labels) {
    if (place.layer != layer) continue;
    const Hit hit{Hit::Kind::Record, 0, layer, points.recordOf(place.point)};
    nearest.offerPoint(hit, {place.x, place.y});
  }
  // A text is as good as its mark, where no mark is near.
  for (const PlaneLayout::LabelPlace& place : layout.labels) {
    const Pointer& pointer = nearest.pointer();
    if (place.layer == layer && place.label.placed && !nearest.found() && place.label.box.holds(pointer.x, pointer.y))
      nearest.offerBox({Hit::Kind::Record, 0, layer, points.recordOf(place.point)}, place.label.box);
  }
}

void offerColumns(const Area& area, std::size_t layer, const PlaneLayout& layout, Nearest& nearest) {
  const double zero = layout.y.clamped(0.0);
  for (std::size_t i = 0; i + 1 < area.edges.size() && i < area.heights.size(); ++i) {
    const double left = layout.x.clamped(area.edges[i]);
    const double right = layout.x.clamped(area.edges[i + 1]);
    const double top = layout.y.clamped(area.heights[i]);
    if (!std::isfinite(left) || !std::isfinite(right) || !std::isfinite(top) || left >= right) continue;
    nearest.offerBox({Hit::Kind::Bin, 0, layer, static_cast<std::int32_t>(i)},
                     {left, std::min(top, zero), right - left, std::abs(zero - top)});
  }
}

// Where a run meets an axis: foot + rise * position.
struct Level {
  double foot, rise;
  double operator()(float position) const { return foot + rise * position; }
};
Level levelOf(const CobwebLayout& layout, std::size_t axis) {
  const double foot = layout.levelOf(axis, 0.0F);
  return {foot, layout.levelOf(axis, 1.0F) - foot};
}

// The runs' lines between an axis and the next.
void offerGap(const CobwebChart& chart, const CobwebLayout& layout, std::size_t axis, Nearest& nearest) {
  const Pointer& pointer = nearest.pointer();
  const double fromX = layout.axes[axis].x;
  const double toX = layout.axes[axis + 1].x;
  const double width = toX - fromX;
  const double t = (pointer.x - fromX) / width;
  const Level left = levelOf(layout, axis);
  const Level right = levelOf(layout, axis + 1);
  const float* from = chart.axes[axis].positions.data();
  const float* to = chart.axes[axis + 1].positions.data();
  // A pixel of no account beyond the limit makes up for what is rounded. Once a line lies at the pointer, few others
  // are worth more than this look at them.
  constexpr double kRounded = 1e-6;
  const auto squareOf = [&](bool dropped) {
    const double limit = nearest.limit(dropped) + kRounded;
    return limit > 0.0 ? limit * limit : -1.0;
  };
  double kept = squareOf(false);
  double droppedOnes = squareOf(true);
  const std::size_t runs = chart.runCount();
  for (std::size_t run = 0; run < runs; ++run) {
    const double y0 = left(from[run]);
    const double y1 = right(to[run]);
    // The distance from the line without its ends, squared.
    const double across = (y0 + t * (y1 - y0) - pointer.y) * width;
    const double length = width * width + (y1 - y0) * (y1 - y0);
    if (!(across * across <= kept * length)) continue;
    const bool dropped = chart.runs.isDropped(run);
    if (dropped && (!chart.runs.showDropped || !(across * across <= droppedOnes * length))) continue;
    nearest.offerLine({Hit::Kind::Run, 0, axis, chart.runs.numberOf(run)}, layout.plane, {fromX, y0}, {toX, y1},
                      dropped);
    kept = squareOf(false);
    droppedOnes = squareOf(true);
  }
}

}  // namespace

std::optional<Hit> nearestHit(const XyChart& chart, const PlaneLayout& layout, const std::vector<PointGrid>& grids,
                              const Pointer& pointer) {
  if (!layout.frame.plane.grown(pointer.reach).holds(pointer.x, pointer.y)) return std::nullopt;
  Nearest marks(pointer);
  Nearest columns(pointer);
  for (std::size_t i = 0; i < chart.layers.size(); ++i) {
    const XyChart::Layer& layer = chart.layers[i];
    if (const auto* points = std::get_if<Points>(&layer)) offerPoints(*points, i, layout, grids[i], marks);
    if (const auto* line = std::get_if<Line>(&layer)) offerLine(*line, i, layout, marks);
    if (const auto* points = std::get_if<LabelledPoints>(&layer)) offerLabels(*points, i, layout, marks);
    if (const auto* area = std::get_if<Area>(&layer)) offerColumns(*area, i, layout, columns);
  }
  return marks.found() ? marks.found() : columns.found();
}

std::optional<Hit> nearestHit(const CobwebChart& chart, const CobwebLayout& layout, const Pointer& pointer) {
  Nearest nearest(pointer);
  for (std::size_t axis = 0; axis + 1 < layout.axes.size(); ++axis)
    if (pointer.x >= layout.axes[axis].x - pointer.reach && pointer.x <= layout.axes[axis + 1].x + pointer.reach)
      offerGap(chart, layout, axis, nearest);
  return nearest.found();
}

std::optional<Hit> nearestHit(const BarChart& chart, const BarLayout& layout, const Pointer& pointer) {
  Nearest nearest(pointer);
  for (std::size_t series = 0; series < chart.series.size(); ++series)
    for (std::size_t i = 0; i < std::min(chart.series[series].size(), chart.categories.size()); ++i)
      nearest.offerBox({Hit::Kind::Bar, 0, series, chart.recordOf(i)},
                       layout.barBox(series, i, chart.series[series][i]));
  return nearest.found();
}

std::optional<Hit> nearestHit(const PieChart& chart, const PieLayout& layout, const Pointer& pointer) {
  const std::optional<std::size_t> slice = layout.sliceAt(pointer.x, pointer.y);
  if (!slice) return std::nullopt;
  return Hit{Hit::Kind::Slice, 0, 0, chart.recordOf(*slice), pointer.x, pointer.y, 0.0};
}

}  // namespace tarvex
