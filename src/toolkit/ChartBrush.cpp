#include "toolkit/ChartBrush.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "plots/Figure.h"

namespace tarvex {
namespace {

constexpr double kLeastPart = 0.01;  // of an axis, that a range made by keyboard has

// Moved back into the axis, with its length.
BrushRange within(const CobwebAxis& axis, BrushRange range) {
  const double length = range.upper - range.lower;
  range.lower = std::clamp(range.lower, axis.lower, std::max(axis.lower, axis.upper - length));
  range.upper = std::min(range.lower + length, axis.upper);
  return range;
}

}  // namespace

void ChartBrush::set(std::vector<BrushRange> ranges) {
  ranges_ = std::move(ranges);
}

const BrushRange* ChartBrush::on(std::size_t axis) const {
  const auto found =
      std::find_if(ranges_.begin(), ranges_.end(), [&](const BrushRange& range) { return range.axis == axis; });
  return found == ranges_.end() ? nullptr : &*found;
}

bool ChartBrush::clear(std::size_t axis) {
  return std::erase_if(ranges_, [&](const BrushRange& range) { return range.axis == axis; }) > 0;
}

bool ChartBrush::put(BrushRange range) {
  const BrushRange* const old = on(range.axis);
  if (old != nullptr && *old == range) return false;
  clear(range.axis);
  ranges_.push_back(range);
  return true;
}

void ChartBrush::begin(const CobwebChart& chart, std::size_t axis, double value) {
  axis_ = axis;
  start_ = std::clamp(value, chart.axes[axis].lower, chart.axes[axis].upper);
  moving_.reset();
  const BrushRange* const range = on(axis);
  if (range != nullptr && value >= range->lower && value <= range->upper) moving_ = *range;
}

bool ChartBrush::dragTo(const CobwebChart& chart, double value) {
  if (axis_ >= chart.axes.size()) return false;
  const CobwebAxis& axis = chart.axes[axis_];
  if (!(axis.lower < axis.upper)) return false;
  if (moving_) return put(within(axis, {axis_, moving_->lower + (value - start_), moving_->upper + (value - start_)}));
  value = std::clamp(value, axis.lower, axis.upper);
  return value != start_ && put({axis_, std::min(start_, value), std::max(start_, value)});
}

bool ChartBrush::move(const CobwebChart& chart, std::size_t axis, double by) {
  const BrushRange* const range = on(axis);
  if (range == nullptr || axis >= chart.axes.size() || std::isnan(chart.axes[axis].lower)) return false;
  const double step = by * (chart.axes[axis].upper - chart.axes[axis].lower);
  return put(within(chart.axes[axis], {axis, range->lower + step, range->upper + step}));
}

bool ChartBrush::widen(const CobwebChart& chart, std::size_t axis, double by) {
  if (axis >= chart.axes.size() || !(chart.axes[axis].lower < chart.axes[axis].upper)) return false;
  const CobwebAxis& whole = chart.axes[axis];
  const double length = whole.upper - whole.lower;
  const BrushRange* const old = on(axis);
  BrushRange range = old != nullptr ? *old : BrushRange{axis, whole.lower, whole.upper};
  range.lower = std::max(whole.lower, range.lower - by * length);
  range.upper = std::min(whole.upper, range.upper + by * length);
  if (range.upper - range.lower < kLeastPart * length) return false;
  if (range.lower <= whole.lower && range.upper >= whole.upper) return clear(axis);
  return put(range);
}

std::int32_t ChartBrush::mark(const CobwebChart& chart, std::vector<std::uint8_t>& dropped) const {
  const std::size_t runs = chart.runCount();
  dropped.assign(runs, 0);
  for (const BrushRange& range : ranges_) {
    if (range.axis >= chart.axes.size()) continue;
    const CobwebAxis& axis = chart.axes[range.axis];
    const double length = axis.upper - axis.lower;
    for (std::size_t run = 0; run < runs; ++run) {
      const double value = axis.lower + static_cast<double>(axis.positions[run]) * length;
      if (!(value >= range.lower && value <= range.upper)) dropped[run] = 1;
    }
  }
  return static_cast<std::int32_t>(std::count(dropped.begin(), dropped.end(), 0));
}

}  // namespace tarvex
