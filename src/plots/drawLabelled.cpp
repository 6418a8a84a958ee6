#include <cairo.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <iterator>
#include <string>

#include "plots/Canvas.h"
#include "plots/chartDrawing.h"

namespace tarvex {

namespace {

// In the first corner of the plane that no label and no mark of one needs.
void drawNote(Canvas& canvas, const PlaneLayout& layout, const std::string& text) {
  const Rect& plane = layout.frame.plane;
  const TextStyle style = canvas.tickStyle();
  const double width = std::min(canvas.pen().width(text, style), plane.width);
  const double height = canvas.pen().height(style);
  const double gap = canvas.gap();
  const auto isFree = [&](const Rect& box) {
    return std::ranges::none_of(layout.labels, [&](const PlaneLayout::LabelPlace& place) {
      const double radius = layout.markRadius;
      const Rect mark{place.x - radius, place.y - radius, 2.0 * radius, 2.0 * radius};
      return mark.overlaps(box) || (place.label.placed && place.label.box.overlaps(box));
    });
  };
  const double right = plane.right() - gap - width;
  const double low = plane.bottom() - gap - height;
  const Rect corners[] = {{right, plane.y + gap, width, height},
                          {plane.x + gap, plane.y + gap, width, height},
                          {plane.x + gap, low, width, height},
                          {right, low, width, height}};
  const Rect* const found = std::ranges::find_if(corners, isFree);
  const Rect& box = found == std::end(corners) ? corners[0] : *found;
  canvas.setColour(canvas.inks().faintText);
  canvas.pen().draw(text, style, box.x, box.centreY(), Anchor::Left, plane.width);
}

}  // namespace

void drawLabelled(Canvas& canvas, const PlaneLayout& layout, const LabelledPoints& points, std::size_t layer) {
  cairo_t* context = canvas.context();
  canvas.setLine(kThinLine);
  for (const PlaneLayout::LabelPlace& place : layout.labels) {
    if (place.layer != layer || !place.label.led) continue;
    canvas.setColour(canvas.inks().frame);
    cairo_move_to(context, place.x, place.y);
    cairo_line_to(context, place.label.lineX, place.label.lineY);
    cairo_stroke(context);
  }
  std::size_t without = 0;  // names that have no room
  for (const PlaneLayout::LabelPlace& place : layout.labels) {
    if (place.layer != layer) continue;
    if (!place.label.placed) ++without;
    canvas.setColour(points.colour);
    cairo_arc(context, place.x, place.y, layout.markRadius, 0.0, 2.0 * M_PI);
    cairo_fill(context);
    if (!place.label.placed) continue;
    const Rect& box = place.label.box;
    canvas.setColour(canvas.inks().text);
    canvas.pen().draw(points.labels[place.point], canvas.tickStyle(), box.x, box.centreY(), Anchor::Left, box.width,
                      Shorten::InMiddle);
  }
  if (without > 0)
    drawNote(canvas, layout, std::to_string(without) + (without == 1 ? " name has no room" : " names have no room"));
}

}  // namespace tarvex
