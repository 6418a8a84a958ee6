#include "panels/prep/PGraphics.h"

#include <QComboBox>
#include <QKeySequence>
#include <QLabel>
#include <QPushButton>

#include "factors/SampledSummary.h"
#include "panels/prep/PInspector.h"
#include "panels/prep/factorGraph.h"
#include "plots/RunTable.h"
#include "plots/distributionPlot.h"
#include "plots/histogramPlots.h"
#include "toolkit/ChartView.h"

namespace tarvex {

PGraphics::PGraphics(const Display& display, const FactorList& factors, int place, QWidget* parent)
    : Panel(display, "PGraphics", "Graphics", "Distribution graphics", parent), factors_(factors) {
  auto* const names = gadget<QComboBox>("SlFactors");
  for (std::int32_t i = 0; i < factors.factorCount(); ++i)
    names->addItem(QString::fromStdString(factors.factor(i).name));
  names->setCurrentIndex(place);
  gadget<QPushButton>("BOutline")->setChecked(true);
  gadget<ChartView>("boundGraph")->setEmptyText("A constant or a relation has no distribution of its own.");
  registerCallbacks({{"outline", [this] { show(Form::Curve); }},
                     {"frequency", [this] { show(Form::Shares); }},
                     {"saveImg", [this] { saveImg(); }},
                     {"choose", [this] { choose(); }},
                     {"area", [this] { show(Form::Filled); }},
                     {"histogram", [this] { show(Form::Counts); }},
                     {"invCumulative", [this] { show(Form::Complement); }},
                     {"dismiss", [this] { end(true); }},
                     {"visualize", [this] { visualize(); }},
                     {"cumulative", [this] { show(Form::Cumulative); }}});
  bindKey(QKeySequence(Qt::Key_Escape), [this] { end(true); });
  choose();
}

const Factor& PGraphics::factor() {
  return factors_.factor(std::max(0, gadget<QComboBox>("SlFactors")->currentIndex()));
}

void PGraphics::choose() {
  setTitle("Distribution graphics: " + QString::fromStdString(factor().name));
  gadget<QLabel>("MlSummary")->setText(pictureOf(factor()).sampled);
  show(form_);
}

void PGraphics::show(Form form) {
  form_ = form;
  gadget<ChartView>("boundGraph")->show(figure());
}

Figure PGraphics::figure() {
  const bool ofSample = form_ == Form::Counts || form_ == Form::Shares;
  return ofSample ? sampleOf(factor()) : curveOf(factor());
}

Figure PGraphics::sampleOf(const Factor& factor) const {
  constexpr std::size_t kValues = 2000;
  RunColumn column{factor.name, true, std::vector<double>(kValues)};
  if (!stratifiedSample(factor, column.values)) return {};
  return histogramPlot({&column}, form_ == Form::Counts ? HistogramForm::Area : HistogramForm::Frequency, kLinearScale);
}

// One of the two planes of the distribution's picture; the density filled, the cumulative turned over.
Figure PGraphics::curveOf(const Factor& factor) const {
  Figure figure = distributionPlot(factor);
  if (figure.charts.empty()) return figure;
  const bool isDensity = form_ == Form::Curve || form_ == Form::Filled;
  figure.charts = {figure.charts[isDensity ? 0 : 1]};
  figure.columns = 1;
  auto& plane = std::get<XyChart>(figure.charts.front());
  auto* const line = std::get_if<Line>(&plane.layers.front());
  if (line == nullptr || line->x.empty()) return figure;
  if (form_ == Form::Complement) {
    plane.y.title = "Complement";
    for (double& y : line->y) y = 1.0 - y;
  } else if (form_ == Form::Filled) {
    Area area{line->x, {}, line->colour, false};
    for (std::size_t i = 1; i < line->y.size(); ++i) area.heights.push_back((line->y[i - 1] + line->y[i]) / 2.0);
    plane.layers.front() = std::move(area);
  }
  return figure;
}

void PGraphics::visualize() {
  PInspector panel(display(), factor(), window());
  panel.centre();
  static_cast<void>(panel.runModal());  // where its file is missing, that has been said
}

void PGraphics::saveImg() {
  gadget<ChartView>("boundGraph")->exportPicture();
}

}  // namespace tarvex
