#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

#include "plots/Canvas.h"
#include "plots/ColourSet.h"
#include "plots/LineCounts.h"
#include "plots/PixelLayer.h"
#include "plots/chartDrawing.h"

namespace tarvex {

namespace {

constexpr double kWidestLine = 1.0;
constexpr double kThinnestLine = 0.55;
constexpr double kLeastOpacity = 0.4;   // of a line alone
constexpr double kMarkedRunLine = 2.2;  // of a run that stands out
constexpr double kAxisWidth = 1.2;
constexpr double kFilterWidth = 4.0;
constexpr double kMarkLength = 4.0;           // of axis marks, on each side
constexpr double kCrowding = 0.2;             // share of the distance of axes that marks and lines of one take at most
constexpr int kMarkParts = 4;                 // an axis is marked at its quarters
constexpr std::size_t kLinesAtOnce = 500;     // inked between two reports
constexpr std::size_t kRunsAtOnce = 1 << 19;  // looked at between two reports
constexpr double kInkedShare = 0.9;           // of the time until they stand in a file
constexpr double kPlacingShare = 0.2;         // of the time until lines are painted, roughly

// More lines, or more points on them, are painted as pixels: a stroke takes some 0.1 ms on a surface of pixels, and in
// a file its size.
struct SingleLines {
  std::size_t lines, points;
};
SingleLines limitsOf(Surface surface) {
  return surface == Surface::Screen ? SingleLines{60, 1000} : SingleLines{300, 20000};
}

class CobwebPainter {
 public:
  CobwebPainter(Canvas& canvas, const CobwebChart& chart, const CobwebLayout& layout)
      : canvas_(canvas), chart_(chart), layout_(layout) {}

  bool drawRuns(bool dropped, const Progress& progress) const;
  void drawAxes() const;
  void drawOverlay() const;

 private:
  using Place = std::pair<double, double>;
  struct Look {
    double width, opacity;
  };

  std::size_t classOf(std::size_t run, bool dropped) const;
  Colour colourOf(std::size_t run, bool dropped) const;
  Colour onPage(const Colour& colour) const { return isDark(canvas_.inks()) ? onDarkPage(colour) : colour; }
  std::vector<Place> polyline(std::size_t run) const;
  // How far a mark of the wanted size may go.
  double uncrowded(double size) const {
    return std::min(size, layout_.plane.width / static_cast<double>(chart_.axes.size()) * kCrowding);
  }
  bool paintLines(const std::vector<std::size_t>& runs, bool dropped, const Look& look, const Progress& progress) const;
  bool inkLines(const std::vector<std::size_t>& runs, bool dropped, double width, const Progress& progress) const;
  void drawFilter(std::size_t axis) const;

  Canvas& canvas_;
  const CobwebChart& chart_;
  const CobwebLayout& layout_;
};

// The place in the palette, behind which stand the colours of dropped runs and of those without a class.
std::size_t CobwebPainter::classOf(std::size_t run, bool dropped) const {
  const std::size_t none = chart_.palette.size();
  if (dropped) return none;
  return run < chart_.colours.size() && chart_.colours[run] < none ? chart_.colours[run] : none + 1;
}

Colour CobwebPainter::colourOf(std::size_t run, bool dropped) const {
  const std::size_t place = classOf(run, dropped);
  if (place < chart_.palette.size()) return onPage(chart_.palette[place]);
  return dropped ? chart_.runs.droppedColour : canvas_.inks().frame;
}

std::vector<CobwebPainter::Place> CobwebPainter::polyline(std::size_t run) const {
  std::vector<Place> points;
  for (std::size_t axis = 0; axis < chart_.axes.size(); ++axis)
    points.emplace_back(layout_.axes[axis].x, layout_.levelOf(axis, chart_.axes[axis].positions[run]));
  return points;
}

bool CobwebPainter::drawRuns(bool dropped, const Progress& progress) const {
  if (dropped && !chart_.runs.showDropped) return true;
  std::vector<std::size_t> runs;
  std::size_t shown = 0;  // in both layers: they look alike
  const std::size_t count = chart_.runCount();
  const Progress choosing = progress.part(0.0, 0.0);
  for (std::size_t run = 0; run < count; ++run) {
    if (run % kRunsAtOnce == 0 && !choosing.report(0.0)) return false;
    const bool isDropped = chart_.runs.isDropped(run);
    if (isDropped == dropped) runs.push_back(run);
    if (!isDropped || chart_.runs.showDropped) ++shown;
  }
  const SingleLines limits = limitsOf(canvas_.surface());
  if (shown <= limits.lines && shown * chart_.axes.size() <= limits.points) {
    for (const std::size_t run : runs) {
      canvas_.setColour(colourOf(run, dropped));
      strokePolyline(canvas_, layout_.plane, polyline(run), kWidestLine * canvas_.scale(), LineStyle::Solid);
    }
    return progress.report(1.0);
  }
  if (runs.empty()) return true;
  // The more lines, the thinner and the more translucent.
  const double crowd = static_cast<double>(limitsOf(Surface::ImageFile).lines) / static_cast<double>(shown);
  const double width = std::clamp(kWidestLine * std::pow(crowd, 0.2), kThinnestLine, kWidestLine);
  // Beyond, the lines of a file would hide each other, as the last one drawn lies on top: there, too, colours tell how
  // many lines cover a place.
  constexpr std::size_t kMostInked = 3000;
  if (canvas_.isVector() && shown <= kMostInked) return inkLines(runs, dropped, width, progress);
  const double opacity = std::clamp(std::pow(crowd, 0.3), kLeastOpacity, 1.0);
  return paintLines(runs, dropped, {width, opacity}, progress);
}

bool CobwebPainter::paintLines(const std::vector<std::size_t>& runs, bool dropped, const Look& look,
                               const Progress& progress) const {
  PixelLayer layer(canvas_, layout_.plane.grown(1.0), progress);
  std::vector<LineCounts::Axis> axes;
  const Progress placing = progress.part(0.0, kPlacingShare);
  for (std::size_t axis = 0; axis < chart_.axes.size(); ++axis) {
    if (!placing.report(axis, chart_.axes.size())) return false;
    LineCounts::Axis& into = axes.emplace_back(LineCounts::Axis{layer.pixelX(layout_.axes[axis].x), {}});
    into.rows.resize(runs.size());
    const auto foot = static_cast<float>(layer.pixelY(layout_.levelOf(axis, 0.0F)));
    const auto rise = static_cast<float>(layer.pixelY(layout_.levelOf(axis, 1.0F))) - foot;
    const std::vector<float>& positions = chart_.axes[axis].positions;
    for (std::size_t i = 0; i < runs.size(); ++i) into.rows[i] = foot + rise * positions[runs[i]];
  }
  std::vector<std::uint8_t> classes;
  classes.reserve(runs.size());
  for (const std::size_t run : runs) classes.push_back(static_cast<std::uint8_t>(classOf(run, dropped)));
  if (!placing.report(1.0)) return false;
  std::vector<Colour> palette;
  for (const Colour& colour : chart_.palette) palette.push_back(onPage(colour));
  palette.push_back(chart_.runs.droppedColour);
  palette.push_back(canvas_.inks().frame);
  LineCounts lines(layer.width(), layer.height(), look.width * layer.perUnit());
  if (!lines.count(axes, classes, palette, progress.part(kPlacingShare, 1.0))) return false;
  if (!layer.cover(lines, look.opacity, progress.part(1.0, 1.0))) return false;
  return layer.paint(progress.part(1.0, 1.0));
}

bool CobwebPainter::inkLines(const std::vector<std::size_t>& runs, bool dropped, double width,
                             const Progress& progress) const {
  PixelLayer layer(canvas_, layout_.plane.grown(1.0), progress);
  const Progress inking = progress.part(0.0, kInkedShare);
  for (std::size_t i = 0; i < runs.size(); ++i) {
    if (i % kLinesAtOnce == 0 && !inking.report(i, runs.size())) return false;
    const Colour colour = colourOf(runs[i], dropped);
    const std::vector<Place> points = polyline(runs[i]);
    for (std::size_t axis = 1; axis < points.size(); ++axis) {
      auto [x0, y0] = points[axis - 1];
      auto [x1, y1] = points[axis];
      if (clipLine(layout_.plane, x0, y0, x1, y1)) layer.addLine(x0, y0, x1, y1, width, colour);
    }
  }
  return layer.paint(progress.part(kInkedShare, 1.0));
}

void CobwebPainter::drawAxes() const {
  const Rect& plane = layout_.plane;
  const double length = uncrowded(kMarkLength * canvas_.scale());
  const auto drawText = [&](const CobwebLayout::TextRow& row, std::size_t axis, bool above) {
    if (axis % row.every != 0) return;
    const Rect box = row.box(layout_.axes[axis].x);
    if (!row.upright)
      canvas_.pen().draw(row.texts[axis], row.style, box.centreX(), box.centreY(), Anchor::Centre, box.width,
                         Shorten::InMiddle);
    else
      canvas_.pen().drawUpward(row.texts[axis], row.style, box.centreX(), above ? box.bottom() : box.y,
                               above ? Anchor::Left : Anchor::Right, box.height);
  };
  for (std::size_t axis = 0; axis < layout_.axes.size(); ++axis) {
    const double x = layout_.axes[axis].x;
    canvas_.vertical(x, plane.y, plane.bottom(), canvas_.inks().text, uncrowded(kAxisWidth));
    for (int part = 0; part <= kMarkParts; ++part) {
      const double y = plane.y + plane.height * part / kMarkParts;
      canvas_.horizontal(x - length, x + length, y, chart_.markColour, kAxisWidth);
    }
    if (!layout_.hasTexts) continue;
    canvas_.setColour(canvas_.inks().text);
    drawText(layout_.names, axis, true);
    drawText(layout_.uppers, axis, true);
    drawText(layout_.lowers, axis, false);
  }
  if (layout_.unnamed.empty()) return;
  canvas_.setColour(canvas_.inks().faintText);
  canvas_.pen().draw(layout_.unnamed, canvas_.tickStyle(), layout_.area.centreX(),
                     layout_.unnamedTop + canvas_.pen().height(canvas_.tickStyle()) / 2.0, Anchor::Centre,
                     layout_.area.width, Shorten::InMiddle);
}

void CobwebPainter::drawFilter(std::size_t number) const {
  const auto& filter = chart_.axes[number].filter;
  if (!filter || !std::isfinite(filter->first) || !std::isfinite(filter->second)) return;
  const CobwebLayout::AxisPlace& axis = layout_.axes[number];
  const double foot = axis.map.clamped(filter->first);
  const double top = axis.map.clamped(filter->second);
  const double length = uncrowded(kMarkLength * canvas_.scale());
  const double width = uncrowded(kFilterWidth * canvas_.scale());
  canvas_.vertical(axis.x, top, foot, chart_.markColour, width);
  for (const double y : {top, foot})
    canvas_.horizontal(axis.x - 2.0 * length, axis.x + 2.0 * length, y, chart_.markColour, width / 2.0);
}

void CobwebPainter::drawOverlay() const {
  for (std::size_t axis = 0; axis < layout_.axes.size(); ++axis) drawFilter(axis);
  if (!canvas_.marksAny()) return;
  canvas_.setColour(canvas_.inks().text);
  const std::size_t count = chart_.runCount();
  for (std::size_t run = 0; run < count; ++run)
    if (canvas_.isMarked(chart_.runs.numberOf(run)))
      strokePolyline(canvas_, layout_.plane, polyline(run), kMarkedRunLine * canvas_.scale(), LineStyle::Solid);
}

}  // namespace

bool drawChart(Canvas& canvas, FigureLayer layer, const CobwebChart& chart, const CobwebLayout& layout,
               const Progress& progress) {
  if (layout.axes.empty()) return true;
  const CobwebPainter painter(canvas, chart, layout);
  switch (layer) {
    case FigureLayer::Frame:
      return true;
    case FigureLayer::Dropped:
      return painter.drawRuns(true, progress);
    case FigureLayer::Kept:
      return painter.drawRuns(false, progress);
    case FigureLayer::Front:
      painter.drawAxes();
      return true;
    case FigureLayer::Overlay:
      painter.drawOverlay();
      return true;
  }
  return true;
}

}  // namespace tarvex
