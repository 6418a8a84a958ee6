#include "toolkit/ChartZoom.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <variant>

#include "plots/Figure.h"
#include "plots/FigureIndex.h"

namespace tarvex {
namespace {

// The least part of an axis that can be seen: below it, neighbouring values of the axis are the same number.
constexpr double kLeastZoom = 1e-9;

}  // namespace

std::optional<std::size_t> chartAt(const FigureLayout& layout, double x, double y) {
  for (std::size_t i = 0; i < layout.charts.size(); ++i)
    if (std::visit([&](const auto& chart) { return chart.area.holds(x, y); }, layout.charts[i])) return i;
  return std::nullopt;
}

std::vector<ChartZoom::Shown> ChartZoom::axesOf(const Figure& figure, const FigureLayout& layout, std::size_t chart) {
  std::vector<Shown> axes;
  if (chart >= layout.charts.size() || chart >= figure.charts.size()) return axes;
  const ChartLayout& place = layout.charts[chart];
  if (const auto* const plane = std::get_if<PlaneLayout>(&place)) {
    const auto& data = std::get<XyChart>(figure.charts[chart]);
    axes.push_back({chart, 0, plane->x, {data.x.lower, data.x.upper}, false});
    axes.push_back({chart, 1, plane->y, {data.y.lower, data.y.upper}, true});
  } else if (const auto* const bars = std::get_if<BarLayout>(&place)) {
    const auto& data = std::get<BarChart>(figure.charts[chart]);
    axes.push_back({chart, 0, bars->values, {data.values.lower, data.values.upper}, false});
  } else if (const auto* const cobweb = std::get_if<CobwebLayout>(&place)) {
    const auto& data = std::get<CobwebChart>(figure.charts[chart]);
    for (std::size_t i = 0; i < cobweb->axes.size(); ++i)
      axes.push_back({chart, i, cobweb->axes[i].map, {data.axes[i].lower, data.axes[i].upper}, true});
  }
  return axes;
}

std::vector<ChartZoom::Shown> ChartZoom::axesAt(const Figure& figure, const FigureLayout& layout, double x, double y) {
  const std::optional<std::size_t> chart = chartAt(layout, x, y);
  if (!chart) return {};
  std::vector<Shown> axes = axesOf(figure, layout, *chart);
  if (const auto* const cobweb = std::get_if<CobwebLayout>(&layout.charts[*chart])) {
    const auto nearest = cobweb->axisAt(x, y, cobweb->area.width);
    return nearest ? std::vector<Shown>{axes[*nearest]} : std::vector<Shown>();
  }
  const std::optional<AxisHit> beside = axisAt(layout, x, y, 0.0);
  if (beside && beside->chart == *chart && beside->axis < axes.size()) return {axes[beside->axis]};
  return axes;
}

bool ChartZoom::showAll() {
  const bool changed = !visible_.empty();
  visible_.clear();
  return changed;
}

bool ChartZoom::set(const Shown& axis, Span span) {
  const Span whole = axis.whole;
  if (!(whole.lower < whole.upper)) return false;  // a constant
  const double size = span.upper - span.lower;
  // Moved back within the whole, then cut.
  if (span.lower < whole.lower) span = {whole.lower, whole.lower + size};
  if (span.upper > whole.upper) span = {std::max(whole.lower, whole.upper - size), whole.upper};
  const double largest = std::max(std::abs(whole.lower), std::abs(whole.upper));
  if (!(span.upper - span.lower > kLeastZoom * std::max(largest, whole.upper - whole.lower))) return false;
  if (span.lower == axis.map.lower() && span.upper == axis.map.upper()) return false;
  std::erase_if(visible_,
                [&](const VisibleRange& range) { return range.chart == axis.chart && range.axis == axis.axis; });
  if (span.lower > whole.lower || span.upper < whole.upper)
    visible_.push_back({axis.chart, axis.axis, span.lower, span.upper});
  return true;
}

bool ChartZoom::zoomAt(const Figure& figure, const FigureLayout& layout, double x, double y, double factor) {
  bool changed = false;
  for (const Shown& axis : axesAt(figure, layout, x, y)) {
    const AxisMap& map = axis.map;
    const double place = axis.upright ? y : x;
    changed |= set(
        axis, {map.inverse(place + (map.from() - place) * factor), map.inverse(place + (map.to() - place) * factor)});
  }
  return changed;
}

bool ChartZoom::zoom(const Figure& figure, const FigureLayout& layout, std::size_t chart, double factor) {
  if (chart >= layout.charts.size() || std::holds_alternative<CobwebLayout>(layout.charts[chart])) return false;
  bool changed = false;
  for (const Shown& axis : axesOf(figure, layout, chart)) {
    const double middle = (axis.map.lower() + axis.map.upper()) / 2.0;
    const double half = (axis.map.upper() - axis.map.lower()) / 2.0 * factor;
    changed |= set(axis, {middle - half, middle + half});
  }
  return changed;
}

bool ChartZoom::showBox(const Figure& figure, const FigureLayout& layout, std::size_t chart, const Rect& box) {
  if (chart >= layout.charts.size() || !std::holds_alternative<PlaneLayout>(layout.charts[chart])) return false;
  bool changed = false;
  for (const Shown& axis : axesOf(figure, layout, chart)) {
    const double one = axis.map.inverse(axis.upright ? box.y : box.x);
    const double other = axis.map.inverse(axis.upright ? box.bottom() : box.right());
    changed |= set(axis, {std::min(one, other), std::max(one, other)});
  }
  return changed;
}

bool ChartZoom::shift(const Figure& figure, const FigureLayout& layout, std::size_t chart, double right, double up) {
  if (chart >= layout.charts.size() || std::holds_alternative<CobwebLayout>(layout.charts[chart])) return false;
  bool changed = false;
  for (const Shown& axis : axesOf(figure, layout, chart)) {
    const double by = (axis.upright ? up : right) * (axis.map.upper() - axis.map.lower());
    changed |= set(axis, {axis.map.lower() + by, axis.map.upper() + by});
  }
  return changed;
}

Figure figureWithin(const Figure& figure, const std::vector<VisibleRange>& visible) {
  Figure within = figure;
  for (const VisibleRange& range : visible) {
    if (range.chart >= within.charts.size()) continue;
    Chart& chart = within.charts[range.chart];
    const auto cut = [&](Axis& axis) {
      axis.lower = range.lower;
      axis.upper = range.upper;
    };
    if (auto* const plane = std::get_if<XyChart>(&chart)) cut(range.axis == 0 ? plane->x : plane->y);
    if (auto* const bars = std::get_if<BarChart>(&chart)) cut(bars->values);
    auto* const cobweb = std::get_if<CobwebChart>(&chart);
    if (cobweb == nullptr || range.axis >= cobweb->axes.size()) continue;
    CobwebAxis& axis = cobweb->axes[range.axis];
    for (float& position : axis.positions) {
      const double value = axis.lower + static_cast<double>(position) * (axis.upper - axis.lower);
      position = static_cast<float>((value - range.lower) / (range.upper - range.lower));
    }
    axis.lower = range.lower;
    axis.upper = range.upper;
  }
  return within;
}

}  // namespace tarvex
