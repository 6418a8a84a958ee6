#include "plots/PlaneLayout.h"

#include <algorithm>
#include <cmath>
#include <utility>
#include <variant>

#include "plots/Metrics.h"

namespace tarvex {

namespace {

constexpr double kLabelledRadius = 3.2;
constexpr double kWidestLabel = 0.4;  // of the plane

std::size_t pointsWithin(const Points& points, const AxisMap& x, const AxisMap& y) {
  std::size_t count = 0;
  const std::size_t size = std::min(points.x.size(), points.y.size());
  for (std::size_t i = 0; i < size; ++i)
    count += static_cast<std::size_t>(x.holds(points.shownX(i))) & static_cast<std::size_t>(y.holds(points.shownY(i)));
  return count;
}

void placeLabelsOf(Metrics& metrics, const LabelledPoints& points, std::size_t layer, PlaneLayout& layout) {
  const TextStyle style = metrics.tickStyle();
  const Rect& plane = layout.frame.plane;
  const double height = metrics.pen().height(style);
  std::vector<LabelToPlace> labels;
  const std::size_t first = layout.labels.size();
  for (std::size_t i = 0; i < std::min({points.x.size(), points.y.size(), points.labels.size()}); ++i) {
    if (!layout.x.holds(points.x[i]) || !layout.y.holds(points.y[i])) continue;
    const double width = metrics.pen().width(points.labels[i], style);
    labels.push_back(
        {layout.x(points.x[i]), layout.y(points.y[i]), std::min(width, plane.width * kWidestLabel), height});
    layout.labels.push_back({layer, i, labels.back().x, labels.back().y, {}});
  }
  const std::vector<PlacedLabel> placed = placeLabels(labels, layout.markRadius, plane.grown(-1.0));
  for (std::size_t i = 0; i < placed.size(); ++i) layout.labels[first + i].label = placed[i];
}

}  // namespace

// Fewer points are larger: a few are found, many don't hide each other.
double pointRadius(std::size_t points, double scale) {
  constexpr double kLargest = 2.8;
  constexpr double kSmallest = 1.0;
  return std::clamp(kLargest * std::pow(300.0 / static_cast<double>(points + 1), 0.15), kSmallest, kLargest) * scale;
}

PlaneLayout layOutChart(Metrics& metrics, const Rect& area, const XyChart& chart, Axis xAxis, Axis yAxis) {
  PlaneLayout layout;
  layout.area = area;
  layout.xAxis = std::move(xAxis);
  layout.yAxis = std::move(yAxis);
  layout.frame = layOutFrame(metrics, area, chart.title, layout.xAxis, layout.yAxis);
  const Rect& plane = layout.frame.plane;
  layout.x = AxisMap(layout.xAxis, plane.x, plane.right());
  layout.y = AxisMap(layout.yAxis, plane.bottom(), plane.y);
  layout.markRadius = kLabelledRadius * metrics.scale();
  layout.shown.resize(chart.layers.size());
  for (std::size_t i = 0; i < chart.layers.size(); ++i) {
    if (const auto* points = std::get_if<Points>(&chart.layers[i]))
      layout.shown[i] = pointsWithin(*points, layout.x, layout.y);
    if (const auto* points = std::get_if<LabelledPoints>(&chart.layers[i])) placeLabelsOf(metrics, *points, i, layout);
  }
  return layout;
}

}  // namespace tarvex
