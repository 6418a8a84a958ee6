#include "plots/CobwebLayout.h"

#include <algorithm>
#include <cmath>

#include "plots/Metrics.h"
#include "plots/Ticks.h"

namespace tarvex {

namespace {

constexpr double kTallestTexts = 0.3;  // share of the chart that upright texts take on one side
// Level texts are shortened to no less than this, in ems.
constexpr double kLeastLevelRoom = 8.0;

CobwebLayout::TextRow rowOf(Metrics& metrics, std::vector<std::string> texts, double spacing, double tallest,
                            bool bold) {
  CobwebLayout::TextRow row;
  row.style = {metrics.tickStyle().size, bold};
  const double widest = metrics.pen().widest(texts, row.style);
  const double line = metrics.pen().height(row.style);
  const double room = spacing - metrics.gap();
  row.texts = std::move(texts);
  row.upright = room < std::min(widest, kLeastLevelRoom * row.style.size);
  row.height = row.upright ? std::min(widest, tallest) : line;
  row.width = row.upright ? line : room;
  if (row.upright && spacing > 0.0) row.every = static_cast<std::size_t>(std::max(1.0, std::ceil(line / spacing)));
  return row;
}

Axis axisOf(const CobwebAxis& axis, const std::pair<double, double>& visible) {
  if (visible.first < visible.second) return {"", visible.first, visible.second};
  if (axis.lower < axis.upper) return {"", axis.lower, axis.upper};
  return axisOver("", {axis.lower}, NumberForm::TwoDecimals);
}

CobwebLayout::AxisPlace placeOf(const CobwebAxis& axis, const Axis& shown, const Rect& plane) {
  CobwebLayout::AxisPlace place;
  place.map = AxisMap(shown, plane.bottom(), plane.y);
  if (!(axis.lower < axis.upper)) return place;
  // Halves: the difference of two limits may be beyond the range of a double.
  const double span = shown.upper / 2.0 - shown.lower / 2.0;
  place.shift = (axis.lower / 2.0 - shown.lower / 2.0) / span;
  place.share = (axis.upper / 2.0 - axis.lower / 2.0) / span;
  return place;
}

std::string limitText(const CobwebAxis& axis, double own, double shown, double span) {
  if (std::isnan(own)) return {};
  return axis.lower < axis.upper ? limitNumber(shown, span) : limitNumber(own, 0.0);
}

}  // namespace

std::optional<std::size_t> CobwebLayout::axisAt(double x, double y, double reach) const {
  if (axes.empty() || y < plane.y - reach || y > plane.bottom() + reach) return std::nullopt;
  const auto nearest = std::min_element(axes.begin(), axes.end(), [&](const AxisPlace& a, const AxisPlace& b) {
    return std::abs(a.x - x) < std::abs(b.x - x);
  });
  if (!(std::abs(nearest->x - x) <= reach)) return std::nullopt;
  return static_cast<std::size_t>(nearest - axes.begin());
}

CobwebLayout layOutChart(Metrics& metrics, const Rect& area, const CobwebChart& chart,
                         const std::vector<std::pair<double, double>>& visible) {
  CobwebLayout layout;
  layout.area = area;
  const std::size_t count = chart.axes.size();
  if (count == 0) return layout;
  std::vector<Axis> shown;
  std::vector<std::string> names, uppers, lowers;
  for (std::size_t i = 0; i < count; ++i) {
    const CobwebAxis& axis = chart.axes[i];
    shown.push_back(axisOf(axis, i < visible.size() ? visible[i] : std::pair(0.0, 0.0)));
    names.push_back(axis.name);
    const double span = shown[i].upper - shown[i].lower;
    uppers.push_back(limitText(axis, axis.upper, shown[i].upper, span));
    lowers.push_back(limitText(axis, axis.lower, shown[i].lower, span));
  }
  const double spacing = area.width / static_cast<double>(count);
  const double tallest = area.height * kTallestTexts / 2.0;
  layout.names = rowOf(metrics, std::move(names), spacing, tallest, true);
  layout.uppers = rowOf(metrics, std::move(uppers), spacing, tallest, false);
  layout.lowers = rowOf(metrics, std::move(lowers), spacing, tallest, false);
  const double gap = metrics.gap();
  layout.hasTexts = area.height > 6.0 * metrics.pen().height(metrics.tickStyle());
  const double above = layout.hasTexts ? layout.names.height + layout.uppers.height + 1.5 * gap : gap;
  double below = layout.hasTexts ? layout.lowers.height + gap : gap;
  if (layout.hasTexts && layout.names.every > 1) {
    const std::size_t named = (count + layout.names.every - 1) / layout.names.every;
    layout.unnamed = std::to_string(named) + " of " + std::to_string(count) +
                     " axes have room for their names: a wider picture names the others";
    const double line = metrics.pen().height(metrics.tickStyle());
    layout.unnamedTop = area.bottom() - line;
    below += line + gap / 2.0;
  }
  // Half a spacing at each side: a level text is as wide as that.
  layout.plane = {area.x + spacing / 2.0, area.y + above, area.width - spacing, area.height - above - below};
  layout.names.top = area.y;
  layout.uppers.top = area.y + layout.names.height + gap / 2.0;
  layout.lowers.top = layout.plane.bottom() + gap;
  for (std::size_t i = 0; i < count; ++i) {
    layout.axes.push_back(placeOf(chart.axes[i], shown[i], layout.plane));
    layout.axes[i].x =
        count == 1 ? layout.plane.centreX()
                   : layout.plane.x + layout.plane.width * static_cast<double>(i) / static_cast<double>(count - 1);
  }
  return layout;
}

}  // namespace tarvex
