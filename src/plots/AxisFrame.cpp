#include "plots/AxisFrame.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>

namespace tarvex {

namespace {

// Distance of ticks at which an axis is easy to read, before scaling.
constexpr double kXTickDistance = 68.0;
constexpr double kYTickDistance = 54.0;
constexpr int kMostWanted = 12;
constexpr std::size_t kLeastTicks = 3;
constexpr double kTickLength = 5.0;
constexpr double kMinorTickLength = 3.0;
// Share of the area that the plane takes at least; titles, then texts, give way.
constexpr double kLeastShare = 0.45;
constexpr double kFarOutside = 1e6;  // on the canvas; beyond any picture, and safe to compute with

// The texts of neighbours don't touch: `extent` is a text's size along the axis, with its gap.
template <class Extent>
bool standApart(const std::vector<Tick>& ticks, const AxisMap& map, Extent extent) {
  double occupied = -kFarOutside;
  for (const Tick& tick : ticks) {
    if (tick.text.empty()) continue;
    const double half = extent(tick.text) / 2.0;
    if (map(tick.at) - half < occupied) return false;
    occupied = map(tick.at) + half;
  }
  return true;
}

template <class Extent>
std::vector<Tick> ticksApart(const Axis& axis, double length, double distance, Extent extent) {
  const AxisMap map(axis, 0.0, length);
  int wanted = std::clamp(static_cast<int>(length / distance), 1, kMostWanted);
  // Round steps may leave an axis with less than can be read off it.
  while (wanted < kMostWanted && axisTicks(axis, wanted).size() < kLeastTicks) ++wanted;
  std::vector<Tick> ticks;
  for (; wanted > 0; --wanted) {
    ticks = axisTicks(axis, wanted);
    if (standApart(ticks, map, extent)) return ticks;
  }
  // Even the fewest are too many: the texts that follow a kept one too closely are left out.
  double occupied = -kFarOutside;
  for (Tick& tick : ticks) {
    const double half = extent(tick.text) / 2.0;
    if (tick.text.empty() || map(tick.at) - half < occupied) {
      tick.text.clear();
    } else {
      occupied = map(tick.at) + half;
    }
  }
  return ticks;
}

std::vector<Tick> verticalTicks(Canvas& canvas, const Axis& axis, double height) {
  const double extent = canvas.pen().height(canvas.tickStyle());
  return ticksApart(axis, height, kYTickDistance * canvas.scale(), [&](const std::string&) { return extent; });
}

double widestText(Canvas& canvas, const std::vector<Tick>& ticks) {
  double widest = 0.0;
  for (const Tick& tick : ticks) widest = std::max(widest, canvas.pen().width(tick.text, canvas.tickStyle()));
  return widest;
}

// How far texts of a horizontal axis of this width stand out on its left and right.
std::pair<double, double> overhang(Canvas& canvas, const std::vector<Tick>& ticks, const Axis& axis, double width) {
  const AxisMap map(axis, 0.0, width);
  std::pair<double, double> out = {0.0, 0.0};
  for (const Tick& tick : ticks) {
    const double half = canvas.pen().width(tick.text, canvas.tickStyle()) / 2.0;
    out.first = std::max(out.first, half - map(tick.at));
    out.second = std::max(out.second, map(tick.at) + half - width);
  }
  return out;
}

double tickRoom(const Canvas& canvas) {
  return (kTickLength + 3.0) * canvas.scale();
}

// Places the plane for what `frame` says is shown.
void place(Canvas& canvas, const Rect& area, const Axis& x, const Axis& y, AxisFrame& frame) {
  TextPen& pen = canvas.pen();
  const double tickHeight = pen.height(canvas.tickStyle());
  const double titleHeight = pen.height(canvas.bodyStyle()) + canvas.gap() / 2.0;
  double top = frame.yTexts ? tickHeight / 2.0 : 1.0;
  if (frame.heading) top = pen.height(canvas.headingStyle()) + canvas.gap();
  double bottom = tickRoom(canvas);
  if (frame.xTexts) bottom += tickHeight;
  if (frame.xTitle) bottom += titleHeight;
  const double height = std::max(area.height - top - bottom, 1.0);
  frame.yTicks = verticalTicks(canvas, y, height);

  double left = tickRoom(canvas);
  if (frame.yTexts) left += widestText(canvas, frame.yTicks);
  if (frame.yTitle) left += titleHeight;
  double right = canvas.gap();
  double width = std::max(area.width - left - right, 1.0);
  frame.xTicks = horizontalTicks(canvas, x, width);
  if (frame.xTexts) {
    const auto [outLeft, outRight] = overhang(canvas, frame.xTicks, x, width);
    left = std::max(left, outLeft);
    right = std::max(right, outRight + 1.0);
    width = std::max(area.width - left - right, 1.0);
    frame.xTicks = horizontalTicks(canvas, x, width);
  }
  frame.plane = {area.x + left, area.y + top, width, height};
}

}  // namespace

AxisMap::AxisMap(const Axis& axis, double from, double to) : axis_(axis), from_(from), to_(to) {}

double AxisMap::operator()(double value) const {
  // Halves: the difference of two limits may be beyond the range of a double.
  const double part = (value / 2.0 - axis_.lower / 2.0) / (axis_.upper / 2.0 - axis_.lower / 2.0);
  if (std::isnan(part)) return part;
  return std::clamp(from_ + part * (to_ - from_), -kFarOutside, kFarOutside);
}

double AxisMap::clamped(double value) const {
  return std::isnan(value) ? value : (*this)(std::clamp(value, axis_.lower, axis_.upper));
}

std::vector<Tick> horizontalTicks(Canvas& canvas, const Axis& axis, double width) {
  const double gap = canvas.pen().width("0", canvas.tickStyle()) * 1.5;
  return ticksApart(axis, width, kXTickDistance * canvas.scale(), [&](const std::string& text) {
    return text.empty() ? 0.0 : canvas.pen().width(text, canvas.tickStyle()) + gap;
  });
}

AxisFrame layOutFrame(Canvas& canvas, const Rect& area, const std::string& heading, const Axis& x, const Axis& y) {
  AxisFrame frame;
  frame.heading = !heading.empty();
  frame.xTitle = !x.title.empty();
  frame.yTitle = !y.title.empty();
  frame.xTexts = frame.yTexts = true;
  // What gives way, in this order, while the plane lacks height or width.
  const std::array<bool*, 3> forHeight = {&frame.xTitle, &frame.heading, &frame.xTexts};
  const std::array<bool*, 2> forWidth = {&frame.yTitle, &frame.yTexts};
  std::size_t lowered = 0;
  std::size_t narrowed = 0;
  for (;;) {
    place(canvas, area, x, y, frame);
    if (frame.plane.height < kLeastShare * area.height && lowered < forHeight.size()) {
      *forHeight[lowered++] = false;
    } else if (frame.plane.width < kLeastShare * area.width && narrowed < forWidth.size()) {
      *forWidth[narrowed++] = false;
    } else {
      return frame;
    }
  }
}

void drawGrid(Canvas& canvas, const AxisFrame& frame, const AxisMap& x, const AxisMap& y) {
  const Rect& plane = frame.plane;
  for (const Tick& tick : frame.xTicks) {
    if (!tick.text.empty()) canvas.vertical(x(tick.at), plane.y, plane.bottom(), kGridInk);
  }
  for (const Tick& tick : frame.yTicks) {
    if (!tick.text.empty()) canvas.horizontal(plane.x, plane.right(), y(tick.at), kGridInk);
  }
}

void drawHorizontalAxis(Canvas& canvas, const Rect& plane, const std::vector<Tick>& ticks, const AxisMap& map,
                        bool texts) {
  const double middle = plane.bottom() + tickRoom(canvas) + canvas.pen().height(canvas.tickStyle()) / 2.0;
  for (const Tick& tick : ticks) {
    const double length = (tick.text.empty() ? kMinorTickLength : kTickLength) * canvas.scale();
    canvas.vertical(map(tick.at), plane.bottom(), plane.bottom() + length, kFrameInk);
    if (!texts) continue;
    canvas.setColour(kInk);
    canvas.pen().draw(tick.text, canvas.tickStyle(), map(tick.at), middle, Anchor::Centre, kFarOutside);
  }
}

void drawFrame(Canvas& canvas, const AxisFrame& frame, const Rect& area, const std::string& heading, const Axis& x,
               const Axis& y) {
  const Rect& plane = frame.plane;
  TextPen& pen = canvas.pen();
  drawHorizontalAxis(canvas, plane, frame.xTicks, AxisMap(x, plane.x, plane.right()), frame.xTexts);
  const AxisMap yMap(y, plane.bottom(), plane.y);
  for (const Tick& tick : frame.yTicks) {
    const double length = (tick.text.empty() ? kMinorTickLength : kTickLength) * canvas.scale();
    canvas.horizontal(plane.x - length, plane.x, yMap(tick.at), kFrameInk);
    if (!frame.yTexts) continue;
    canvas.setColour(kInk);
    pen.draw(tick.text, canvas.tickStyle(), plane.x - tickRoom(canvas), yMap(tick.at), Anchor::Right, kFarOutside);
  }
  canvas.outline(plane, kFrameInk, 1.0);
  canvas.setColour(kInk);
  if (frame.heading) {
    const double middle = area.y + pen.height(canvas.headingStyle()) / 2.0;
    pen.draw(heading, canvas.headingStyle(), area.centreX(), middle, Anchor::Centre, area.width);
  }
  const double half = pen.height(canvas.bodyStyle()) / 2.0;
  if (frame.xTitle) {
    const double room = 2.0 * std::min(plane.centreX() - area.x, area.right() - plane.centreX());
    pen.draw(x.title, canvas.bodyStyle(), plane.centreX(), area.bottom() - half, Anchor::Centre, room);
  }
  if (frame.yTitle) {
    const double room = 2.0 * std::min(plane.centreY() - area.y, area.bottom() - plane.centreY());
    pen.drawUpward(y.title, canvas.bodyStyle(), area.x + half, plane.centreY(), Anchor::Centre, room);
  }
}

}  // namespace tarvex
