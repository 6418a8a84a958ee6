#include <cairo.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <string>
#include <utility>
#include <vector>

#include "plots/Canvas.h"
#include "plots/PixelLayer.h"
#include "plots/Ticks.h"
#include "plots/chartDrawing.h"

namespace tarvex {

namespace {

// More lines, or more points on them, are painted as pixels.
constexpr std::size_t kMostSingleLines = 300;
constexpr std::size_t kMostSinglePoints = 20000;
constexpr double kWidestLine = 1.0;
constexpr double kThinnestLine = 0.55;
constexpr double kLeastOpacity = 0.3;
constexpr double kAxisWidth = 1.2;
constexpr double kFilterWidth = 4.0;
constexpr double kMarkLength = 4.0;    // of axis marks, on each side
constexpr double kCrowding = 0.2;      // share of the distance of axes that marks and lines of one take at most
constexpr int kMarkParts = 4;          // an axis is marked at its quarters
constexpr double kTallestTexts = 0.3;  // share of the chart that upright texts take on one side

// Level texts are shortened to no less than this, in ems.
constexpr double kLeastLevelRoom = 8.0;

// One row of texts, one of each axis: level where axes are far apart, shortened if need be, else upright; where even
// these are closer than a line of text, only some are shown.
class AxisTexts {
 public:
  AxisTexts(Canvas& canvas, std::vector<std::string> texts, double spacing, double tallest, bool bold)
      : canvas_(canvas), texts_(std::move(texts)), style_{canvas.tickStyle().size, bold} {
    const double widest = canvas.pen().widest(texts_, style_);
    const double line = canvas.pen().height(style_);
    room_ = spacing - canvas.gap();
    upright_ = room_ < std::min(widest, kLeastLevelRoom * style_.size);
    height_ = upright_ ? std::min(widest, tallest) : line;
    if (upright_ && spacing > 0.0) every_ = static_cast<std::size_t>(std::max(1.0, std::ceil(line / spacing)));
  }

  double height() const { return height_; }

  // The text of the axis at `x`, in a row that begins at `top`; `above` texts stand on the row's lower edge.
  void draw(std::size_t axis, double x, double top, bool above) const {
    if (axis % every_ != 0) return;
    canvas_.setColour(kInk);
    if (!upright_) {
      canvas_.pen().draw(texts_[axis], style_, x, top + height_ / 2.0, Anchor::Centre, room_, Shorten::InMiddle);
    } else if (above) {
      canvas_.pen().drawUpward(texts_[axis], style_, x, top + height_, Anchor::Left, height_);
    } else {
      canvas_.pen().drawUpward(texts_[axis], style_, x, top, Anchor::Right, height_);
    }
  }

 private:
  Canvas& canvas_;
  std::vector<std::string> texts_;
  TextStyle style_;
  bool upright_ = false;
  double height_ = 0.0;
  double room_ = 0.0;
  std::size_t every_ = 1;
};

class CobwebPainter {
 public:
  CobwebPainter(Canvas& canvas, const Rect& plane, const CobwebChart& chart)
      : canvas_(canvas), plane_(plane), chart_(chart) {}

  double axisX(std::size_t axis) const {
    const std::size_t gaps = chart_.axes.size() - 1;
    if (gaps == 0) return plane_.centreX();
    return plane_.x + plane_.width * static_cast<double>(axis) / static_cast<double>(gaps);
  }

  void drawRuns() const;
  void drawAxis(std::size_t axis) const;

 private:
  std::size_t runs() const { return chart_.positions.size() / chart_.axes.size(); }
  double levelOf(std::size_t run, std::size_t axis) const {
    return plane_.bottom() - chart_.positions[run * chart_.axes.size() + axis] * plane_.height;
  }
  Colour colourOf(std::size_t run) const {
    const std::size_t place = run < chart_.colours.size() ? chart_.colours[run] : chart_.palette.size();
    return place < chart_.palette.size() ? chart_.palette[place] : kFrameInk;
  }
  double heightOf(const CobwebAxis& axis, double value) const;
  void drawLines() const;
  void paintLines() const;

  Canvas& canvas_;
  Rect plane_;
  const CobwebChart& chart_;
};

void CobwebPainter::drawRuns() const {
  if (runs() > kMostSingleLines || chart_.positions.size() > kMostSinglePoints) {
    paintLines();
  } else {
    drawLines();
  }
}

void CobwebPainter::drawLines() const {
  std::vector<std::pair<double, double>> points(chart_.axes.size());
  for (std::size_t run = 0; run < runs(); ++run) {
    for (std::size_t axis = 0; axis < points.size(); ++axis) points[axis] = {axisX(axis), levelOf(run, axis)};
    canvas_.setColour(colourOf(run));
    strokePolyline(canvas_, plane_, points, kWidestLine * canvas_.scale(), LineStyle::Solid);
  }
}

void CobwebPainter::paintLines() const {
  // The more lines, the thinner and the more translucent.
  const double crowd = static_cast<double>(kMostSingleLines) / static_cast<double>(runs());
  const double width = std::clamp(kWidestLine * std::pow(crowd, 0.2), kThinnestLine, kWidestLine);
  const double opacity = std::clamp(std::pow(crowd, 0.3), kLeastOpacity, 1.0);
  PixelLayer layer(canvas_, plane_.grown(1.0));
  for (std::size_t run = 0; run < runs(); ++run) {
    const Colour colour = colourOf(run);
    for (std::size_t axis = 1; axis < chart_.axes.size(); ++axis) {
      double x0 = axisX(axis - 1);
      double x1 = axisX(axis);
      double y0 = levelOf(run, axis - 1);
      double y1 = levelOf(run, axis);
      if (clipLine(plane_, x0, y0, x1, y1)) layer.addLine(x0, y0, x1, y1, width, colour, opacity);
    }
  }
  layer.paint();
}

double CobwebPainter::heightOf(const CobwebAxis& axis, double value) const {
  const double part = (value / 2.0 - axis.lower / 2.0) / (axis.upper / 2.0 - axis.lower / 2.0);
  return std::isnan(part) ? plane_.centreY() : plane_.bottom() - std::clamp(part, 0.0, 1.0) * plane_.height;
}

void CobwebPainter::drawAxis(std::size_t number) const {
  const CobwebAxis& axis = chart_.axes[number];
  const double x = axisX(number);
  const double most = plane_.width / static_cast<double>(chart_.axes.size()) * kCrowding;
  const double width = std::min(kAxisWidth, most);
  const double length = std::min(kMarkLength * canvas_.scale(), most);
  canvas_.vertical(x, plane_.y, plane_.bottom(), kInk, width);
  for (int part = 0; part <= kMarkParts; ++part) {
    const double y = plane_.y + plane_.height * part / kMarkParts;
    canvas_.horizontal(x - length, x + length, y, chart_.markColour, kAxisWidth);
  }
  if (!axis.filter || !std::isfinite(axis.filter->first) || !std::isfinite(axis.filter->second)) return;
  const double foot = heightOf(axis, axis.filter->first);
  const double top = heightOf(axis, axis.filter->second);
  const double filterWidth = std::min(kFilterWidth * canvas_.scale(), most);
  canvas_.vertical(x, top, foot, chart_.markColour, filterWidth);
  for (const double y : {top, foot}) {
    canvas_.horizontal(x - 2.0 * length, x + 2.0 * length, y, chart_.markColour, filterWidth / 2.0);
  }
}

template <class TextOf>
std::vector<std::string> textsOf(const CobwebChart& chart, TextOf textOf) {
  std::vector<std::string> texts;
  for (const CobwebAxis& axis : chart.axes) texts.push_back(textOf(axis));
  return texts;
}

}  // namespace

void drawChart(Canvas& canvas, const Rect& area, const CobwebChart& chart) {
  if (chart.axes.empty()) return;
  const auto count = static_cast<double>(chart.axes.size());
  const double spacing = area.width / count;
  const double tallest = area.height * kTallestTexts / 2.0;
  const AxisTexts names(canvas, textsOf(chart, [](const CobwebAxis& axis) { return axis.name; }), spacing, tallest,
                        true);
  const AxisTexts uppers(canvas,
                         textsOf(chart, [&](const CobwebAxis& axis) { return formNumber(axis.upper, chart.form); }),
                         spacing, tallest, false);
  const AxisTexts lowers(canvas,
                         textsOf(chart, [&](const CobwebAxis& axis) { return formNumber(axis.lower, chart.form); }),
                         spacing, tallest, false);
  const double gap = canvas.gap();
  const bool hasTexts = area.height > 6.0 * canvas.pen().height(canvas.tickStyle());
  const double above = hasTexts ? names.height() + uppers.height() + 1.5 * gap : gap;
  const double below = hasTexts ? lowers.height() + gap : gap;
  // Half a spacing at each side: a level text is as wide as that.
  const Rect plane{area.x + spacing / 2.0, area.y + above, area.width - spacing, area.height - above - below};
  const CobwebPainter painter(canvas, plane, chart);
  painter.drawRuns();
  for (std::size_t axis = 0; axis < chart.axes.size(); ++axis) {
    painter.drawAxis(axis);
    if (!hasTexts) continue;
    names.draw(axis, painter.axisX(axis), area.y, true);
    uppers.draw(axis, painter.axisX(axis), area.y + names.height() + gap / 2.0, true);
    lowers.draw(axis, painter.axisX(axis), plane.bottom() + gap, false);
  }
}

}  // namespace tarvex
