#include "plots/Canvas.h"

#include <cairo.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>

namespace tarvex {

namespace {

constexpr double kFullComponent = 65535.0;
// A stroke of crossing lines takes a pixel surface time that grows with the square of its segments.
constexpr std::size_t kSegmentsPerStroke = 200;
// Points of a polyline nearer to the last one than this can't be told from it.
constexpr double kNearby = 0.05;

struct Dashes {
  std::array<double, 6> lengths;  // on, off, in units of a line of width 1.6
  int count;
};

// By LineStyle.
// clang-format off
constexpr std::array<Dashes, kLineStyles> kDashes = {{
    {{},                             0},
    {{ 7.0, 4.0},                    2},
    {{ 8.0, 3.0, 1.6, 3.0},          4},
    {{ 8.0, 3.0, 1.6, 3.0, 1.6, 3.0}, 6},
    {{ 3.0, 3.0},                    2},
    {{ 1.6, 2.4, 1.6, 6.0},          4},
    {{16.0, 5.0},                    2},
}};
// clang-format on

std::uint16_t between(std::uint16_t from, std::uint16_t to, double share) {
  return static_cast<std::uint16_t>(std::lround(from + (static_cast<double>(to) - from) * share));
}

}  // namespace

Colour blend(const Colour& from, const Colour& to, double share) {
  return {between(from.red, to.red, share), between(from.green, to.green, share), between(from.blue, to.blue, share)};
}

Colour outlineOf(const Colour& fill) {
  return blend(fill, Colour{}, 0.5);
}

Canvas::Canvas(cairo_t* context, double scale, const DrawOptions& options, const FigureFont& font)
    : Metrics(context, scale, font), context_(context), options_(options) {
  cairo_set_line_cap(context_, CAIRO_LINE_CAP_BUTT);
  cairo_set_line_join(context_, CAIRO_LINE_JOIN_ROUND);
}

bool Canvas::isMarked(std::int32_t number) const {
  return std::find(options_.marked.begin(), options_.marked.end(), number) != options_.marked.end();
}

void Canvas::setColour(const Colour& colour) {
  cairo_set_source_rgb(context_, colour.red / kFullComponent, colour.green / kFullComponent,
                       colour.blue / kFullComponent);
}

void Canvas::fill(const Rect& rect, const Colour& colour) {
  if (rect.empty()) return;
  setColour(colour);
  cairo_rectangle(context_, rect.x, rect.y, rect.width, rect.height);
  cairo_fill(context_);
}

void Canvas::outline(const Rect& rect, const Colour& colour, double width) {
  setColour(colour);
  setLine(width);
  const double left = snapped(rect.x);
  const double top = snapped(rect.y);
  cairo_rectangle(context_, left, top, snapped(rect.right()) - left, snapped(rect.bottom()) - top);
  cairo_stroke(context_);
}

void Canvas::horizontal(double fromX, double toX, double y, const Colour& colour, double width) {
  setColour(colour);
  setLine(width);
  cairo_move_to(context_, fromX, snapped(y));
  cairo_line_to(context_, toX, snapped(y));
  cairo_stroke(context_);
}

void Canvas::vertical(double x, double fromY, double toY, const Colour& colour, double width) {
  setColour(colour);
  setLine(width);
  cairo_move_to(context_, snapped(x), fromY);
  cairo_line_to(context_, snapped(x), toY);
  cairo_stroke(context_);
}

double Canvas::snapped(double position) const {
  if (isVector()) return position;
  return (std::floor(position * pixelsPerUnit()) + 0.5) / pixelsPerUnit();
}

void Canvas::setLine(double width, LineStyle style, double offset) {
  cairo_set_line_width(context_, width);
  const Dashes& dashes = kDashes[static_cast<std::size_t>(style)];
  std::array<double, 6> lengths = dashes.lengths;
  for (double& length : lengths) length *= scale();
  cairo_set_dash(context_, lengths.data(), dashes.count, offset);
}

SavedState::SavedState(cairo_t* context) : context_(context) {
  cairo_save(context_);
}

SavedState::SavedState(cairo_t* context, const Rect& clip) : SavedState(context) {
  cairo_rectangle(context_, clip.x, clip.y, clip.width, clip.height);
  cairo_clip(context_);
}

SavedState::~SavedState() {
  cairo_restore(context_);
}

bool clipLine(const Rect& clip, double& x0, double& y0, double& x1, double& y1) {
  if (!std::isfinite(x0) || !std::isfinite(y0) || !std::isfinite(x1) || !std::isfinite(y1)) return false;
  double from = 0.0;
  double to = 1.0;
  const double dx = x1 - x0;
  const double dy = y1 - y0;
  // Of each edge: the way towards the outside, and the distance to it.
  const std::array<std::pair<double, double>, 4> edges = {
      {{-dx, x0 - clip.x}, {dx, clip.right() - x0}, {-dy, y0 - clip.y}, {dy, clip.bottom() - y0}}};
  for (const auto& [outward, distance] : edges) {
    if (outward == 0.0) {
      if (distance < 0.0) return false;
    } else if (outward < 0.0) {
      from = std::fmax(from, distance / outward);
    } else {
      to = std::fmin(to, distance / outward);
    }
  }
  if (!(from <= to)) return false;
  const double startX = x0;
  const double startY = y0;
  x0 = startX + from * dx;
  y0 = startY + from * dy;
  x1 = startX + to * dx;
  y1 = startY + to * dy;
  return true;
}

void strokePolyline(Canvas& canvas, const Rect& clip, const std::vector<std::pair<double, double>>& points,
                    double width, LineStyle style) {
  cairo_t* context = canvas.context();
  double drawn = 0.0;  // length so far, on which the dashes go on
  double pathLength = 0.0;
  std::size_t segments = 0;
  double lastX = 0.0;
  double lastY = 0.0;
  const auto stroke = [&] {
    if (segments == 0) return;
    canvas.setLine(width, style, drawn);
    cairo_stroke(context);
    drawn += pathLength;
    pathLength = 0.0;
    segments = 0;
  };
  for (std::size_t i = 1, last = 0; i < points.size(); ++i) {
    auto [x0, y0] = points[last];
    auto [x1, y1] = points[i];
    if (i + 1 < points.size() && std::hypot(x1 - x0, y1 - y0) < kNearby && std::isfinite(points[i + 1].first) &&
        std::isfinite(points[i + 1].second)) {
      continue;
    }
    last = i;
    if (!clipLine(clip, x0, y0, x1, y1)) continue;
    if (segments == 0 || x0 != lastX || y0 != lastY) {
      stroke();
      cairo_move_to(context, x0, y0);
    }
    cairo_line_to(context, x1, y1);
    lastX = x1;
    lastY = y1;
    pathLength += std::hypot(x1 - x0, y1 - y0);
    if (++segments == kSegmentsPerStroke) stroke();
  }
  stroke();
}

}  // namespace tarvex
