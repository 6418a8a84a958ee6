#include "panels/vels/PSaResult.h"

#include <QCheckBox>
#include <QComboBox>
#include <QItemSelectionModel>
#include <QKeySequence>
#include <QLabel>
#include <algorithm>
#include <numeric>

#include "app/RunController.h"
#include "panels/vels/PForecast.h"
#include "panels/vels/PSaRandomSelect.h"
#include "panels/vels/ResultDesk.h"
#include "panels/vels/SaTable.h"
#include "panels/vels/saveMeasures.h"
#include "plots/measurePlots.h"
#include "postproc/TimedVariables.h"
#include "toolkit/ChartView.h"
#include "toolkit/Notebook.h"
#include "toolkit/TableView.h"
#include "toolkit/allow.h"
#include "toolkit/chartExport.h"
#include "toolkit/longNames.h"

namespace tarvex {
namespace {

constexpr std::size_t kTopCount = 10;
constexpr std::size_t kFewRecords = 25;  // that a picture shows at once

// In the order of OOrder.
enum Choice { kTopTen, kByValue, kByList };

QString title(const RunController& controller) {
  return controller.demoMode() ? "Sensitivity Analysis (Demo mode)" : "Sensitivity Analysis";
}

}  // namespace

PSaResult::PSaResult(ResultDesk& desk, const SaKind& kind) : PSaResult(desk, kind, Member{}) {
  start({});
}

PSaResult::PSaResult(ResultDesk& desk, const SaKind& kind, Member)
    : Panel(desk.display(), kind.file, kind.name, title(desk.controller()), desk.parent()),
      desk_(desk),
      kind_(kind),
      snapshot_(desk.controller().analysis()),
      slider_(*this, desk, [this](std::int32_t variable) { showVariable(variable); }) {
  addPages();
  variables_.resize(snapshot_->variables.size());
  std::iota(variables_.begin(), variables_.end(), 0);
  fillLists();
}

PSaResult::~PSaResult() = default;

void PSaResult::addPages() {
  QString problem;
  for (const SaPage& page : kind_.pages)
    if (!gadget<Notebook>("NoIndexes")->addPage(display(), page.file, page.label, problem)) missing(problem);
}

void PSaResult::fillLists() {
  auto* const order = gadget<QComboBox>("OOrder");
  order->addItems({"Ten largest", "Largest first", "List order"});
  order->setCurrentIndex(stats().records.size() > kFewRecords ? kTopTen : kByValue);
  shown_.order = MeasureDisplay::Order::Value;
  shown_.most = stats().records.size() > kFewRecords ? kTopCount : 0;
  shown_.records.emplace(stats().records.size());
  std::iota(shown_.records->begin(), shown_.records->end(), 0);
  for (const SaForm form : kind_.forms) gadget<QComboBox>("OForm")->addItem(formTitle(form));
  if (!QString(kind_.title).isEmpty()) gadget<QLabel>("MlTitle")->setText(kind_.title);
  offerVariables();
}

void PSaResult::offerVariables() {
  std::vector<std::string> shown(snapshot_->variables.size());
  for (const std::int32_t v : variables_)
    shown[static_cast<std::size_t>(v)] = snapshot_->variables[static_cast<std::size_t>(v)];
  slider_.setVariables(shown, outputNamesOf(*snapshot_));
  for (const char* const name : {"ScPieName", "ScPieNameFO", "ScPieNameTO"}) {
    auto* const list = window()->findChild<QComboBox*>(name);
    if (list == nullptr) continue;
    list->clear();
    for (const std::int32_t v : variables_)
      addName(*list, QString::fromStdString(snapshot_->variables[static_cast<std::size_t>(v)]));
    list->setCurrentIndex(static_cast<int>(std::ranges::find(variables_, variable_) - variables_.begin()));
  }
}

void PSaResult::start(std::vector<PanelCallback> more) {
  std::vector<PanelCallback> table = {{"changeVariable", [this] { changeVariable("ScPieName"); }},
                                      {"changeVariableFO", [this] { changeVariable("ScPieNameFO"); }},
                                      {"changeVariableTO", [this] { changeVariable("ScPieNameTO"); }},
                                      {"changePie", [this] { changePie(); }},
                                      {"changeOrder", [this] { changeOrder(); }},
                                      {"visualize", [this] { visualize(); }},
                                      {"switchNorm", [this] { switchNorm(); }},
                                      {"saveImg", [this] { saveImg(); }},
                                      {"saveTable", [this] { saveTable(); }},
                                      {"doppioClick", [this] { doppioClick(); }},
                                      {"dismiss", [this] { end(true); }}};
  for (PanelCallback& callback : more) table.push_back(std::move(callback));
  registerCallbacks(std::move(table));
  bindKey(QKeySequence(Qt::Key_Escape), [this] { end(true); });
  for (const SaView& view : kind_.charts) {
    auto* const chart = gadget<ChartView>(view.gadget);
    connect(chart, &ChartView::pointed, this,
            [this](const QString& text) { gadget<QLabel>("MlMessage")->setText(text); });
    connect(chart, &ChartView::recordClicked, this, [this](int record) { markRecord(record); });
  }
  for (std::size_t i = 0; i < kind_.sheets.size(); ++i)
    connect(gadget<TableView>(kind_.sheets[i].gadget)->selectionModel(), &QItemSelectionModel::currentChanged, this,
            [this, i] { sheet_ = i; });
  subscription_ = desk_.controller().subscribe([this](Changes changes) { followController(changes); });
  if (const std::int32_t picked = slider_.atPicked(variable_); picked >= 0) return showVariable(picked);
  refresh();
}

const SensitivityStats& PSaResult::stats() const {
  return *snapshot_->sensitivity;
}

std::string PSaResult::variableName() const {
  return snapshot_->variables[static_cast<std::size_t>(variable_)];
}

std::vector<std::int32_t> PSaResult::slots(SaForm form) const {
  std::vector<std::int32_t> slots;
  for (const MeasureChoice& choice : measureChoices(stats())) slots.push_back(choice.slot);
  if (form == SaForm::Pies || form == SaForm::Bars)
    return form == SaForm::Pies && slots.size() > 2 ? usualSlots(stats()) : slots;
  return {slots.front()};
}

// The variables that are the same output at other times; none for an output at one time.
std::optional<TimedVariables> PSaResult::timesOfVariable() const {
  for (TimedVariables& times : timedVariables(snapshot_->variables, outputNamesOf(*snapshot_)))
    if (std::ranges::any_of(times.at, [this](const auto& at) { return at.second == variable_; })) return times;
  return std::nullopt;
}

QString PSaResult::whyNot(SaForm form) const {
  return form != SaForm::Curves || timesOfVariable()
             ? QString()
             : "Curves need this output at two times or more: select them as variables, then analyse.";
}

Figure PSaResult::figure(const SaView& chart, ColourSet colours) const {
  MeasureDisplay display = shown_;
  display.colours = colours;
  const std::vector<std::int32_t> drawn = chart.slots.empty() ? slots(form()) : chart.slots;
  switch (form()) {
    case SaForm::Bars:
      return measureBars(stats(), variable_, variableName(), drawn, display);
    case SaForm::Interactions:
      return interactionBars(stats(), variable_, variableName(), display);
    case SaForm::Pies:
      return measurePies(stats(), variable_, variableName(), drawn, display);
    case SaForm::Plane:
      return morrisPlane(stats(), variable_, variableName(), display);
    case SaForm::Curves:
      break;
  }
  const std::optional<TimedVariables> times = timesOfVariable();
  return times ? measureCurves(stats(), *times, drawn.front(), display) : Figure();
}

void PSaResult::showCharts() {
  QString why = whyNot(form());
  const std::string reason = stats().notComputedReason(variable_, slots(form()).front());
  if (why.isEmpty() && !reason.empty()) why = "Not computed: " + QString::fromStdString(reason) + '.';
  if (why.isEmpty()) why = "There are no measures of the chosen factors for this variable.";
  for (std::size_t i = 0; i < kind_.charts.size(); ++i) {
    auto* const chart = gadget<ChartView>(kind_.charts[i].gadget);
    chart->setEmptyText(why);
    chart->show(figure(kind_.charts[i], ColourSet::Distinct));
    // The interactions are of both orders: the second chart goes, with what stands around it.
    if (i > 0) chart->parentWidget()->setVisible(form() != SaForm::Interactions);
  }
}

void PSaResult::showSheets() {
  const bool withTest = stats().typeId() == SensitivityStats::kRegression;
  tables_.clear();
  for (const SaView& sheet : kind_.sheets) {
    tables_.push_back(std::make_shared<SaTable>(
        snapshot_->sensitivity, variable_, sheet.slots.empty() ? slots(SaForm::Bars) : sheet.slots, shown_, withTest));
    showSheet(*gadget<TableView>(sheet.gadget), tables_.back());
  }
}

void PSaResult::refresh() {
  slider_.setShown(variable_);
  showCharts();
  showSheets();
  if (auto* const norm = window()->findChild<QCheckBox*>("ChNorm"))
    allow(*norm, form() == SaForm::Bars || form() == SaForm::Pies
                     ? QString()
                     : "What this picture shows is no share of a sum: choose bars or pies.");
  showState();
}

void PSaResult::changeVariable(const char* gadgetName) {
  const int place = gadget<QComboBox>(gadgetName)->currentIndex();
  if (place < 0 || place >= static_cast<int>(variables_.size())) return;
  showVariable(variables_[static_cast<std::size_t>(place)]);
}

void PSaResult::showVariable(std::int32_t variable) {
  variable_ = variable;
  offerVariables();
  refresh();
}

void PSaResult::changePie() {
  form_ = static_cast<std::size_t>(std::max(0, gadget<QComboBox>("OForm")->currentIndex()));
  refresh();
}

void PSaResult::changeOrder() {
  const int choice = gadget<QComboBox>("OOrder")->currentIndex();
  shown_.order = choice == kByList ? MeasureDisplay::Order::List : MeasureDisplay::Order::Value;
  shown_.most = choice == kTopTen ? kTopCount : 0;
  refresh();
}

void PSaResult::switchNorm() {
  shown_.scaled = gadget<QCheckBox>("ChNorm")->isChecked();
  refresh();
}

void PSaResult::visualize() {
  PSaRandomSelect panel(display(), stats(), snapshot_->variables, {*shown_.records, variables_}, window());
  panel.centre();
  if (!panel.runModal() || !panel.accepted()) return;
  SaComponents chosen = panel.components();
  shown_.records = std::move(chosen.records);
  variables_ = std::move(chosen.variables);
  if (std::ranges::find(variables_, variable_) == variables_.end()) variable_ = variables_.front();
  offerVariables();
  refresh();
}

void PSaResult::saveImg() {
  Figure dumped = figure(kind_.charts.front(), ColourSet::System);
  if (kind_.charts.size() > 1 && form() != SaForm::Interactions) {
    Figure second = figure(kind_.charts[1], ColourSet::System);
    for (Chart& chart : second.charts) dumped.charts.push_back(std::move(chart));
    dumped.columns = 2;
    dumped.width += second.width;
  }
  dumpPostscript(dumped, window());
}

void PSaResult::saveTable() {
  const QString written = saveMeasures(window(), [this](TextWriter& out) {
    kind_.write(out, stats(), {variable_, variableName(), *shown_.records}, measure());
  });
  if (!written.isEmpty()) gadget<QLabel>("MlMessage")->setText(written);
}

// Of the row that was chosen last, on whichever sheet.
void PSaResult::doppioClick() {
  const SaView& sheet = kind_.sheets[sheet_];
  auto* const view = gadget<TableView>(sheet.gadget);
  const QModelIndex current = view->currentIndex();
  if (!current.isValid()) return;
  const std::size_t record = tables_[sheet_]->record(view->tableModel().sourceRow(current.row()));
  const std::int32_t slot = sheet.slots.empty() ? measure() : sheet.slots.front();
  desk_.open(std::make_unique<PForecast>(desk_, snapshot_, variable_, slot, record));
}

void PSaResult::markRecord(int record) {
  for (const SaView& view : kind_.charts) gadget<ChartView>(view.gadget)->setMarked({record});
  for (std::size_t i = 0; i < tables_.size(); ++i)
    if (const int row = tables_[i]->rowOf(static_cast<std::size_t>(record)); row >= 0) {
      auto* const view = gadget<TableView>(kind_.sheets[i].gadget);
      for (int at = 0; at < view->tableModel().rowCount(); ++at)
        if (view->tableModel().sourceRow(at) == row) view->selectRow(at);
    }
}

// Another confidence is of the same runs; anything else makes this panel one of the past.
void PSaResult::followController(Changes changes) {
  RunController& controller = desk_.controller();
  runsChanged_ = runsChanged_ || changes.contains(Change::Prep) || changes.contains(Change::Results);
  if (controller.busy()) return;
  const std::shared_ptr<const AnalysisSnapshot> now = controller.analysis();
  if (now == snapshot_) return;
  if (!runsChanged_ && now->sensitivity && now->variables == snapshot_->variables &&
      now->sensitivity->typeId() == stats().typeId() && now->sensitivity->records.size() == stats().records.size()) {
    snapshot_ = now;
    return refresh();
  }
  subscription_ = {};
  gadget<QLabel>("MlState")->setText("Past: sample, results or selection have changed since.");
  showState();
}

}  // namespace tarvex
