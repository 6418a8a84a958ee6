#include "plots/BarLayout.h"

#include <algorithm>
#include <cmath>
#include <string>

#include "plots/AxisFrame.h"
#include "plots/Metrics.h"

namespace tarvex {

namespace {

constexpr double kWidestNames = 0.4;      // share of the chart
constexpr double kRowFill = 0.74;         // share of a row that its bars take
constexpr double kThickestBar = 26.0;     // before scaling
constexpr double kSmallestText = 6.5;     // texts shrink with their rows down to this; then some are left out
constexpr double kLeastPlaneShare = 0.3;  // of the chart's width; value texts that leave less are not shown
constexpr int kFittings = 4;              // the room for texts depends on the scale, and the scale on the room

class BarPlacer {
 public:
  BarPlacer(Metrics& metrics, const BarChart& chart, BarLayout& layout)
      : metrics_(metrics), chart_(chart), layout_(layout) {}

  void placeRows();
  void placeColumns();

 private:
  // Insets of the scale at the left and the right, so that texts beyond the bars' ends have room in `width`.
  std::pair<double, double> insetsFor(double width);

  Metrics& metrics_;
  const BarChart& chart_;
  BarLayout& layout_;
  bool everyBarText_ = true;
};

void BarPlacer::placeRows() {
  TextPen& pen = metrics_.pen();
  const Rect& area = layout_.area;
  const double tick = pen.height(metrics_.tickStyle());
  const double body = pen.height(metrics_.bodyStyle());
  const bool small = area.height < 8.0 * body;  // no room for titles
  layout_.heading = !chart_.title.empty() && !small;
  layout_.title = !chart_.values.title.empty() && !small;
  const double top = layout_.heading ? pen.height(metrics_.headingStyle()) + metrics_.gap() : 1.0;
  const double bottom = tick + 1.5 * metrics_.gap() + (layout_.title ? body + metrics_.gap() / 2.0 : 0.0);
  layout_.plane.y = area.y + top;
  layout_.plane.height = std::max(area.height - top - bottom, 1.0);

  const auto rows = static_cast<double>(std::max<std::size_t>(chart_.categories.size(), 1));
  const auto bars = static_cast<double>(layout_.series);
  layout_.rowHeight = layout_.plane.height / rows;
  layout_.barPitch = std::min(layout_.rowHeight * kRowFill / bars, kThickestBar * metrics_.scale());
  layout_.barHeight = bars > 1.0 ? layout_.barPitch * 0.9 : layout_.barPitch;
  const double line = tick / metrics_.tickStyle().size;  // height of a text of size 1
  const double largest = metrics_.tickStyle().size;
  const double smallest = std::min(kSmallestText, largest);
  layout_.nameStyle.size = std::clamp(layout_.rowHeight / line, smallest, largest);
  layout_.everyName =
      static_cast<std::size_t>(std::max(1.0, std::ceil(line * layout_.nameStyle.size / layout_.rowHeight)));
  const double barRoom = std::min(layout_.barPitch / line * 1.15, layout_.nameStyle.size);
  layout_.barStyle.size = std::max(barRoom, smallest);
  everyBarText_ = barRoom >= layout_.barStyle.size;
}

void BarPlacer::placeColumns() {
  const double gap = metrics_.gap();
  const Rect& area = layout_.area;
  const double widest = metrics_.pen().widest(chart_.categories, layout_.nameStyle);
  Rect& plane = layout_.plane;
  plane.x = area.x + std::min(widest, area.width * kWidestNames) + gap;
  const double available = std::max(area.right() - plane.x - gap, 1.0);
  auto [before, after] = insetsFor(available);
  layout_.valueTexts = everyBarText_;
  if (available - before - after < kLeastPlaneShare * area.width) {
    layout_.valueTexts = false;
    before = after = 0.0;
  }
  plane.width = available;
  const double left = plane.x + before;
  double right = plane.right() - after;
  layout_.ticks = horizontalTicks(metrics_, layout_.axis, right - left);
  // Half of the last tick's text may stand out.
  if (!layout_.ticks.empty() && !layout_.ticks.back().text.empty()) {
    const double half = metrics_.pen().width(layout_.ticks.back().text, metrics_.tickStyle()) / 2.0;
    const double at = AxisMap(layout_.axis, left, right)(layout_.ticks.back().at);
    const double over = std::min(at + half - area.right(), available / 2.0);
    if (over > 0.0) {
      right -= over;
      plane.width -= over;
    }
  }
  layout_.values = AxisMap(layout_.axis, left, right);
}

std::pair<double, double> BarPlacer::insetsFor(double width) {
  double before = 0.0;
  double after = 0.0;
  if (!everyBarText_) return {before, after};
  for (int fitting = 0; fitting < kFittings; ++fitting) {
    const AxisMap map(layout_.axis, before, std::max(width - after, before));
    double left = 0.0;
    double right = 0.0;
    for (const std::vector<Bar>& bars : chart_.series) {
      for (std::size_t i = 0; i < std::min(chart_.categories.size(), bars.size()); ++i) {
        if (bars[i].text.empty()) continue;
        const double value = std::isfinite(bars[i].value) ? bars[i].value : layout_.zero;
        const double room = metrics_.pen().width(bars[i].text, layout_.barStyle) + 2.0 * metrics_.gap();
        if (value < 0.0) left = std::max(left, before + room - map.clamped(value));
        if (value >= 0.0) right = std::max(right, map.clamped(value) + room - (width - after));
      }
    }
    before = std::max(before, left);
    after = std::max(after, right);
  }
  return {before, after};
}

}  // namespace

Rect BarLayout::barBox(std::size_t number, std::size_t category, const Bar& bar) const {
  const double from = values.clamped(bar.from);
  const double to = std::isfinite(bar.value) ? values.clamped(bar.value) : from;
  return {std::min(from, to), middleOfBar(number, category) - barHeight / 2.0, std::abs(to - from), barHeight};
}

Rect BarLayout::nameBox(std::size_t category, double gap) const {
  return {area.x, middleOfRow(category) - rowHeight / 2.0, plane.x - gap - area.x, rowHeight};
}

BarLayout layOutChart(Metrics& metrics, const Rect& area, const BarChart& chart,
                      const std::pair<double, double>& visible) {
  BarLayout layout;
  layout.area = area;
  layout.axis = chart.values;
  if (visible.first < visible.second) {
    layout.axis.lower = visible.first;
    layout.axis.upper = visible.second;
  }
  layout.zero = std::clamp(0.0, layout.axis.lower, layout.axis.upper);
  layout.series = chart.stacked ? 1 : std::max<std::size_t>(chart.series.size(), 1);
  layout.categories = chart.categories.size();
  BarPlacer placer(metrics, chart, layout);
  placer.placeRows();
  placer.placeColumns();
  return layout;
}

}  // namespace tarvex
