#include "panels/plots/PHistogram.h"

#include <QCheckBox>
#include <QKeySequence>
#include <QLabel>
#include <QPushButton>

#include "app/RunController.h"
#include "panels/vels/ResultDesk.h"
#include "toolkit/ChartView.h"
#include "toolkit/longNames.h"

namespace tarvex {
namespace {

constexpr int kTitleChars = 96;

RunColumn keptOf(const RunColumn& column, const std::vector<std::int32_t>& runs) {
  RunColumn kept{column.name, column.isFactor, {}, column.factor, column.unit};
  kept.values.reserve(runs.size());
  for (const std::int32_t run : runs) kept.values.push_back(column.values[static_cast<std::size_t>(run)]);
  return kept;
}

}  // namespace

PHistogram::PHistogram(ResultDesk& desk, std::shared_ptr<Selection> selection, std::vector<std::size_t> columns)
    : PHistogram(desk, std::move(selection), "PHistogram", "Histogram") {
  start(std::move(columns), {});
}

PHistogram::PHistogram(ResultDesk& desk, std::shared_ptr<Selection> selection, const QString& file, const QString& name)
    : Panel(desk.display(), file, name, "Histogram", desk.parent()),
      desk_(desk),
      selection_(std::move(selection)),
      slider_(*this, desk, [this](std::int32_t) { showColumns(slider_.allAtPicked(columns_)); }) {
  redraw_.setSingleShot(true);
  redraw_.setInterval(kRedrawMilliseconds);
  connect(&redraw_, &QTimer::timeout, this, [this] { draw(); });
}

void PHistogram::start(std::vector<std::size_t> columns, std::vector<PanelCallback> more) {
  auto* const chart = gadget<ChartView>("TBackground");
  connect(chart, &ChartView::pointed, this, [this](const QString& text) { say(text); });
  gadget<QPushButton>("BArea")->setChecked(true);
  for (PanelCallback& callback :
       std::vector<PanelCallback>{{"area", [this] { choose(HistogramForm::Area); }},
                                  {"outline", [this] { choose(HistogramForm::Outline); }},
                                  {"histogram", [this] { choose(HistogramForm::Bars); }},
                                  {"frequency", [this] { choose(HistogramForm::Frequency); }},
                                  {"cumulative", [this] { choose(HistogramForm::Cumulative); }},
                                  {"invCumulative", [this] { choose(HistogramForm::Complement); }},
                                  {"scale", [this] { draw(); }},
                                  {"saveImg", [chart] { chart->exportPicture(); }},
                                  {"dismiss", [this] { hide(); }}})
    more.push_back(std::move(callback));
  registerCallbacks(std::move(more));
  bindKey(QKeySequence(Qt::Key_Escape), [this] { hide(); });
  bindKey(QKeySequence(Qt::CTRL | Qt::Key_E), [this] { call("saveImg"); });
  chart->setFocus();
  selectionSubscription_ = selection_->subscribe([this] {
    if (gadget<QCheckBox>("TKept")->isChecked()) redraw_.start();
  });
  subscription_ = desk_.controller().subscribe([this](Changes) { say({}); });
  showColumns(std::move(columns));
}

void PHistogram::showColumns(std::vector<std::size_t> columns) {
  columns_ = std::move(columns);
  const ProjectConfiguration& project = desk_.controller().project();
  slider_.setVariables(table(), project.vels.outputNames(project.model));
  slider_.setShown(columns_);
  QString names;
  for (const std::size_t column : columns_)
    names += (names.isEmpty() ? "" : ", ") + QString::fromStdString(table().columns[column].name);
  setTitle("Histogram: " + shortened(names, kTitleChars));
  draw();
}

void PHistogram::choose(HistogramForm form) {
  form_ = form;
  draw();
}

void PHistogram::draw() {
  const bool kept = gadget<QCheckBox>("TKept")->isChecked() && selection_->keptCount() < table().runs;
  const HistogramScale scale = gadget<QCheckBox>("TLog")->isChecked() ? kLogScale : kLinearScale;
  const HistogramBins bins = gadget<QCheckBox>("TAllBins")->isChecked() ? HistogramBins::All : HistogramBins::Suited;
  Figure figure;
  const auto work = [&](const Progress& progress, std::string&) {
    std::vector<RunColumn> copies;
    std::vector<const RunColumn*> shown;
    const std::vector<std::int32_t> runs = kept ? selection_->runs() : std::vector<std::int32_t>();
    copies.reserve(columns_.size());
    for (const std::size_t column : columns_)
      shown.push_back(kept ? &copies.emplace_back(keptOf(table().columns[column], runs)) : &table().columns[column]);
    figure = histogramPlot(shown, form_, scale, bins, progress);
    return true;
  };
  if (desk_.controller().perform("Histogram", table().runs, work) == Outcome::Busy) return redraw_.start();
  gadget<ChartView>("TBackground")->show(std::move(figure));
  say({});
}

void PHistogram::say(const QString& text) {
  const QString past =
      desk_.isPresent(*selection_) ? QString() : "Sample or results have changed since: these are the earlier ones.";
  gadget<QLabel>("MlMessage")->setText(text.isEmpty() ? past : text);
}

}  // namespace tarvex
