#include "panels/plots/PCobwebs.h"

#include <QCheckBox>
#include <algorithm>
#include <utility>

#include "app/RunController.h"
#include "panels/plots/PCobSelect.h"
#include "panels/vels/ResultDesk.h"
#include "plots/runPlots.h"
#include "toolkit/ChartView.h"

namespace tarvex {

PCobwebs::PCobwebs(ResultDesk& desk, std::shared_ptr<Selection> selection, std::vector<std::size_t> columns)
    : RunPanel(desk, std::move(selection), "PCobwebs", "Cobwebs", "Cobwebs plot"),
      columns_(std::move(columns)),
      slider_(*this, desk, [this](std::int32_t) { moveInTime(); }) {
  redraw_.setSingleShot(true);
  redraw_.setInterval(kRedrawMilliseconds);
  connect(&redraw_, &QTimer::timeout, this, [this] { draw(); });
  auto* const chart = gadget<ChartView>("TeBackground");
  chart->setEmptyText("There are no runs, or the drawing was stopped.");
  // The selection has the values, of which the chart knows rounded places alone; other plots may filter, too.
  chart->markRuns = [this](const std::vector<BrushRange>& ranges, std::vector<std::uint8_t>& dropped) {
    brush(ranges);
    dropped = this->selection().dropped();
    return this->selection().keptCount();
  };
  connect(chart, &ChartView::pointed, this, [this](const QString& text) { say(text); });
  start({{"filters", [this] { filters(); }},
         {"showDropped", [this, chart] { chart->setShowDropped(gadget<QCheckBox>("TShowDropped")->isChecked()); }},
         {"colours", [this] { draw(); }},
         {"saveImg", [chart] { chart->exportPicture(); }},
         {"close", [this] { hide(); }}});
  chart->setFocus();  // Ctrl+C copies the picture
  draw();
}

void PCobwebs::draw() {
  RunTable shown;
  shown.runs = table().runs;
  for (const std::size_t column : columns_) shown.columns.push_back(table().columns[column]);
  const ColourSet colours = gadget<QCheckBox>("TSystemColours")->isChecked() ? ColourSet::System : ColourSet::Distinct;
  Figure figure;
  const auto work = [&](const Progress& progress, std::string&) {
    figure = cobwebPlot(shown, {}, true, colours, progress);
    return true;
  };
  // After a stop there is no picture, and the chart says so.
  if (desk().controller().perform("Drawing a cobweb", shown.runs, work) == Outcome::Busy) return redraw_.start();
  gadget<ChartView>("TeBackground")->show(std::move(figure));
  showSelection();
}

// A filter goes with its axis, at the same values, unless the column there has one of its own.
void PCobwebs::moveInTime() {
  if (!isVisible()) return;
  const std::vector<std::size_t> before = std::exchange(columns_, slider_.allAtPicked(columns_));
  slider_.setShown(columns_);
  brushing_ = true;  // the picture still has the axes of before
  std::string message;
  for (std::size_t axis = 0; axis < columns_.size(); ++axis) {
    if (columns_[axis] == before[axis]) continue;
    const std::vector<RunRange> filters = selection().filters();
    const auto moved = std::ranges::find(filters, before[axis], &RunRange::column);
    if (moved == filters.end()) continue;
    selection().clearFilter(before[axis]);
    // It was a range before.
    if (std::ranges::find(filters, columns_[axis], &RunRange::column) == filters.end())
      static_cast<void>(selection().setFilter(columns_[axis], moved->lower, moved->upper, message));
  }
  brushing_ = false;
  draw();
}

void PCobwebs::showSelection() {
  if (known_ != table().columns.size()) {
    known_ = table().columns.size();
    const ProjectConfiguration& project = desk().controller().project();
    slider_.setVariables(table(), project.vels.outputNames(project.model));
    slider_.setShown(columns_);
  }
  if (brushing_) return;
  std::vector<BrushRange> ranges;
  for (const RunRange& filter : selection().filters())
    for (std::size_t axis = 0; axis < columns_.size(); ++axis)
      if (columns_[axis] == filter.column) ranges.push_back({axis, filter.lower, filter.upper});
  brushing_ = true;  // they are those of the selection already
  gadget<ChartView>("TeBackground")->setBrush(std::move(ranges));
  brushing_ = false;
}

// Sets what differs, so that a drag along one axis looks through the runs once.
void PCobwebs::brush(const std::vector<BrushRange>& ranges) {
  if (brushing_) return;
  brushing_ = true;
  std::string message;
  for (std::size_t axis = 0; axis < columns_.size(); ++axis) {
    const auto wanted = std::ranges::find(ranges, axis, &BrushRange::axis);
    const std::vector<RunRange>& filters = selection().filters();
    const auto present = std::ranges::find(filters, columns_[axis], &RunRange::column);
    if (wanted == ranges.end()) {
      selection().clearFilter(columns_[axis]);
    } else if (present == filters.end() || present->lower != wanted->lower || present->upper != wanted->upper) {
      // An axis has no range whose ends meet.
      static_cast<void>(selection().setFilter(columns_[axis], wanted->lower, wanted->upper, message));
    }
  }
  brushing_ = false;
}

void PCobwebs::filters() {
  PCobSelect panel(display(), table(), columns_, selection().filters(), window());
  panel.centre();
  if (!panel.runModal() || !panel.accepted()) return;
  std::string message;
  for (const PCobSelect::Bounds& bounds : panel.bounds()) {
    if (!bounds.filter)
      selection().clearFilter(bounds.column);
    else  // that they are a range the panel has seen to
      static_cast<void>(selection().setFilter(bounds.column, bounds.filter->first, bounds.filter->second, message));
  }
}

}  // namespace tarvex
