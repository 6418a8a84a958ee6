#include <cairo.h>

#include <algorithm>
#include <cmath>
#include <cstddef>

#include "plots/Canvas.h"
#include "plots/chartDrawing.h"

namespace tarvex {

namespace {

constexpr double kOutlineWidth = 1.0;
constexpr double kMarkedSliceLine = 2.5;  // around a slice that stands out
constexpr double kLeastName = 4.0;        // of a shortened name, in ems

bool isDark(const Colour& colour) {
  constexpr int kDark = 3 * 12000;
  return colour.red + colour.green + colour.blue < kDark;
}

void slicePath(Canvas& canvas, const PieLayout& layout, const PieLayout::Piece& piece) {
  cairo_t* context = canvas.context();
  constexpr double kQuarter = M_PI / 2.0;  // cairo counts from the right
  if (layout.pieces.size() > 1) cairo_move_to(context, layout.centreX, layout.centreY);
  cairo_arc(context, layout.centreX, layout.centreY, layout.radius, piece.from - kQuarter, piece.to - kQuarter);
  cairo_close_path(context);
}

void drawSlice(Canvas& canvas, const PieLayout& layout, const PieLayout::Piece& piece, const Colour& colour) {
  slicePath(canvas, layout, piece);
  canvas.setColour(colour);
  cairo_fill_preserve(canvas.context());
  // Slices of equal gray, black ones too, stay apart in print.
  canvas.setColour(isDark(colour) ? Inks().grid : Inks().text);
  canvas.setLine(kOutlineWidth * canvas.scale());
  cairo_stroke(canvas.context());
}

void drawLabel(Canvas& canvas, const PieChart& chart, const PieLayout& layout, const PieLayout::LabelPlace& label) {
  cairo_t* context = canvas.context();
  const PieLayout::Piece& piece = layout.pieces[label.piece];
  const Slice& slice = chart.slices[piece.slice];
  const double angle = piece.middle();
  const double middle = label.box.centreY();
  const double gap = canvas.gap();
  // All labels of a side begin on one vertical line, beyond the pie.
  canvas.setColour(canvas.inks().frame);
  canvas.setLine(0.8);
  cairo_move_to(context, layout.x(angle, 1.0), layout.y(angle, 1.0));
  cairo_line_to(context, layout.x(angle, PieLayout::kElbow), layout.y(angle, PieLayout::kElbow));
  cairo_line_to(context, layout.labelEdge(label.right, gap), middle);
  cairo_stroke(context);

  TextPen& pen = canvas.pen();
  const TextStyle style = canvas.tickStyle();
  const double room = label.box.width;
  // The value goes before a name is shortened beyond recognition.
  double text = pen.width(slice.text, style);
  double name = pen.width(slice.label, style);
  if (text + gap + std::min(name, kLeastName * style.size) > room) text = 0.0;
  const double between = name > 0.0 && text > 0.0 ? gap : 0.0;
  name = std::min(name, room - text - between);
  const double start = label.right ? label.box.x : label.box.right() - name - between - text;
  canvas.setColour(canvas.inks().text);
  pen.draw(slice.label, style, start, middle, Anchor::Left, name, Shorten::InMiddle);
  canvas.setColour(canvas.inks().faintText);
  pen.draw(slice.text, style, start + name + between, middle, Anchor::Left, text);
}

void drawPieFrame(Canvas& canvas, const PieChart& chart, const PieLayout& layout) {
  TextPen& pen = canvas.pen();
  if (layout.heading) {
    const double middle = layout.area.y + pen.height(canvas.headingStyle()) / 2.0;
    canvas.setColour(canvas.inks().text);
    pen.draw(chart.title, canvas.headingStyle(), layout.area.centreX(), middle, Anchor::Centre, layout.area.width);
  }
  if (!layout.pieces.empty()) return;
  const Rect& body = layout.body;
  canvas.setColour(canvas.inks().faintText);
  pen.draw(chart.emptyText, canvas.bodyStyle(), body.centreX(), body.centreY(), Anchor::Centre, body.width);
}

void markSlices(Canvas& canvas, const PieChart& chart, const PieLayout& layout) {
  for (const PieLayout::Piece& piece : layout.pieces) {
    if (!canvas.isMarked(chart.recordOf(piece.slice))) continue;
    slicePath(canvas, layout, piece);
    canvas.setColour(canvas.inks().text);
    canvas.setLine(kMarkedSliceLine * canvas.scale());
    cairo_stroke(canvas.context());
  }
}

}  // namespace

bool drawChart(Canvas& canvas, FigureLayer layer, const PieChart& chart, const PieLayout& layout,
               const Progress& /*progress*/) {
  if (layer == FigureLayer::Frame) drawPieFrame(canvas, chart, layout);
  if (layer == FigureLayer::Overlay) markSlices(canvas, chart, layout);
  if (layer != FigureLayer::Kept) return true;
  for (const PieLayout::Piece& piece : layout.pieces)
    drawSlice(canvas, layout, piece, chart.slices[piece.slice].colour);
  for (const PieLayout::LabelPlace& label : layout.labels) drawLabel(canvas, chart, layout, label);
  return true;
}

}  // namespace tarvex
