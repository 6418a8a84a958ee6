#include "plots/LegendLayout.h"

#include <cairo.h>

#include <algorithm>
#include <cmath>

#include "plots/Canvas.h"
#include "plots/ColourSet.h"

namespace tarvex {

namespace {

constexpr double kMarkWidth = 28.0;  // a dash pattern and a half
constexpr double kBoxWidth = 14.0;
constexpr double kMarkHeight = 10.0;
constexpr double kPointRadius = 3.0;
constexpr double kSampleWidth = 1.8;
constexpr double kRowHeight = 1.25;  // in heights of a text

double markWidth(const LegendEntry& entry) {
  return entry.mark == LegendMark::Line ? kMarkWidth : kBoxWidth;
}

void drawMark(Canvas& canvas, const Rect& box, const LegendEntry& entry, const Colour& lineColour) {
  cairo_t* context = canvas.context();
  switch (entry.mark) {
    case LegendMark::Box:
      canvas.fill(box, entry.colour);
      canvas.outline(box, outlineOf(entry.colour), 0.8);
      return;
    case LegendMark::Line:
      canvas.setColour(lineColour);
      canvas.setLine(kSampleWidth * canvas.scale(), entry.style);
      cairo_move_to(context, box.x, box.centreY());
      cairo_line_to(context, box.right(), box.centreY());
      cairo_stroke(context);
      return;
    case LegendMark::Point:
      canvas.setColour(entry.colour);
      cairo_arc(context, box.centreX(), box.centreY(), kPointRadius * canvas.scale(), 0.0, 2.0 * M_PI);
      cairo_fill(context);
      return;
  }
}

// Entries side by side, from the left; each takes `widths` of them.
struct Row {
  std::size_t first = 0;
  std::vector<std::size_t> entries;
  std::vector<double> widths;
  double width = 0.0;
};

std::vector<Row> rowsOf(Metrics& metrics, const std::vector<LegendEntry>& entries, double width, std::size_t most) {
  const double gap = metrics.gap();
  std::vector<Row> rows;
  for (std::size_t i = 0; i < entries.size(); ++i) {
    const double mark = markWidth(entries[i]) * metrics.scale() + gap;
    const double taken = std::min(mark + metrics.pen().width(entries[i].text, metrics.bodyStyle()), width);
    if (rows.empty() || rows.back().width + 3.0 * gap + taken > width) {
      if (rows.size() == most) break;
      rows.push_back({i, {}, {}, 0.0});
    }
    Row& row = rows.back();
    row.width += taken + (row.entries.empty() ? 0.0 : 3.0 * gap);
    row.entries.push_back(i);
    row.widths.push_back(taken);
  }
  return rows;
}

// Takes entries off the last row until it has room to say how many aren't there; what that is wide.
double makeRoomForMore(Metrics& metrics, std::size_t count, double width, Row& last, std::string& more) {
  if (last.entries.back() + 1 == count) return 0.0;
  const double gap = 3.0 * metrics.gap();
  double taken = 0.0;
  while (true) {
    const std::size_t shown = last.entries.empty() ? last.first : last.entries.back() + 1;
    more = "and " + std::to_string(count - shown) + " more";
    taken = metrics.pen().width(more, metrics.bodyStyle());
    if (last.entries.empty() || last.width + gap + taken <= width) return taken;
    last.width -= last.widths.back() + (last.entries.size() > 1 ? gap : 0.0);
    last.entries.pop_back();
    last.widths.pop_back();
  }
}

}  // namespace

void LegendLayout::move(double x, double y) {
  for (Place& place : places)
    for (Rect* rect : {&place.mark, &place.text}) {
      rect->x += x;
      rect->y += y;
    }
  moreText.x += x;
  moreText.y += y;
}

LegendLayout layOutLegend(Metrics& metrics, const std::vector<LegendEntry>& entries, double width, double room) {
  const double gap = metrics.gap();
  const double rowHeight = metrics.pen().height(metrics.bodyStyle()) * kRowHeight;
  const double high = kMarkHeight * metrics.scale();
  LegendLayout layout;
  const auto most = static_cast<std::size_t>(std::max(room, 0.0) / rowHeight);
  std::vector<Row> rows = rowsOf(metrics, entries, width, most);
  const double moreWidth =
      rows.empty() ? 0.0 : makeRoomForMore(metrics, entries.size(), width, rows.back(), layout.more);
  for (const Row& row : rows) {
    const double middle = layout.height + rowHeight / 2.0;
    const bool isLast = &row == &rows.back();
    double left = (width - row.width - (isLast ? moreWidth : 0.0)) / 2.0;
    for (std::size_t i = 0; i < row.entries.size(); ++i) {
      const double mark = markWidth(entries[row.entries[i]]) * metrics.scale();
      layout.places.push_back({row.entries[i],
                               {left, middle - high / 2.0, mark, high},
                               {left + mark + gap, layout.height, row.widths[i] - mark - gap, rowHeight}});
      left += row.widths[i] + 3.0 * gap;
    }
    if (isLast && !layout.more.empty()) layout.moreText = {left, layout.height, moreWidth, rowHeight};
    layout.height += rowHeight;
  }
  return layout;
}

void drawLegend(Canvas& canvas, const std::vector<LegendEntry>& entries, const LegendLayout& layout) {
  for (const LegendLayout::Place& place : layout.places) {
    const LegendEntry& entry = entries[place.entry];
    // As lines of cobwebs are.
    drawMark(canvas, place.mark, entry, isDark(canvas.inks()) ? onDarkPage(entry.colour) : entry.colour);
    canvas.setColour(canvas.inks().text);
    canvas.pen().draw(entry.text, canvas.bodyStyle(), place.text.x, place.text.centreY(), Anchor::Left,
                      place.text.width, Shorten::InMiddle);
  }
  if (layout.more.empty()) return;
  canvas.setColour(canvas.inks().faintText);
  canvas.pen().draw(layout.more, canvas.bodyStyle(), layout.moreText.x, layout.moreText.centreY(), Anchor::Left,
                    layout.moreText.width);
}

}  // namespace tarvex
