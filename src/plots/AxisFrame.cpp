#include "plots/AxisFrame.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>

#include "plots/Canvas.h"

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

std::vector<Tick> verticalTicks(Metrics& metrics, const Axis& axis, double height) {
  const double extent = metrics.pen().height(metrics.tickStyle());
  return ticksApart(axis, height, kYTickDistance * metrics.scale(), [&](const std::string&) { return extent; });
}

double widestText(Metrics& metrics, const std::vector<Tick>& ticks) {
  double widest = 0.0;
  for (const Tick& tick : ticks) widest = std::max(widest, metrics.pen().width(tick.text, metrics.tickStyle()));
  return widest;
}

// How far texts of a horizontal axis of this width stand out on its left and right.
std::pair<double, double> overhang(Metrics& metrics, const std::vector<Tick>& ticks, const Axis& axis, double width) {
  const AxisMap map(axis, 0.0, width);
  std::pair<double, double> out = {0.0, 0.0};
  for (const Tick& tick : ticks) {
    const double half = metrics.pen().width(tick.text, metrics.tickStyle()) / 2.0;
    out.first = std::max(out.first, half - map(tick.at));
    out.second = std::max(out.second, map(tick.at) + half - width);
  }
  return out;
}

double tickRoom(const Metrics& metrics) {
  return (kTickLength + 3.0) * metrics.scale();
}

// Places the plane for what `frame` says is shown.
void place(Metrics& metrics, const Rect& area, const Axis& x, const Axis& y, AxisFrame& frame) {
  TextPen& pen = metrics.pen();
  const double tickHeight = pen.height(metrics.tickStyle());
  const double titleHeight = pen.height(metrics.bodyStyle()) + metrics.gap() / 2.0;
  double top = frame.yTexts ? tickHeight / 2.0 : 1.0;
  if (frame.heading) top = pen.height(metrics.headingStyle()) + metrics.gap();
  double bottom = tickRoom(metrics);
  if (frame.xTexts) bottom += tickHeight;
  if (frame.xTitle) bottom += titleHeight;
  const double height = std::max(area.height - top - bottom, 1.0);
  frame.yTicks = verticalTicks(metrics, y, height);

  double left = tickRoom(metrics);
  if (frame.yTexts) left += widestText(metrics, frame.yTicks);
  if (frame.yTitle) left += titleHeight;
  double right = metrics.gap();
  double width = std::max(area.width - left - right, 1.0);
  frame.xTicks = horizontalTicks(metrics, x, width);
  if (frame.xTexts) {
    const auto [outLeft, outRight] = overhang(metrics, frame.xTicks, x, width);
    left = std::max(left, outLeft);
    right = std::max(right, outRight + 1.0);
    width = std::max(area.width - left - right, 1.0);
    frame.xTicks = horizontalTicks(metrics, x, width);
  }
  frame.plane = {area.x + left, area.y + top, width, height};
}

}  // namespace

std::vector<Tick> horizontalTicks(Metrics& metrics, const Axis& axis, double width) {
  const double gap = metrics.pen().width("0", metrics.tickStyle()) * 1.5;
  return ticksApart(axis, width, kXTickDistance * metrics.scale(), [&](const std::string& text) {
    return text.empty() ? 0.0 : metrics.pen().width(text, metrics.tickStyle()) + gap;
  });
}

AxisFrame layOutFrame(Metrics& metrics, const Rect& area, const std::string& heading, const Axis& x, const Axis& y) {
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
    place(metrics, area, x, y, frame);
    if (frame.plane.height < kLeastShare * area.height && lowered < forHeight.size()) {
      *forHeight[lowered++] = false;
    } else if (frame.plane.width < kLeastShare * area.width && narrowed < forWidth.size()) {
      *forWidth[narrowed++] = false;
    } else {
      break;
    }
  }
  const Rect& plane = frame.plane;
  const double tall = metrics.pen().height(metrics.bodyStyle());
  if (frame.heading) frame.headingBox = {area.x, area.y, area.width, metrics.pen().height(metrics.headingStyle())};
  if (frame.xTitle) {
    const double half = std::min(plane.centreX() - area.x, area.right() - plane.centreX());
    frame.xTitleBox = {plane.centreX() - half, area.bottom() - tall, 2.0 * half, tall};
  }
  if (frame.yTitle) {
    const double half = std::min(plane.centreY() - area.y, area.bottom() - plane.centreY());
    frame.yTitleBox = {area.x, plane.centreY() - half, tall, 2.0 * half};
  }
  return frame;
}

void drawGrid(Canvas& canvas, const AxisFrame& frame, const AxisMap& x, const AxisMap& y) {
  const Rect& plane = frame.plane;
  for (const Tick& tick : frame.xTicks) {
    if (!tick.text.empty()) canvas.vertical(x(tick.at), plane.y, plane.bottom(), canvas.inks().grid);
  }
  for (const Tick& tick : frame.yTicks) {
    if (!tick.text.empty()) canvas.horizontal(plane.x, plane.right(), y(tick.at), canvas.inks().grid);
  }
}

void drawHorizontalAxis(Canvas& canvas, const Rect& plane, const std::vector<Tick>& ticks, const AxisMap& map,
                        bool texts) {
  const double middle = plane.bottom() + tickRoom(canvas) + canvas.pen().height(canvas.tickStyle()) / 2.0;
  for (const Tick& tick : ticks) {
    const double length = (tick.text.empty() ? kMinorTickLength : kTickLength) * canvas.scale();
    canvas.vertical(map(tick.at), plane.bottom(), plane.bottom() + length, canvas.inks().frame);
    if (!texts) continue;
    canvas.setColour(canvas.inks().text);
    canvas.pen().draw(tick.text, canvas.tickStyle(), map(tick.at), middle, Anchor::Centre, kFarOutside);
  }
}

void drawFrame(Canvas& canvas, const AxisFrame& frame, const AxisMap& x, const AxisMap& y) {
  const Rect& plane = frame.plane;
  drawHorizontalAxis(canvas, plane, frame.xTicks, x, frame.xTexts);
  for (const Tick& tick : frame.yTicks) {
    const double length = (tick.text.empty() ? kMinorTickLength : kTickLength) * canvas.scale();
    canvas.horizontal(plane.x - length, plane.x, y(tick.at), canvas.inks().frame);
    if (!frame.yTexts) continue;
    canvas.setColour(canvas.inks().text);
    canvas.pen().draw(tick.text, canvas.tickStyle(), plane.x - tickRoom(canvas), y(tick.at), Anchor::Right,
                      kFarOutside);
  }
  canvas.outline(plane, canvas.inks().frame, 1.0);
}

void drawFrameTitles(Canvas& canvas, const AxisFrame& frame, const std::string& heading, const Axis& x, const Axis& y) {
  TextPen& pen = canvas.pen();
  canvas.setColour(canvas.inks().text);
  const auto level = [&](const std::string& text, const TextStyle& style, const Rect& box) {
    pen.draw(text, style, box.centreX(), box.centreY(), Anchor::Centre, box.width);
  };
  if (frame.heading) level(heading, canvas.headingStyle(), frame.headingBox);
  if (frame.xTitle) level(x.title, canvas.bodyStyle(), frame.xTitleBox);
  const Rect& box = frame.yTitleBox;
  if (frame.yTitle)
    pen.drawUpward(y.title, canvas.bodyStyle(), box.centreX(), box.centreY(), Anchor::Centre, box.height);
}

}  // namespace tarvex
