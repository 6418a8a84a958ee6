#include "panels/plots/PScatter.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QPushButton>
#include <algorithm>
#include <limits>

#include "app/RunController.h"
#include "base/NumberText.h"
#include "panels/vels/ResultDesk.h"
#include "plots/runPlots.h"
#include "toolkit/Dialogs.h"
#include "toolkit/allow.h"
#include "toolkit/longNames.h"

namespace tarvex {
namespace {

constexpr int kNameChars = 24;  // beside the limits of the other column

QString rangeOf(const RunColumn& column) {
  const auto [lower, upper] = finiteRange(column);
  const QString name = shortened(QString::fromStdString(column.name), kNameChars) + ": ";
  if (!(lower <= upper)) return name + "no numbers";
  return name + QString::fromStdString(numberText(lower) + " to " + numberText(upper));
}

}  // namespace

PScatter::PScatter(ResultDesk& desk, std::shared_ptr<Selection> selection, std::size_t x, std::size_t y)
    : RunPanel(desk, std::move(selection), "PScatter", "Scattergram", "Scattergram"),
      slider_(*this, desk, [this](std::int32_t) { moveInTime(); }) {
  fillColumns();
  gadget<QComboBox>("OFirst")->setCurrentIndex(static_cast<int>(x));
  gadget<QComboBox>("OSecond")->setCurrentIndex(static_cast<int>(y));
  auto* const chart = gadget<ChartView>("SpSamples");
  connect(chart, &ChartView::pointed, this, [this](const QString& text) { say(text); });
  connect(chart, &ChartView::framed, this, [this](std::size_t, const ChartView::Box& box) { frame(box); });
  chart->setFraming(true);
  start({{"choose", [this] { choose(); }},
         {"scale", [this] { draw(); }},
         {"frame", [this, chart] { chart->setFraming(gadget<QPushButton>("RSelected")->isChecked()); }},
         {"saveImg", [chart] { chart->exportPicture(); }},
         {"close", [this] { hide(); }}});
  chart->setFocus();  // Ctrl+C copies the picture
  choose();
}

std::size_t PScatter::column(bool across) {
  return static_cast<std::size_t>(std::max(0, gadget<QComboBox>(across ? "OFirst" : "OSecond")->currentIndex()));
}

// Analysed variables join the table; those that were there keep their places.
void PScatter::fillColumns() {
  if (listed_ == table().columns.size()) return;
  const ProjectConfiguration& project = desk().controller().project();
  slider_.setVariables(table(), project.vels.outputNames(project.model));
  for (; listed_ < table().columns.size(); ++listed_)
    for (const char* const list : {"OFirst", "OSecond"})
      addName(*gadget<QComboBox>(list), QString::fromStdString(table().columns[listed_].label()));
  slider_.setShown({column(false), column(true)});
}

// A region between these columns goes with them, at the same values.
void PScatter::moveInTime() {
  if (!isVisible()) return;
  const std::vector<std::size_t> picked = slider_.allAtPicked({column(false), column(true)});
  const bool moves = picked[0] != column(false) || picked[1] != column(true);
  const std::vector<RunRange> region = moves && hasRegion() ? selection().region() : std::vector<RunRange>();
  gadget<QComboBox>("OSecond")->setCurrentIndex(static_cast<int>(picked[0]));
  gadget<QComboBox>("OFirst")->setCurrentIndex(static_cast<int>(picked[1]));
  describe();
  draw();
  if (!region.empty())
    frame({.lowerX = region[0].lower, .upperX = region[0].upper, .lowerY = region[1].lower, .upperY = region[1].upper});
}

bool PScatter::hasRegion() {
  const std::vector<RunRange>& region = selection().region();
  return region.size() == 2 && region[0].column == column(true) && region[1].column == column(false);
}

void PScatter::choose() {
  describe();
  gadget<QCheckBox>("TJitter")->setChecked(gadget<QCheckBox>("TJitter")->isEnabled());
  gadget<QCheckBox>("TShade")->setChecked(isCrowded(table().runs));
  draw();
}

void PScatter::describe() {
  slider_.setShown({column(false), column(true)});
  const RunColumn& x = table().columns[column(true)];
  const RunColumn& y = table().columns[column(false)];
  gadget<QLabel>("MlFirstVar")->setText(rangeOf(x));
  gadget<QLabel>("MlSecondVar")->setText(rangeOf(y));
  setTitle("Scattergram: " + shortened(QString::fromStdString(y.name)) + " against " +
           shortened(QString::fromStdString(x.name)));
  const auto scale = [this](const char* box, const RunColumn& of) {
    const QString why = canBeLogarithmic(of) ? QString() : "Not all its values are above 0.";
    allow(*gadget<QCheckBox>(box), why);
    if (!why.isEmpty()) gadget<QCheckBox>(box)->setChecked(false);
  };
  scale("TLogFirst", x);
  scale("TLogSecond", y);
  const bool discrete = isDiscrete(x) || isDiscrete(y);
  allow(*gadget<QCheckBox>("TJitter"), discrete ? QString() : "Neither column has only a few values.");
  if (!discrete) gadget<QCheckBox>("TJitter")->setChecked(false);
}

void PScatter::draw() {
  ScatterLook look;
  look.logarithmicX = gadget<QCheckBox>("TLogFirst")->isChecked();
  look.logarithmicY = gadget<QCheckBox>("TLogSecond")->isChecked();
  look.jitter = gadget<QCheckBox>("TJitter")->isChecked();
  look.shaded = gadget<QCheckBox>("TShade")->isChecked();
  constexpr double kNone = std::numeric_limits<double>::quiet_NaN();  // where it is, showSelection() says
  look.region = Region{kNone, kNone, kNone, kNone, namedColour("Indian Red")};
  auto* const chart = gadget<ChartView>("SpSamples");
  chart->setEmptyText("No run has a number in both columns.");
  chart->show(scatterPlot(table().columns[column(true)], table().columns[column(false)], look));
  showSelection();
}

void PScatter::showSelection() {
  fillColumns();
  auto* const chart = gadget<ChartView>("SpSamples");
  chart->setDropped(selection().dropped());
  const std::vector<RunRange>& region = selection().region();
  chart->setRegion(
      0, hasRegion() ? std::optional(ChartView::Box{region[0].lower, region[0].upper, region[1].lower, region[1].upper})
                     : std::nullopt);
}

void PScatter::frame(const ChartView::Box& box) {
  std::string message;
  if (!selection().setRegion({column(true), box.lowerX, box.upperX}, {column(false), box.lowerY, box.upperY}, message))
    Dialogs::current().message(DialogKind::Error, "Error", QString::fromStdString(message), window());
}

}  // namespace tarvex
