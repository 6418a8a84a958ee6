#include <algorithm>
#include <cmath>
#include <cstddef>
#include <string>
#include <utility>
#include <vector>

#include "plots/AxisFrame.h"
#include "plots/Canvas.h"
#include "plots/chartDrawing.h"

namespace tarvex {

namespace {

constexpr double kWidestNames = 0.4;      // share of the chart
constexpr double kRowFill = 0.74;         // share of a row that its bars take
constexpr double kThickestBar = 26.0;     // before scaling
constexpr double kOutlinedFrom = 3.0;     // thinner bars would be all outline
constexpr double kSmallestText = 6.5;     // texts shrink with their rows down to this; then some are left out
constexpr double kLeastPlaneShare = 0.3;  // of the chart's width; value texts that leave less are not shown
constexpr int kFittings = 4;              // the room for texts depends on the scale, and the scale on the room

class BarPainter {
 public:
  BarPainter(Canvas& canvas, const Rect& area, const BarChart& chart);

  void draw();

 private:
  // All values finite and within the axis give a bar.
  static bool hasBar(const Bar& bar) { return std::isfinite(bar.value); }
  const Bar* barOf(std::size_t series, std::size_t category) const {
    const std::vector<Bar>& bars = chart_.series[series];
    return category < bars.size() ? &bars[category] : nullptr;
  }
  double textWidth(const Bar& bar) { return bar.text.empty() ? 0.0 : canvas_.pen().width(bar.text, barStyle_); }
  double zero() const { return std::clamp(0.0, chart_.values.lower, chart_.values.upper); }

  void layOutRows();
  void layOutColumns();
  // Insets of the scale at the left and the right, so that texts beyond the bars' ends have room in `width`.
  std::pair<double, double> insetsFor(double width);
  void drawNames();
  void drawBars(const AxisMap& map);
  void drawBar(const Bar& bar, double middle, const AxisMap& map, bool withText);

  Canvas& canvas_;
  Rect area_;
  const BarChart& chart_;
  bool heading_ = false, title_ = false, names_ = true, values_ = true;
  Rect plane_;
  double scaleLeft_ = 0.0, scaleRight_ = 0.0;  // where the axis's limits stand
  double rowHeight_ = 0.0, barHeight_ = 0.0, barPitch_ = 0.0;
  TextStyle nameStyle_, barStyle_;
  std::size_t everyName_ = 1;
  bool everyBarText_ = true;
  std::vector<Tick> ticks_;
};

BarPainter::BarPainter(Canvas& canvas, const Rect& area, const BarChart& chart)
    : canvas_(canvas), area_(area), chart_(chart), heading_(!chart.title.empty()), title_(!chart.values.title.empty()) {
  layOutRows();
  layOutColumns();
}

void BarPainter::layOutRows() {
  TextPen& pen = canvas_.pen();
  const double tick = pen.height(canvas_.tickStyle());
  const double body = pen.height(canvas_.bodyStyle());
  const bool small = area_.height < 8.0 * body;  // no room for titles
  heading_ = heading_ && !small;
  title_ = title_ && !small;
  const double top = heading_ ? pen.height(canvas_.headingStyle()) + canvas_.gap() : 1.0;
  const double bottom = tick + 1.5 * canvas_.gap() + (title_ ? body + canvas_.gap() / 2.0 : 0.0);
  plane_.y = area_.y + top;
  plane_.height = std::max(area_.height - top - bottom, 1.0);

  const auto rows = static_cast<double>(std::max<std::size_t>(chart_.categories.size(), 1));
  const auto bars = static_cast<double>(std::max<std::size_t>(chart_.series.size(), 1));
  rowHeight_ = plane_.height / rows;
  barPitch_ = std::min(rowHeight_ * kRowFill / bars, kThickestBar * canvas_.scale());
  barHeight_ = bars > 1.0 ? barPitch_ * 0.9 : barPitch_;
  const double line = tick / canvas_.tickStyle().size;  // height of a text of size 1
  const double largest = canvas_.tickStyle().size;
  nameStyle_.size = std::clamp(rowHeight_ / line, std::min(kSmallestText, largest), largest);
  everyName_ = static_cast<std::size_t>(std::max(1.0, std::ceil(line * nameStyle_.size / rowHeight_)));
  const double barRoom = std::min(barPitch_ / line * 1.15, nameStyle_.size);
  barStyle_.size = std::max(barRoom, std::min(kSmallestText, largest));
  everyBarText_ = barRoom >= barStyle_.size;
}

void BarPainter::layOutColumns() {
  const double gap = canvas_.gap();
  const double widest = canvas_.pen().widest(chart_.categories, nameStyle_);
  const double left = names_ ? std::min(widest, area_.width * kWidestNames) + gap : gap;
  plane_.x = area_.x + left;
  const double available = std::max(area_.right() - plane_.x - gap, 1.0);
  auto [before, after] = insetsFor(available);
  if (available - before - after < kLeastPlaneShare * area_.width) {
    values_ = false;
    before = after = 0.0;
  }
  plane_.width = available;
  scaleLeft_ = plane_.x + before;
  scaleRight_ = plane_.right() - after;
  ticks_ = horizontalTicks(canvas_, chart_.values, scaleRight_ - scaleLeft_);
  // Half of the last tick's text may stand out.
  if (!ticks_.empty() && !ticks_.back().text.empty()) {
    const double half = canvas_.pen().width(ticks_.back().text, canvas_.tickStyle()) / 2.0;
    const double at = AxisMap(chart_.values, scaleLeft_, scaleRight_)(ticks_.back().at);
    const double over = std::min(at + half - area_.right(), available / 2.0);
    if (over > 0.0) {
      scaleRight_ -= over;
      plane_.width -= over;
    }
  }
}

std::pair<double, double> BarPainter::insetsFor(double width) {
  double before = 0.0;
  double after = 0.0;
  if (!everyBarText_) return {before, after};
  for (int fitting = 0; fitting < kFittings; ++fitting) {
    const AxisMap map(chart_.values, before, std::max(width - after, before));
    double left = 0.0;
    double right = 0.0;
    for (std::size_t series = 0; series < chart_.series.size(); ++series) {
      for (std::size_t i = 0; i < chart_.categories.size(); ++i) {
        const Bar* bar = barOf(series, i);
        if (bar == nullptr || bar->text.empty()) continue;
        const double value = hasBar(*bar) ? bar->value : zero();
        const double room = textWidth(*bar) + 2.0 * canvas_.gap();
        if (value < 0.0) left = std::max(left, before + room - map.clamped(value));
        if (value >= 0.0) right = std::max(right, map.clamped(value) + room - (width - after));
      }
    }
    before = std::max(before, left);
    after = std::max(after, right);
  }
  return {before, after};
}

void BarPainter::draw() {
  const AxisMap map(chart_.values, scaleLeft_, scaleRight_);
  for (const Tick& tick : ticks_) {
    if (!tick.text.empty()) canvas_.vertical(map(tick.at), plane_.y, plane_.bottom(), kGridInk);
  }
  drawBars(map);
  canvas_.vertical(map(zero()), plane_.y, plane_.bottom(), kFrameInk);
  canvas_.outline(plane_, kFrameInk, 1.0);
  drawHorizontalAxis(canvas_, plane_, ticks_, map, true);
  drawNames();
  canvas_.setColour(kInk);
  TextPen& pen = canvas_.pen();
  if (heading_) {
    const double middle = area_.y + pen.height(canvas_.headingStyle()) / 2.0;
    pen.draw(chart_.title, canvas_.headingStyle(), area_.centreX(), middle, Anchor::Centre, area_.width);
  }
  if (title_) {
    const double middle = area_.bottom() - pen.height(canvas_.bodyStyle()) / 2.0;
    pen.draw(chart_.values.title, canvas_.bodyStyle(), plane_.centreX(), middle, Anchor::Centre, plane_.width);
  }
}

void BarPainter::drawNames() {
  canvas_.setColour(kInk);
  for (std::size_t i = 0; i < chart_.categories.size(); i += everyName_) {
    const double middle = plane_.y + rowHeight_ * (static_cast<double>(i) + 0.5);
    canvas_.pen().draw(chart_.categories[i], nameStyle_, plane_.x - canvas_.gap(), middle, Anchor::Right,
                       plane_.x - canvas_.gap() - area_.x, Shorten::InMiddle);
  }
}

void BarPainter::drawBars(const AxisMap& map) {
  const double all = barPitch_ * static_cast<double>(chart_.series.size());
  for (std::size_t i = 0; i < chart_.categories.size(); ++i) {
    const double top = plane_.y + rowHeight_ * (static_cast<double>(i) + 0.5) - all / 2.0;
    for (std::size_t series = 0; series < chart_.series.size(); ++series) {
      const Bar* bar = barOf(series, i);
      if (bar == nullptr) continue;
      drawBar(*bar, top + barPitch_ * (static_cast<double>(series) + 0.5), map, values_ && everyBarText_);
    }
  }
}

void BarPainter::drawBar(const Bar& bar, double middle, const AxisMap& map, bool withText) {
  const double from = map(zero());
  const double to = hasBar(bar) ? map.clamped(bar.value) : from;
  const Rect box{std::min(from, to), middle - barHeight_ / 2.0, std::abs(to - from), barHeight_};
  canvas_.fill(box, bar.colour);
  if (barHeight_ >= kOutlinedFrom && box.width > 0.0) canvas_.outline(box, outlineOf(bar.colour), 0.8);
  if (!withText) return;
  canvas_.setColour(bar.faint ? kFaintInk : kInk);
  const bool left = hasBar(bar) && bar.value < 0.0;
  canvas_.pen().draw(bar.text, barStyle_, left ? to - canvas_.gap() : to + canvas_.gap(), middle,
                     left ? Anchor::Right : Anchor::Left, left ? to - plane_.x : plane_.right() - to);
}

}  // namespace

void drawChart(Canvas& canvas, const Rect& area, const BarChart& chart) {
  BarPainter(canvas, area, chart).draw();
}

}  // namespace tarvex
