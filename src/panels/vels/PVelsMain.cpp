#include "panels/vels/PVelsMain.h"

#include <QFileInfo>
#include <QHeaderView>
#include <QKeySequence>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <algorithm>
#include <utility>

#include "app/RunController.h"
#include "panels/model/NameCompletion.h"
#include "panels/plots/openPlots.h"
#include "panels/prep/ExpressionColours.h"
#include "panels/vels/CellTable.h"
#include "panels/vels/OutputList.h"
#include "panels/vels/PReport.h"
#include "panels/vels/PSelectVariable.h"
#include "panels/vels/PUaSingle.h"
#include "panels/vels/ResultDesk.h"
#include "panels/vels/chooseResultsFile.h"
#include "panels/vels/openSensitivity.h"
#include "postproc/OutputVariables.h"
#include "postproc/TimeBands.h"
#include "toolkit/Dialogs.h"
#include "toolkit/TableView.h"
#include "toolkit/allow.h"

namespace tarvex {
namespace {

constexpr const char* kNoVariable = "   No variable selected.";
constexpr const char* kBusy = "Stop what is in progress first.";

}  // namespace

PVelsMain::PVelsMain(ResultDesk& desk, std::function<void()> openResults)
    : Panel(desk.display(), "PVelsMain", "VelsMain", "Statistical Post Processor - Main Panel", desk.parent()),
      desk_(desk),
      openResults_(std::move(openResults)),
      outputs_(std::make_shared<OutputList>([this](int output, float weight) { return setWeight(output, weight); })) {
  fillFields();
  registerCallbacks({{"selFunction", [this] { selFunction(); }},
                     {"power", [this] { enterExpression("**"); }},
                     {"remove", [this] { remove(); }},
                     {"operation", [this] { insertLabel(); }},
                     {"openPar", [this] { enterExpression("("); }},
                     {"add", [this] { add(); }},
                     {"abortExpr", [this] { leaveExpression(); }},
                     {"closePar", [this] { enterExpression(")"); }},
                     {"addExpr", [this] { addExpr(); }},
                     {"ua", [this] { ua(); }},
                     {"removeAll", [this] { removeAll(); }},
                     {"sa", [this] { sa(); }},
                     {"addAll", [this] { addAll(); }},
                     {"save", [this] { save(); }},
                     {"dismiss", [this] { dismiss(); }},
                     {"open", [this] { open(); }},
                     {"plots", [this] { plots(); }},
                     {"report", [this] { report(); }},
                     {"take", [this] { add(); }},
                     {"selectRow", [this] { refreshGadgets(); }},
                     {"edited", [this] { edited(); }}});
  bindKey(QKeySequence(Qt::Key_Escape), [this] { dismiss(); });
  subscription_ = controller().subscribe([this](Changes) { refresh(); });
  refresh();
  gadget<TableView>("MaVariables")->setFocus();
}

PVelsMain::~PVelsMain() = default;

RunController& PVelsMain::controller() {
  return desk_.controller();
}

void PVelsMain::say(const QString& text) {
  gadget<QLabel>("MlMessage")->setText(text);
}

void PVelsMain::refuse(const QString& text) {
  Dialogs::current().message(DialogKind::Error, "Error", text, window());
}

// What is shown.

void PVelsMain::refresh() {
  setTitle(controller().demoMode() ? "Vels - Main Panels (Demo mode)" : "Statistical Post Processor - Main Panel");
  if (!controller().busy()) refreshLists();
  refreshGadgets();
}

void PVelsMain::refreshLists() {
  const std::shared_ptr<const AnalysisSnapshot> now = controller().analysis();
  if (now == shown_) return;
  const bool first = shown_ == nullptr;
  shown_ = now;
  const ProjectConfiguration& project = controller().project();
  outputNames_ = project.vels.outputNames(project.model);
  if (outputs_->setOutputs(now->outputs)) {
    auto* const outputs = gadget<TableView>("MaVariables");
    outputs->tableModel().sourceChanged();
    outputs->horizontalHeader()->setSectionResizeMode(OutputList::kName, QHeaderView::Stretch);
    knowOutputs();
  } else {
    gadget<TableView>("MaVariables")->viewport()->update();
  }
  if (now->variables == variables_ && !first) return;
  variables_ = now->variables;
  auto* const selected = gadget<TableView>("MaSelected");
  selected->setSource(std::make_shared<CellTable>("Variable", variables_));
  selected->horizontalHeader()->setSectionResizeMode(0, QHeaderView::Stretch);
}

QString PVelsMain::whyNotAnalyse() {
  const QString why = QString::fromStdString(controller().whyNot(Step::Analyse)).section('\n', 0, 0);
  return why.isEmpty() && variables_.empty() ? "Select a variable first." : why;
}

void PVelsMain::refreshGadgets() {
  const QString why = QString::fromStdString(controller().whyNot(Step::Analyse)).section('\n', 0, 0);
  for (const char* const name : {"BAdd", "BAddAll"}) allow(*gadget<QPushButton>(name), why);
  const QString empty = !why.isEmpty() ? why : variables_.empty() ? "No variable is selected." : QString();
  allow(*gadget<QPushButton>("BRemoveAll"), empty);
  const bool isMarked = !selectedRows("MaSelected").empty();
  allow(*gadget<QPushButton>("BRemove"),
        !empty.isEmpty() || isMarked ? empty : "Mark the variables that are to go, in the list on the right.");
  allow(*gadget<QPushButton>("BReport"), why);
  allow(*gadget<QPushButton>("BUa"), whyNotAnalyse());
  const bool hasMethod = controller().project().prep.sampler != nullptr;
  allow(*gadget<QPushButton>("BSa"), hasMethod ? whyNotAnalyse() : "The sample has no method that measures go with.");
  allow(*gadget<QPushButton>("BPlots"), QString::fromStdString(controller().whyNot(Step::Visualize)));
  allow(*gadget<QPushButton>("BSave"), QString::fromStdString(controller().whyNot(Step::SaveResults)));
  const QString writing = expressionMode_ ? QString() : "No expression is being written.";
  allow(*gadget<QPushButton>("BAddExpr"), writing.isEmpty() ? why : writing);
  allow(*gadget<QPushButton>("BAbortExpr"), writing);
  gadget<QLabel>("MlMode")->setText(expressionMode_ ? "being written" : QString());
  if (expressionMode_) return;
  if (!why.isEmpty()) return say(why);
  say(variables_.empty() ? "Take an output for analysis, or write an expression of outputs."
                         : QString("%1 selected.")
                               .arg(variables_.size() == 1 ? QString("1 variable is")
                                                           : QString("%1 variables are").arg(variables_.size())));
}

std::vector<int> PVelsMain::selectedRows(const char* table) {
  auto* const view = gadget<TableView>(table);
  std::vector<int> rows;
  for (const QItemSelectionRange& range : view->selectionModel()->selection())
    for (int row = range.top(); row <= range.bottom(); ++row) rows.push_back(view->tableModel().sourceRow(row));
  std::ranges::sort(rows);
  rows.erase(std::unique(rows.begin(), rows.end()), rows.end());
  return rows;
}

// Variables.

QString PVelsMain::setWeight(int output, float weight) {
  if (controller().setOutputWeight(output, weight) == Outcome::Busy) return kBusy;
  return {};
}

bool PVelsMain::select(const std::vector<std::string>& texts) {
  const Outcome outcome = controller().selectVariables(texts);
  if (outcome == Outcome::Busy) say(kBusy);
  return outcome == Outcome::Done;
}

void PVelsMain::append(const std::vector<std::string>& texts) {
  std::vector<std::string> all = variables_;
  for (const std::string& text : texts)
    if (std::ranges::find(all, text) == all.end()) all.push_back(text);
  if (all.size() == variables_.size()) {
    if (!texts.empty()) say(QString::fromStdString(texts.front()) + " is on the list already.");
    return;
  }
  if (!select(all)) return;
  gadget<TableView>("MaSelected")->scrollToBottom();
}

// False when the user goes no further.
bool PVelsMain::addOutput(const std::string& output, std::vector<std::string>& texts) {
  const ModelResults& results = controller().project().model.results;
  if (!results.hasTimeAxis()) {
    texts.push_back(output);
    return true;
  }
  PSelectVariable panel(display(), output, resultTimes(results), window());
  panel.centre();
  if (!panel.runModal() || !panel.accepted()) return false;
  if (panel.forExpression()) {
    enterExpression(QString::fromStdString(panel.variables().front()));
    return false;
  }
  texts.insert(texts.end(), panel.variables().begin(), panel.variables().end());
  return true;
}

void PVelsMain::add() {
  if (working_ || !controller().whyNot(Step::Analyse).empty()) return;
  const std::vector<int> rows = selectedRows("MaVariables");
  if (rows.empty()) return refuse(kNoVariable);
  std::vector<std::string> texts;
  const std::vector<std::string> names = outputNames_;
  for (const int row : rows)
    if (static_cast<std::size_t>(row) >= names.size() || !addOutput(names[static_cast<std::size_t>(row)], texts)) break;
  if (!texts.empty()) append(texts);
}

void PVelsMain::addAll() {
  append(OutputVariables::defaultVariables(outputNames_, controller().project().model.results.hasTimeAxis()));
}

void PVelsMain::remove() {
  const std::vector<int> rows = selectedRows("MaSelected");
  if (rows.empty()) return refuse(kNoVariable);
  std::vector<std::string> left;
  for (std::size_t i = 0; i < variables_.size(); ++i)
    if (!std::ranges::binary_search(rows, static_cast<int>(i))) left.push_back(variables_[i]);
  static_cast<void>(select(left));  // what was wrong has been said
}

void PVelsMain::removeAll() {
  if (variables_.empty()) return;
  if (Dialogs::current().question("Warning", "   Deleting all items.\n  Are you sure?", "^Yes", "^No", window()))
    static_cast<void>(select({}));  // what was wrong has been said
}

// What is to be seen of them.

void PVelsMain::ua() {
  if (working_) return;
  if (variables_.empty()) return refuse(kNoVariable);
  const std::vector<int> rows = selectedRows("MaSelected");
  AnalysisRequest request;
  request.variables = variables_;
  request.sensitivity = false;
  if (shown_->uncertainty.variableCount() == 0 || !shown_->table) {
    working_ = true;
    const Outcome outcome = controller().analyse(request);
    working_ = false;
    if (outcome == Outcome::Busy) say(kBusy);
    if (outcome != Outcome::Done) return;
  }
  desk_.open(std::make_unique<PUaSingle>(desk_, controller().analysis(), rows.empty() ? 0 : rows.front()));
}

void PVelsMain::sa() {
  if (working_) return;
  if (variables_.empty()) return refuse(kNoVariable);
  working_ = true;
  openSensitivity(desk_);
  working_ = false;
}

void PVelsMain::plots() {
  if (working_) return;
  working_ = true;
  openPlots(desk_);
  working_ = false;
}

void PVelsMain::report() {
  if (working_) return;
  working_ = true;
  const QString done = makeReport(desk_, window());
  working_ = false;
  if (!done.isEmpty()) say(done);
}

void PVelsMain::save() {
  const auto chosen = chooseResultsFile("Output file for Vels configuration",
                                        {{"*.spc", "vels's files"}, {"*.*", "all files"}}, "spc", window());
  if (!chosen) return;
  const QFileInfo file(chosen->path);
  if (file.exists() ? file.isDir() || !file.isWritable() : !QFileInfo(file.absolutePath()).isWritable())
    return refuse("Can't write on selected file.\n\n" + chosen->path);
  working_ = true;
  const Outcome outcome = controller().saveResultsFile(chosen->path.toStdString());
  working_ = false;
  if (outcome == Outcome::Done) say("Written: " + chosen->path);
}

void PVelsMain::open() {
  if (working_ || controller().mayDiscard(Discard::ForProject) != Outcome::Done) return;
  openResults_();
}

void PVelsMain::dismiss() {
  if (closing()) hide();
}

bool PVelsMain::closing() {
  if (working_) say(kBusy);
  return !working_;
}

}  // namespace tarvex
