#include "plots/Legend.h"

#include <cairo.h>

#include <algorithm>
#include <cmath>
#include <string>

#include "plots/Canvas.h"

namespace tarvex {

namespace {

constexpr double kMarkWidth = 28.0;  // a dash pattern and a half
constexpr double kBoxWidth = 14.0;
constexpr double kMarkHeight = 10.0;
constexpr double kPointRadius = 3.0;
constexpr double kLineWidth = 1.8;
constexpr double kRowHeight = 1.25;  // in heights of a text

double markWidth(const LegendEntry& entry) {
  return entry.mark == LegendMark::Line ? kMarkWidth : kBoxWidth;
}

}  // namespace

Legend::Legend(Canvas& canvas, const std::vector<LegendEntry>& entries, double width, double room)
    : canvas_(canvas), width_(width), mostRows_(static_cast<std::size_t>(std::max(room, 0.0) / rowHeight())) {
  for (const LegendEntry& entry : entries) {
    if (!add(entry)) break;
  }
}

double Legend::rowHeight() const {
  return canvas_.pen().height(canvas_.bodyStyle()) * kRowHeight;
}

double Legend::height() const {
  return static_cast<double>(rows_.size()) * rowHeight();
}

bool Legend::add(const LegendEntry& entry) {
  const double gap = canvas_.gap();
  const double mark = markWidth(entry) * canvas_.scale() + gap;
  const double taken = std::min(mark + canvas_.pen().width(entry.text, canvas_.bodyStyle()), width_);
  if (rows_.empty() || rows_.back().width + 3.0 * gap + taken > width_) {
    if (rows_.size() == mostRows_) return false;
    rows_.emplace_back();
  }
  Row& row = rows_.back();
  row.width += taken + (row.items.empty() ? 0.0 : 3.0 * gap);
  row.items.push_back({entry, taken});
  return true;
}

void Legend::draw(double x, double y) const {
  const double gap = canvas_.gap();
  double middle = y + rowHeight() / 2.0;
  for (const Row& row : rows_) {
    double left = x + (width_ - row.width) / 2.0;
    for (const Item& item : row.items) {
      const double mark = markWidth(item.entry) * canvas_.scale();
      const double high = kMarkHeight * canvas_.scale();
      drawMark({left, middle - high / 2.0, mark, high}, item.entry);
      canvas_.setColour(kInk);
      canvas_.pen().draw(item.entry.text, canvas_.bodyStyle(), left + mark + gap, middle, Anchor::Left,
                         item.width - mark - gap, Shorten::InMiddle);
      left += item.width + 3.0 * gap;
    }
    middle += rowHeight();
  }
}

void Legend::drawMark(const Rect& box, const LegendEntry& entry) const {
  cairo_t* context = canvas_.context();
  switch (entry.mark) {
    case LegendMark::Box:
      canvas_.fill(box, entry.colour);
      canvas_.outline(box, outlineOf(entry.colour), 0.8);
      return;
    case LegendMark::Line:
      canvas_.setColour(entry.colour);
      canvas_.setLine(kLineWidth * canvas_.scale(), entry.style);
      cairo_move_to(context, box.x, box.centreY());
      cairo_line_to(context, box.right(), box.centreY());
      cairo_stroke(context);
      return;
    case LegendMark::Point:
      canvas_.setColour(entry.colour);
      cairo_arc(context, box.centreX(), box.centreY(), kPointRadius * canvas_.scale(), 0.0, 2.0 * M_PI);
      cairo_fill(context);
      return;
  }
}

}  // namespace tarvex
