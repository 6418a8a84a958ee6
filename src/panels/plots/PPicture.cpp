#include "panels/plots/PPicture.h"

#include "app/RunController.h"
#include "panels/plots/figurePanels.h"
#include "panels/vels/ResultDesk.h"
#include "plots/columnCorrelations.h"
#include "plots/runPlots.h"
#include "toolkit/ChartView.h"
#include "toolkit/Dialogs.h"

namespace tarvex {

PPicture::PPicture(ResultDesk& desk, std::shared_ptr<Selection> selection, const QString& title, Figure figure,
                   std::vector<std::size_t> columns)
    : RunPanel(desk, std::move(selection), "PPicture", "Picture", title), columns_(std::move(columns)) {
  auto* const chart = gadget<ChartView>("ScPicture");
  connect(chart, &ChartView::pointed, this, [this](const QString& text) { say(text); });
  connect(chart, &ChartView::framed, this, [this](std::size_t number, const ChartView::Box& box) {
    std::string message;
    if (!this->selection().setRegion({across(number), box.lowerX, box.upperX}, {up(number), box.lowerY, box.upperY},
                                     message))
      Dialogs::current().message(DialogKind::Error, "Error", QString::fromStdString(message), window());
  });
  chart->setFraming(!columns_.empty());
  chart->show(std::move(figure));
  start({{"saveImg", [chart] { chart->exportPicture(); }}, {"close", [this] { hide(); }}});
  chart->setFocus();
}

void PPicture::showSelection() {
  if (columns_.empty()) return;
  auto* const chart = gadget<ChartView>("ScPicture");
  chart->setDropped(selection().dropped());
  const std::vector<RunRange>& region = selection().region();
  for (std::size_t number = 0; number < columns_.size() * columns_.size(); ++number) {
    const bool here = region.size() == 2 && region[0].column == across(number) && region[1].column == up(number);
    chart->setRegion(
        number, here ? std::optional(ChartView::Box{region[0].lower, region[0].upper, region[1].lower, region[1].upper})
                     : std::nullopt);
  }
}

void openScatterMatrix(ResultDesk& desk, std::shared_ptr<Selection> selection, std::vector<std::size_t> columns) {
  std::vector<const RunColumn*> shown;
  for (const std::size_t column : columns) shown.push_back(&selection->table()->columns[column]);
  Figure figure;
  const auto work = [&](const Progress& progress, std::string&) {
    figure = scatterMatrix(shown, progress);
    return !progress.stopped();
  };
  // Whatever keeps it from being drawn has been said, or was the user's stop.
  if (desk.controller().perform("Scattergrams", selection->table()->runs, work) != Outcome::Done) return;
  desk.open(
      std::make_unique<PPicture>(desk, std::move(selection), "Scattergrams", std::move(figure), std::move(columns)));
}

void openCorrelationMap(ResultDesk& desk, std::shared_ptr<Selection> selection, const CorrelationMatrix& matrix) {
  desk.open(std::make_unique<PPicture>(desk, std::move(selection), "Correlations", correlationMap(matrix),
                                       std::vector<std::size_t>()));
}

}  // namespace tarvex
