#include "plots/PieLayout.h"

#include <algorithm>
#include <cmath>

#include "plots/Metrics.h"

namespace tarvex {

namespace {

constexpr double kLeastRadius = 0.18;       // of the chart's smaller side
constexpr double kWidestSliceLabel = 0.36;  // of the chart
constexpr double kLinePitch = 1.12;         // of labels below each other, in heights of a text

std::vector<PieLayout::Piece> piecesOf(const std::vector<Slice>& slices) {
  double largest = 0.0;
  for (const Slice& slice : slices)
    if (std::isfinite(slice.value)) largest = std::max(largest, slice.value);
  // Parts of the largest: their sum is finite whatever the values are.
  double sum = 0.0;
  std::vector<PieLayout::Piece> pieces;
  for (std::size_t i = 0; i < slices.size(); ++i) {
    if (!std::isfinite(slices[i].value) || !(slices[i].value > 0.0)) continue;
    const double from = sum;
    sum += slices[i].value / largest;
    pieces.push_back({i, from, sum});
  }
  for (PieLayout::Piece& piece : pieces) {
    piece.from *= 2.0 * M_PI / sum;
    piece.to *= 2.0 * M_PI / sum;
  }
  return pieces;
}

// Labels of one side from top to bottom, moved apart; where there are too many, those of the smallest slices go.
void placeLabels(const PieChart& chart, bool right, double pitch, double gap, PieLayout& layout) {
  std::vector<std::size_t> shown;
  const auto valueOf = [&](std::size_t piece) { return chart.slices[layout.pieces[piece].slice].value; };
  for (std::size_t i = 0; i < layout.pieces.size(); ++i) {
    const Slice& slice = chart.slices[layout.pieces[i].slice];
    const bool isRight = layout.pieces[i].middle() <= M_PI;
    if (isRight == right && !(slice.label.empty() && slice.text.empty())) shown.push_back(i);
  }
  const Rect& body = layout.body;
  const auto most = static_cast<std::size_t>(std::max(body.height / pitch, 0.0));
  while (shown.size() > most)
    shown.erase(std::min_element(shown.begin(), shown.end(),
                                 [&](std::size_t a, std::size_t b) { return valueOf(a) < valueOf(b); }));
  const std::size_t first = layout.labels.size();
  const double edge = layout.labelEdge(right, gap);
  const double left = right ? edge + gap / 2.0 : edge - gap / 2.0 - layout.labelRoom;
  for (const std::size_t piece : shown) {
    const double middle = layout.y(layout.pieces[piece].middle(), PieLayout::kElbow);
    layout.labels.push_back({piece, right, {left, middle, layout.labelRoom, pitch}});
  }
  const auto begin = layout.labels.begin() + static_cast<std::ptrdiff_t>(first);
  std::stable_sort(begin, layout.labels.end(), [](const auto& a, const auto& b) { return a.box.y < b.box.y; });
  double lowest = body.y + pitch / 2.0;
  for (auto label = begin; label != layout.labels.end(); ++label) {
    label->box.y = std::max(label->box.y, lowest);
    lowest = label->box.y + pitch;
  }
  double highest = body.bottom() - pitch / 2.0;
  for (auto label = layout.labels.end(); label != begin;) {
    --label;
    label->box.y = std::min(label->box.y, highest);
    highest = label->box.y - pitch;
    label->box.y -= pitch / 2.0;
  }
}

}  // namespace

double PieLayout::x(double angle, double radii) const {
  return centreX + radii * radius * std::sin(angle);
}

double PieLayout::y(double angle, double radii) const {
  return centreY - radii * radius * std::cos(angle);
}

double PieLayout::labelEdge(bool right, double gap) const {
  return centreX + (right ? 1.0 : -1.0) * (radius * kElbow + gap);
}

std::optional<std::size_t> PieLayout::sliceAt(double atX, double atY) const {
  const double dx = atX - centreX;
  const double dy = atY - centreY;
  if (!(std::hypot(dx, dy) <= radius)) return std::nullopt;
  double angle = std::atan2(dx, -dy);
  if (angle < 0.0) angle += 2.0 * M_PI;
  for (const Piece& piece : pieces)
    if (angle <= piece.to) return piece.slice;
  // The last one ends at the top, but for rounding.
  return pieces.empty() ? std::nullopt : std::optional(pieces.back().slice);
}

PieLayout layOutChart(Metrics& metrics, const Rect& area, const PieChart& chart) {
  PieLayout layout;
  layout.area = layout.body = area;
  const double tall = metrics.pen().height(metrics.headingStyle());
  layout.heading = !chart.title.empty() && area.height > 6.0 * tall;
  Rect& body = layout.body;
  if (layout.heading) {
    body.y += tall + metrics.gap();
    body.height -= tall + metrics.gap();
  }
  layout.pieces = piecesOf(chart.slices);
  const TextStyle style = metrics.tickStyle();
  const double gap = metrics.gap();
  const double pitch = metrics.pen().height(style) * kLinePitch;
  double widest = 0.0;
  for (const PieLayout::Piece& piece : layout.pieces) {
    const Slice& slice = chart.slices[piece.slice];
    widest = std::max(widest, metrics.pen().width(slice.label, style) + metrics.pen().width(slice.text, style) + gap);
  }
  widest = std::min(widest, body.width * kWidestSliceLabel);
  const double byWidth = (body.width / 2.0 - widest - 3.0 * gap) / PieLayout::kElbow;
  const double byHeight = (body.height / 2.0 - pitch) / PieLayout::kElbow;
  layout.centreX = body.centreX();
  layout.centreY = body.centreY();
  layout.radius = std::max(std::min(byWidth, byHeight), std::min(body.width, body.height) * kLeastRadius);
  layout.labelRoom = body.width / 2.0 - layout.radius * PieLayout::kElbow - 3.0 * gap;
  for (const bool right : {true, false}) placeLabels(chart, right, pitch, gap, layout);
  return layout;
}

}  // namespace tarvex
