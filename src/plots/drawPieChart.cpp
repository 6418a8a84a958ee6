#include <cairo.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <string>
#include <vector>

#include "plots/Canvas.h"
#include "plots/chartDrawing.h"

namespace tarvex {

namespace {

constexpr double kOutlineWidth = 1.0;
constexpr double kLeastRadius = 0.18;  // of the chart's smaller side
constexpr double kElbow = 1.08;        // where leader lines bend, in radii
constexpr double kWidestLabel = 0.36;  // of the chart
constexpr double kLeastName = 4.0;     // of a shortened name, in ems
constexpr double kLinePitch = 1.12;    // of labels below each other, in heights of a text

bool isDark(const Colour& colour) {
  constexpr int kDark = 3 * 12000;
  return colour.red + colour.green + colour.blue < kDark;
}

// A slice as it is drawn; angles from the top, clockwise.
struct Piece {
  const Slice* slice;
  double from, to;
  double middle() const { return (from + to) / 2.0; }
  bool onRight() const { return middle() <= M_PI; }
};

struct Label {
  const Piece* piece;
  double y;
};

std::vector<Piece> piecesOf(const std::vector<Slice>& slices) {
  double largest = 0.0;
  for (const Slice& slice : slices) {
    if (std::isfinite(slice.value)) largest = std::max(largest, slice.value);
  }
  // Parts of the largest: their sum is finite whatever the values are.
  double sum = 0.0;
  std::vector<Piece> pieces;
  for (const Slice& slice : slices) {
    if (!std::isfinite(slice.value) || !(slice.value > 0.0)) continue;
    const double from = sum;
    sum += slice.value / largest;
    pieces.push_back({&slice, from, sum});
  }
  for (Piece& piece : pieces) {
    piece.from *= 2.0 * M_PI / sum;
    piece.to *= 2.0 * M_PI / sum;
  }
  return pieces;
}

class PiePainter {
 public:
  PiePainter(Canvas& canvas, const Rect& area, const std::vector<Piece>& pieces);

  void draw();

 private:
  double widthOf(const Piece& piece) {
    return canvas_.pen().width(piece.slice->label, style_) + canvas_.pen().width(piece.slice->text, style_) + gap_;
  }
  double x(double angle, double radii) const { return centreX_ + radii * radius_ * std::sin(angle); }
  double y(double angle, double radii) const { return centreY_ - radii * radius_ * std::cos(angle); }

  void drawSlice(const Piece& piece) const;
  std::vector<Label> labelsOf(bool right) const;
  void drawLabel(const Label& label, bool right);

  Canvas& canvas_;
  Rect area_;
  const std::vector<Piece>& pieces_;
  TextStyle style_;
  double gap_, pitch_;
  double centreX_, centreY_, radius_, labelRoom_;
};

PiePainter::PiePainter(Canvas& canvas, const Rect& area, const std::vector<Piece>& pieces)
    : canvas_(canvas),
      area_(area),
      pieces_(pieces),
      style_(canvas.tickStyle()),
      gap_(canvas.gap()),
      pitch_(canvas.pen().height(style_) * kLinePitch),
      centreX_(area.centreX()),
      centreY_(area.centreY()) {
  double widest = 0.0;
  for (const Piece& piece : pieces) widest = std::max(widest, widthOf(piece));
  widest = std::min(widest, area.width * kWidestLabel);
  const double byWidth = (area.width / 2.0 - widest - 3.0 * gap_) / kElbow;
  const double byHeight = (area.height / 2.0 - pitch_) / kElbow;
  radius_ = std::max(std::min(byWidth, byHeight), std::min(area.width, area.height) * kLeastRadius);
  labelRoom_ = area.width / 2.0 - radius_ * kElbow - 2.0 * gap_;
}

void PiePainter::draw() {
  for (const Piece& piece : pieces_) drawSlice(piece);
  for (const bool right : {true, false}) {
    for (const Label& label : labelsOf(right)) drawLabel(label, right);
  }
}

void PiePainter::drawSlice(const Piece& piece) const {
  cairo_t* context = canvas_.context();
  constexpr double kQuarter = M_PI / 2.0;  // cairo counts from the right
  if (pieces_.size() > 1) cairo_move_to(context, centreX_, centreY_);
  cairo_arc(context, centreX_, centreY_, radius_, piece.from - kQuarter, piece.to - kQuarter);
  cairo_close_path(context);
  canvas_.setColour(piece.slice->colour);
  cairo_fill_preserve(context);
  // Slices of equal gray, black ones too, stay apart in print.
  canvas_.setColour(isDark(piece.slice->colour) ? kGridInk : kInk);
  canvas_.setLine(kOutlineWidth * canvas_.scale());
  cairo_stroke(context);
}

// Labels of one side from top to bottom, moved apart; where there are too many, those of the smallest slices go.
std::vector<Label> PiePainter::labelsOf(bool right) const {
  std::vector<const Piece*> shown;
  for (const Piece& piece : pieces_) {
    if (piece.onRight() == right && !(piece.slice->label.empty() && piece.slice->text.empty())) shown.push_back(&piece);
  }
  const auto most = static_cast<std::size_t>(std::max(area_.height / pitch_, 0.0));
  while (shown.size() > most) {
    shown.erase(std::min_element(shown.begin(), shown.end(),
                                 [](const Piece* a, const Piece* b) { return a->slice->value < b->slice->value; }));
  }
  std::vector<Label> labels;
  for (const Piece* piece : shown) labels.push_back({piece, y(piece->middle(), kElbow)});
  std::stable_sort(labels.begin(), labels.end(), [](const Label& a, const Label& b) { return a.y < b.y; });
  double lowest = area_.y + pitch_ / 2.0;
  for (Label& label : labels) {
    label.y = std::max(label.y, lowest);
    lowest = label.y + pitch_;
  }
  double highest = area_.bottom() - pitch_ / 2.0;
  for (auto label = labels.rbegin(); label != labels.rend(); ++label) {
    label->y = std::min(label->y, highest);
    highest = label->y - pitch_;
  }
  return labels;
}

void PiePainter::drawLabel(const Label& label, bool right) {
  cairo_t* context = canvas_.context();
  const Slice& slice = *label.piece->slice;
  const double side = right ? 1.0 : -1.0;
  const double angle = label.piece->middle();
  // All labels of a side begin on one vertical line, beyond the pie.
  const double edge = centreX_ + side * (radius_ * kElbow + gap_);
  canvas_.setColour(kFrameInk);
  canvas_.setLine(0.8);
  cairo_move_to(context, x(angle, 1.0), y(angle, 1.0));
  cairo_line_to(context, x(angle, kElbow), y(angle, kElbow));
  cairo_line_to(context, edge, label.y);
  cairo_stroke(context);

  TextPen& pen = canvas_.pen();
  const double room = labelRoom_ - gap_;
  // The value goes before a name is shortened beyond recognition.
  double text = pen.width(slice.text, style_);
  double name = pen.width(slice.label, style_);
  if (text + gap_ + std::min(name, kLeastName * style_.size) > room) text = 0.0;
  const double between = name > 0.0 && text > 0.0 ? gap_ : 0.0;
  name = std::min(name, room - text - between);
  const double start = right ? edge + gap_ / 2.0 : edge - gap_ / 2.0 - name - between - text;
  canvas_.setColour(kInk);
  pen.draw(slice.label, style_, start, label.y, Anchor::Left, name, Shorten::InMiddle);
  canvas_.setColour(kFaintInk);
  pen.draw(slice.text, style_, start + name + between, label.y, Anchor::Left, text);
}

}  // namespace

void drawChart(Canvas& canvas, const Rect& area, const PieChart& chart) {
  Rect body = area;
  const double heading = canvas.pen().height(canvas.headingStyle());
  if (!chart.title.empty() && area.height > 6.0 * heading) {
    canvas.setColour(kInk);
    canvas.pen().draw(chart.title, canvas.headingStyle(), area.centreX(), area.y + heading / 2.0, Anchor::Centre,
                      area.width);
    body.y += heading + canvas.gap();
    body.height -= heading + canvas.gap();
  }
  const std::vector<Piece> pieces = piecesOf(chart.slices);
  if (pieces.empty()) {
    canvas.setColour(kFaintInk);
    canvas.pen().draw(chart.emptyText, canvas.bodyStyle(), body.centreX(), body.centreY(), Anchor::Centre, body.width);
    return;
  }
  PiePainter(canvas, body, pieces).draw();
}

}  // namespace tarvex
