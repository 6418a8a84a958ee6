#include "panels/vels/PUaSingle.h"

#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QKeySequence>
#include <QLabel>
#include <QMenuBar>
#include <QPushButton>
#include <QTabWidget>
#include <numeric>
#include <utility>

#include "app/RunController.h"
#include "base/NumberText.h"
#include "base/TextWriter.h"
#include "panels/vels/CellTable.h"
#include "panels/vels/PUaSelect.h"
#include "panels/vels/ResultDesk.h"
#include "panels/vels/saveMeasures.h"
#include "plots/RunTable.h"
#include "postproc/SavedTables.h"
#include "toolkit/ChartView.h"
#include "toolkit/Notebook.h"
#include "toolkit/TableView.h"
#include "toolkit/allow.h"
#include "toolkit/longNames.h"

namespace tarvex {

PUaSingle::PUaSingle(ResultDesk& desk, std::shared_ptr<const AnalysisSnapshot> analysis, std::int32_t variable)
    : Panel(desk.display(), "PUaSingle", "SelVar",
            desk.controller().demoMode() ? "Uncertainty analisys (Demo mode)" : "Uncertainty analysis", desk.parent()),
      desk_(desk),
      analysis_(std::move(analysis)),
      statistics_(analysis_->uncertainty),
      hasTimes_(desk.controller().project().model.results.hasTimeAxis()),
      slider_(*this, desk, [this](std::int32_t shown) { show(shown); }),
      methodId_(desk.controller().project().prep.methodId()) {
  addPages();
  for (const std::string& name : analysis_->variables)
    addName(*gadget<QComboBox>("OVariable"), QString::fromStdString(name));
  slider_.setVariables(analysis_->variables, outputNamesOf(*analysis_));
  allow(*gadget<QPushButton>("BSelect"),
        analysis_->variables.size() > 1 ? QString() : "A single variable was analysed.");
  gadget<QPushButton>("BArea")->setChecked(true);
  prepareQuantiles();
  registerAll();
  subscription_ = controller().subscribe([this](Changes changes) { changed(changes); });
  show(variable);
}

PUaSingle::~PUaSingle() = default;

void PUaSingle::addPages() {
  const struct {
    const char* file;
    const char* label;
  } pages[] = {{"PUaSinglePage1", "Cha&rt"},
               {"PUaSinglePage2", "Po&ints"},
               {"PUaSinglePage3", "&Quantiles"},
               {"PUaSinglePage4", "Throu&gh time"}};
  QString problem;
  for (const auto& [file, label] : pages)
    if ((hasTimes_ || file != pages[kTimesPage].file) &&
        !gadget<Notebook>("NoVariable")->addPage(display(), file, label, problem))
      missing(problem);
}

void PUaSingle::registerAll() {
  registerCallbacks({{"outline", [this] { showForm(HistogramForm::Outline); }},
                     {"cumulative", [this] { showForm(HistogramForm::Cumulative); }},
                     {"saveImg", [this] { gadget<ChartView>("TBackground")->exportPicture(); }},
                     {"boundSet", [this] { boundSet(); }},
                     {"histogram", [this] { showForm(HistogramForm::Bars); }},
                     {"saveTable", [this] { saveTable(); }},
                     {"invCumulative", [this] { showForm(HistogramForm::Complement); }},
                     {"dismiss",
                      [this] {
                        if (closing()) hide();
                      }},
                     {"area", [this] { showForm(HistogramForm::Area); }},
                     {"frequency", [this] { showForm(HistogramForm::Frequency); }},
                     {"choose", [this] { choose(); }},
                     {"chooseVariable", [this] { chooseVariable(); }},
                     {"select", [this] { chooseSeveral(); }},
                     {"settings", [this] { settings(); }},
                     {"quantiles", [this] { quantiles(); }},
                     {"bins", [this] { showChart(); }},
                     {"timeScale", [this] { drawTimes(); }},
                     {"saveTimes", [this] { gadget<ChartView>("ScTimes")->exportPicture(); }},
                     {"pageChanged", [this] { pageChanged(); }}});
  bindKey(QKeySequence(Qt::Key_Escape), [this] { call("dismiss"); });
}

RunController& PUaSingle::controller() {
  return desk_.controller();
}

QString PUaSingle::helpTopic() const {
  const auto* const notebook = window()->findChild<QTabWidget*>("NoVariable");
  return "PUaSinglePage" + QString::number((notebook != nullptr ? notebook->currentIndex() : 0) + 1);
}

void PUaSingle::say(const QString& text) {
  gadget<QLabel>("MlMessage")->setText(text);
}

// What is shown stays; only what is said of it changes.
void PUaSingle::changed(Changes changes) {
  if (past_ || (!changes.contains(Change::Results) && controller().whyNot(Step::Analyse).empty())) return;
  if (controller().busy() && !changes.contains(Change::Results)) return;
  past_ = true;
  setTitle(window()->windowTitle() + ", of earlier results");
  say("These are earlier results: the project has others by now, or none.");
}

bool PUaSingle::closing() {
  if (working_) say("Stop what is in progress first.");
  return !working_;
}

// One variable.

void PUaSingle::show(std::int32_t variable) {
  variable_ = variable;
  inChart_ = {variable};
  gadget<QComboBox>("OVariable")->setCurrentIndex(variable);
  slider_.setShown(variable);
  showStatistics();
  showChart();
  showPoints();
  showBounds();
  pageChanged();
}

void PUaSingle::showStatistics() {
  const double deviation = statistics_.std(variable_);
  const double tTest = statistics_.tTestBound(variable_);
  const QString level = QString::fromStdString(numberText(statistics_.tchebyConfidence));
  const std::vector<std::pair<QString, QString>> rows = {
      {"Mean", statisticText(statistics_.mean(variable_))},
      {"Variance", statisticText(deviation * deviation)},
      {"Standard deviation", statisticText(deviation)},
      {"Skewness", statisticText(statistics_.skewness(variable_))},
      {"Kurtosis", statisticText(statistics_.kurtosis(variable_))},
      {"Tchebycheff bound, " + level, statisticText(statistics_.tchebyBound(variable_))},
      {"t-test bound, " + level, tTest < 0.0 ? "no such level" : statisticText(tTest)},
      {"Minimum", statisticText(statistics_.minimum(variable_))},
      {"Maximum", statisticText(statistics_.maximum(variable_))},
      {"Runs", QString::number(statistics_.sampleSize())}};
  std::vector<QStringList> cells;
  for (const auto& [name, value] : rows) cells.push_back({name, value});
  auto* const table = gadget<TableView>("MaStatistics");
  table->setSource(std::make_shared<CellTable>(std::vector<CellTable::Column>{{"Statistic", false}, {"Value"}}, cells));
  table->resizeColumnsToContents();
}

void PUaSingle::showForm(HistogramForm form) {
  form_ = form;
  showChart();
}

Figure PUaSingle::figure() {
  const HistogramBins bins = gadget<QCheckBox>("TAllBins")->isChecked() ? HistogramBins::All : HistogramBins::Suited;
  const std::int32_t withoutBins = inChart_.size() == 1 && isWithoutBins(statistics_, variable_) ? variable_ : -1;
  if (withoutBins < 0) return histogramPlot(statistics_, inChart_, form_, scale_, bins);
  RunColumn column{analysis_->variables[static_cast<std::size_t>(withoutBins)], false, {}};
  if (!analysis_->table->getColumn(withoutBins, column.values)) return {};
  Figure made;
  made.emptyText = "Another computation is in progress: choose the chart again after it.";
  working_ = true;
  // Whatever keeps it from being drawn the figure says.
  static_cast<void>(
      controller().perform("Histogram", statistics_.sampleSize(), [&](const Progress& progress, std::string&) {
        made = histogramPlot({&column}, form_, scale_, bins, progress);
        return true;
      }));
  working_ = false;
  return made;
}

void PUaSingle::showChart() {
  Figure made = figure();
  auto* const view = gadget<ChartView>("TBackground");
  view->setEmptyText(made.charts.empty() ? "There is no histogram: " + QString::fromStdString(made.subtitle) + '.'
                                         : QString());
  view->show(std::move(made));
}

void PUaSingle::chooseVariable() {
  show(gadget<QComboBox>("OVariable")->currentIndex());
}

// The curve that the menu's item says, and its button.
void PUaSingle::choose() {
  const auto* const item = qobject_cast<QAction*>(sender());
  const char* button = "BOutline";
  if (item != nullptr && item->objectName() == "ACumulative") button = "BCumulative";
  if (item != nullptr && item->objectName() == "AComplement") button = "BInvCumulative";
  gadget<QTabWidget>("NoVariable")->setCurrentIndex(kChartPage);
  gadget<QPushButton>(button)->click();
}

void PUaSingle::chooseSeveral() {
  PUaSelect panel(display(), analysis_->variables, {inChart_.begin(), inChart_.end()}, {}, window());
  panel.centre();
  if (!panel.runModal() || !panel.accepted()) return;
  const std::vector<int> places = panel.selected();
  inChart_.assign(places.begin(), places.end());
  gadget<QTabWidget>("NoVariable")->setCurrentIndex(kChartPage);
  showChart();
}

// Settings.

QString PUaSingle::whyNotLogarithmic() const {
  for (std::int32_t v = 0; v < statistics_.variableCount(); ++v)
    if (statistics_.minimum(v) < 0.0)
      return QString::fromStdString(*statistics_.name(v)) + " has values below 0, which have no logarithm.";
  return {};
}

void PUaSingle::settings() {
  PUaSetting panel(display(), {statistics_.tchebyConfidence, statistics_.kolmogorovConfidence, scale_},
                   whyNotLogarithmic(), window());
  panel.centre();
  if (!panel.runModal() || !panel.accepted()) return;
  const UaSettings chosen = panel.settings();
  scale_ = chosen.scale;
  setLevels(chosen);
  showStatistics();
  showChart();
  showPoints();
  showBounds();
}

// Here in any case; in the study too, as long as it is the one that is shown.
void PUaSingle::setLevels(const UaSettings& settings) {
  const bool changed = settings.tchebyConfidence != statistics_.tchebyConfidence ||
                       settings.kolmogorovConfidence != statistics_.kolmogorovConfidence;
  if (!changed || !statistics_.setTchebyConfidence(settings.tchebyConfidence) ||
      !statistics_.setKolmogorovConfidence(settings.kolmogorovConfidence) || past_ ||
      controller().analysis()->variables != analysis_->variables)
    return;
  AnalysisRequest request;
  request.variables = analysis_->variables;
  request.sensitivity = false;
  request.tchebyConfidence = settings.tchebyConfidence;
  request.kolmogorovConfidence = settings.kolmogorovConfidence;
  working_ = true;
  if (controller().analyse(request) == Outcome::Busy) say("The study keeps its old levels: it is at work.");
  working_ = false;
}

void PUaSingle::saveTable() {
  const QString written =
      saveMeasures(window(), [this](TextWriter& out) { writeUncertaintyTable(out, statistics_, variable_, scale_); });
  if (!written.isEmpty()) say(written);
}

}  // namespace tarvex
