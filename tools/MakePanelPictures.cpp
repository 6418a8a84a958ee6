// Draws every panel as it looks at work: make-panel-pictures MAIN STUDY.spc MODEL.imd DIRECTORY SUFFIX [dark]
// The log that is shown is model.log of the current directory.
#include <QApplication>
#include <QComboBox>
#include <QEventLoop>
#include <QFile>
#include <QFont>
#include <QHash>
#include <QImage>
#include <QList>
#include <QListWidget>
#include <QPalette>
#include <QPlainTextEdit>
#include <QTabWidget>
#include <QTemporaryDir>
#include <QTextStream>
#include <QTimer>
#include <QWidget>
#include <cstdio>
#include <cstring>
#include <numeric>

#include "app/RunController.h"
#include "factors/factorFields.h"
#include "panels/help/PHelp.h"
#include "panels/help/PHelpViewer.h"
#include "panels/help/PQuickHelp.h"
#include "panels/main/PAbout.h"
#include "panels/main/PExternalModel.h"
#include "panels/main/PGenerate.h"
#include "panels/main/PLinkFactors.h"
#include "panels/main/PLinkOutputs.h"
#include "panels/main/PLogFile.h"
#include "panels/main/PMainPanel.h"
#include "panels/model/PExternal.h"
#include "panels/model/PIntModFacList.h"
#include "panels/model/PIntModel.h"
#include "panels/model/PNewExpression.h"
#include "panels/model/PTryRun.h"
#include "panels/model/PnewFactorName.h"
#include "panels/parts/PParts.h"
#include "panels/parts/PPartsRun.h"
#include "panels/plots/PCobSelect.h"
#include "panels/plots/PCobwebs.h"
#include "panels/plots/PHistogram.h"
#include "panels/plots/PPicture.h"
#include "panels/plots/PPlots.h"
#include "panels/plots/PScatter.h"
#include "panels/plots/PSingleFactor.h"
#include "panels/prep/PCorrelation.h"
#include "panels/prep/PCorrelationValue.h"
#include "panels/prep/PGraphics.h"
#include "panels/prep/PInputFactors.h"
#include "panels/prep/PInspector.h"
#include "panels/prep/POutputSelection.h"
#include "panels/prep/PPrepMain.h"
#include "panels/prep/PTruncation.h"
#include "panels/prep/PVisInputFactors.h"
#include "panels/prep/editFactor.h"
#include "panels/sampling/PGroupSelect.h"
#include "panels/sampling/makeMethodPanel.h"
#include "panels/vels/PReport.h"
#include "panels/vels/PSaRandomSelect.h"
#include "panels/vels/PSelectVariable.h"
#include "panels/vels/PUaSelect.h"
#include "panels/vels/PUaSetting.h"
#include "panels/vels/PUaSingle.h"
#include "panels/vels/PVelsMain.h"
#include "panels/vels/ResultDesk.h"
#include "panels/vels/openSensitivity.h"
#include "parts/Ledger.h"
#include "plots/runPlots.h"
#include "postproc/OutputReference.h"
#include "postproc/TimeBands.h"
#include "sampling/FastSampler.h"
#include "sampling/SamplerSettings.h"
#include "toolkit/Application.h"
#include "toolkit/ChartView.h"
#include "toolkit/Display.h"
#include "toolkit/SquareField.h"
#include "toolkit/TableView.h"
#include "toolkit/Theme.h"

namespace tarvex {
namespace {

constexpr int kFontPixels = 12;
constexpr double kSomeWay = 42.0;  // percent
constexpr int kRuns = 10'000;
constexpr double kSomeSeconds = 1.25;
constexpr int kSomeMethod = 4;
constexpr int kSlice = 20;  // ms
constexpr int kTries = 500;
constexpr int kFailedPart = 407;
constexpr int kContents = 500;  // ms; the table of contents is made beside

// Small files: as a table of colours where there are few enough, and without transparency.
QImage smallest(const QImage& image) {
  constexpr std::size_t kMostIndexed = 256;
  QList<QRgb> table;
  QHash<QRgb, int> places;
  QImage indexed(image.size(), QImage::Format_Indexed8);
  indexed.setDevicePixelRatio(image.devicePixelRatio());
  for (int y = 0; y < image.height(); ++y) {
    uchar* const line = indexed.scanLine(y);
    for (int x = 0; x < image.width(); ++x) {
      const QRgb colour = image.pixel(x, y) | 0xff000000U;
      auto found = places.find(colour);
      if (found == places.end()) {
        if (static_cast<std::size_t>(table.size()) == kMostIndexed) return image.convertToFormat(QImage::Format_RGB888);
        found = places.insert(colour, static_cast<int>(table.size()));
        table.append(colour);
      }
      line[x] = static_cast<uchar>(*found);
    }
  }
  indexed.setColorTable(table);
  return indexed;
}

// A line a gadget: class and name, place, text, and whether it can be used.
QString described(const QWidget& window) {
  QString text;
  QTextStream out(&text);
  const auto line = [&](const QWidget& widget) {
    if (widget.objectName().isEmpty() || widget.objectName().startsWith("qt_") || !widget.isVisibleTo(&window)) return;
    const QPoint at = widget.mapTo(&window, QPoint());
    out << widget.metaObject()->className() << ' ' << widget.objectName() << "  " << at.x() << ',' << at.y() << ' '
        << widget.width() << 'x' << widget.height() << (widget.isEnabled() ? "" : "  insensitive");
    for (const char* const property : {"text", "plainText", "currentText", "title", "value"}) {
      QString said = widget.property(property).toString();
      if (!said.isEmpty()) out << "  '" << said.section('\n', 0, 0) << '\'';  // what follows may be this machine's
    }
    out << '\n';
  };
  out << window.windowTitle() << '\n';
  line(window);
  for (const QWidget* const widget : window.findChildren<QWidget*>()) line(*widget);
  return text;
}

void wait(int milliseconds) {
  QEventLoop loop;
  QTimer::singleShot(milliseconds, &loop, &QEventLoop::quit);
  loop.exec();
}

// Saves panels as pictures; says which it couldn't.
class Pictures {
 public:
  Pictures(QString directory, QString suffix) : directory_(std::move(directory)), suffix_(std::move(suffix)) {}

  void draw(const QString& name, Panel& panel) {
    if (!panel.show()) {
      failed_ = true;
      return;
    }
    Application::drainEvents();
    // Large charts are drawn slice by slice.
    for (const ChartView* const chart : panel.window()->findChildren<ChartView*>())
      for (int tries = 0; tries < kTries && chart->isVisible() && !chart->isReady(); ++tries) wait(kSlice);
    const QString path = directory_ + '/' + name + suffix_ + ".png";
    if (!smallest(panel.window()->grab().toImage()).save(path, "PNG", kStrongest)) failedTo(path);
    if (suffix_ == "-light-1x") {
      QFile dump(directory_ + '/' + name + ".txt");
      if (!dump.open(QIODevice::WriteOnly) || dump.write(described(*panel.window()).toUtf8()) < 0)
        failedTo(dump.fileName());
    }
    panel.hide();
  }
  bool failed() const { return failed_; }

 private:
  static constexpr int kStrongest = 0;  // Qt's word for the smallest file

  void failedTo(const QString& path) {
    failed_ = true;
    std::fprintf(stderr, "%s can't be written\n", qPrintable(path));
  }

  QString directory_;
  QString suffix_;
  bool failed_ = false;
};

// A flood of a river: a factor of most kinds.
std::shared_ptr<FactorList> floodFactors() {
  const struct {
    const char* name;
    const char* kind;
    const char* parameters;
    const char* note;
  } rows[] = {{"flow", "LogNormal", "7.04 0.6", "m3 a second, yearly maxima"},
              {"roughness", "Normal", "30 7.5 0.02 0.98", "Strickler"},
              {"upstream", "Triangular", "54 55 56", "m"},
              {"downstream", "Beta", "2 3 49 51", "m"},
              {"dike", "Uniform", "7 8 0.25; 8 9 0.5; 9 10 0.25", "m"},
              {"width", "Constant", "300", "m"},
              {"years", "Exponential", "0.05", "until the next flood"},
              {"gate", "Discrete", "0 0.9; 1 0.08; 2 0.02", "gates that fail"},
              {"repair", "Gamma", "3 0.5", "days"},
              {"life", "Weibull", "1.8 40", "years"},
              {"scale", "LogUniform", "0.01 10", ""},
              {"slope", "Relation", "sqrt((upstream - downstream) * 0.0002)", ""}};
  auto list = std::make_shared<FactorList>();
  std::string message;
  for (const auto& row : rows) {
    std::unique_ptr<Factor> factor = readFactorFields(row.kind, row.parameters, nullptr, message);
    if (!factor) continue;
    factor->name = row.name;
    factor->note = row.note;
    list->addFactor(std::move(factor));
  }
  return list;
}

// A tree, a matrix that contradicts itself, a Stein sample, and what they look like.
void drawCorrelations(const Display& display, Pictures& pictures) {
  const std::shared_ptr<FactorList> list = floodFactors();
  const bool linked = list->link(2, 0, 0.7) && list->link(3, 2, 0.45) && list->link(1, 0, -0.3);
  bool written = true;
  const struct {
    int row, column;
    float value;
  } cells[] = {{0, 1, 0.9F}, {0, 2, 0.9F}, {1, 2, -0.9F}, {4, 5, 0.25F}, {6, 8, -0.6F}};
  for (const auto& cell : cells) written = list->setMatrix(cell.row, cell.column, cell.value) && written;
  const double rows[][12] = {{950.2, 31.5, 55.01, 49.92, 7.4, 300, 12.5, 0, 1.2, 44.1, 0.5, 0.03},
                             {1210.7, 27.1, 55.3, 50.2, 8.2, 300, 3.1, 0, 2.6, 31.6, 0.07, 0.031},
                             {804.9, 35.2, 54.6, 49.7, 7.9, 300, 25.8, 1, 4.4, 12.9, 2.1, 0.031}};
  written = list->steinInfo.allocate(12) && written;
  for (const auto& row : rows) written = list->steinInfo.addRow(row) > 0 && written;
  if (!linked || !written) return;
  list->steinFileName = "flood.txt";
  const char* const pages[] = {"tree", "matrix", "Stein", "preview"};
  for (int page = 0; page < 4; ++page) {
    list->correlationMode = page < 2 ? page : page == 2 ? kSteinSample : kDependenceTree;
    PCorrelation panel(display, *list, false, nullptr);
    if (page == 3) panel.call("plot");
    panel.gadget<QTabWidget>("NoCorrelation")->setCurrentIndex(page);
    pictures.draw(QString("PCorrelation-") + pages[page], panel);
  }
  PCorrelationValue value(display, "roughness with flow", -0.3, nullptr);
  pictures.draw("PCorrelationValue", value);
}

void drawPrep(const Display& display, Pictures& pictures) {
  const std::shared_ptr<FactorList> factors = floodFactors();
  PrepSettings settings;
  std::string message;
  if (!settings.factors.copyFrom(*factors, message)) return;
  settings.sampler = makeSampler(kLatin);
  PPrepMain prep(display, std::move(settings), {}, false, nullptr);
  pictures.draw("PPrepMain", prep);
  PInputFactors list(display, factors, false, nullptr);
  pictures.draw("PInputFactors", list);
  PInputFactors none(display, std::make_shared<FactorList>(), false, nullptr);
  pictures.draw("PInputFactors-empty", none);
  for (std::int32_t i = 0; i < factors->factorCount(); ++i) {
    const Factor& factor = factors->factor(i);
    const auto panel = makeDefinition(display, factor, {factors.get(), i, false}, nullptr);
    pictures.draw(QString::fromStdString("PDefinition-" + factor.typeName), *panel);
  }
  drawCorrelations(display, pictures);
  PInspector inspector(display, factors->factor(0), nullptr);
  pictures.draw("PInspector", inspector);
  PGraphics graphics(display, *factors, 0, nullptr);
  pictures.draw("PGraphics", graphics);
  PTruncation truncation(display, *factors, nullptr);
  pictures.draw("PTruncation", truncation);
  PVisInputFactors view(display, factors, nullptr);
  pictures.draw("PVisInputFactors", view);
  POutputSelection output(display, factors, 0, nullptr);
  pictures.draw("POutputSelection", output);
}

// Each method's panel, with settings that have something to say.
void drawMethods(const Display& display, Pictures& pictures) {
  const std::shared_ptr<FactorList> factors = floodFactors();
  std::vector<SamplerSettings> designs(kMethodCount);
  for (std::int32_t method = 0; method < kMethodCount; ++method) {
    SamplerSettings& design = designs[static_cast<std::size_t>(method)];
    design.method = method;
    for (const Setting setting : settingsOf(method)) {
      if (setting == Setting::Runs) design.runs = kRuns;
      if (setting == Setting::Seed) design.seed = 1;
    }
  }
  designs[kFast].mode = FastSampler::kGroups;
  designs[kFast].groups = {{"river", {"flow", "roughness"}}, {"levels", {"upstream", "downstream"}}};
  designs[kMorris].trajectories = 8;
  designs[kMorris].levels = 4;
  designs[kRepLatin].baseDesign = 100;
  designs[kRepLatin].replications = 10;
  designs[kSobol].baseSize = 256;
  designs[kSobol].order = 2;
  designs[kFixed].rows.emplace();
  for (const SamplerSettings& design : designs) {
    factors->correlationMode = design.method == kRepLatin ? kImanConover : kNoCorrelation;
    std::string message;
    const std::unique_ptr<Sampler> sampler = makeSampler(design, *factors, message);
    if (!sampler) std::fprintf(stderr, "%s\n", message.c_str());
    const auto panel = makeMethodPanel(display, design.method, {factors.get(), sampler.get(), false}, nullptr);
    if (panel) pictures.draw(methodKind(design.method).file, *panel);
  }
  PGroupSelect members(display, designs[kFast].groups.front(), {"dike", "years", "gate"}, nullptr);
  pictures.draw("PGroupSelect", members);
}

void drawModel(const Display& display, const InternalModel& model, const PrepConfiguration& prep, Pictures& pictures) {
  ModelContext context;
  for (const ModelVariable& input : model.variables()) context.factors.push_back(input.name);
  context.rows = prep.samples.rows();
  context.trialRow = [&](std::int32_t row, TrialRow& trial, std::string& message) {
    return readTrialRow(prep, row, trial, message);
  };
  context.tryModel = [](const ModelChoice&, std::int32_t, const std::function<bool()>&, TrialReport& report) {
    report.row.title = "row 1 of the sample";
    report.command = "\"/home/user/flood\" \"/tmp/trial.sam\"";
    report.directory = "/home/user";
    report.printed = "flood 2.1: reading /tmp/trial.sam, 1 run of 5 factors\nwritten: flood.out\n";
    report.exitCode = 0;
    report.seconds = kSomeSeconds;
    report.outputFile = "/home/user/flood.out";
    report.lines = {"2", "level", "overflow", "time = no", "1", "52.31 none"};
    report.badLine = report.lines.size();
    report.problem =
        "Error reading model output file\n/home/user/flood.out:6: expected a number, found 'none' (run 0, output "
        "overflow)";
  };
  ModelChoice choice;
  choice.setExternal("/home/user/flood", "/home/user/flood.out", 0);
  choice.kind = kExternalExecutable;
  PExternal external(display, choice, context, nullptr);
  pictures.draw("PExternal", external);
  ModelChoice workbook;
  workbook.setExternal("Excel Application", "/home/user/flood.ods", 1);
  workbook.kind = kExternalExecutable;
  workbook.cells = {{{"x1", "Model", 2, 1}, {"x2", "Model", 3, 1}},
                    {{"level", "Model", 8, 5}, {"cost", "Money", 3, 2}}};
  PExternal cells(display, workbook, context, nullptr);
  pictures.draw("PExternal-cells", cells);
  PTryRun attempt(display, choice, context, nullptr);
  attempt.call("tryRun");
  pictures.draw("PTryRun", attempt);
  PIntModel editor(display, model, context, nullptr);
  pictures.draw("PIntModel", editor);
  TrialRow trial;
  std::string message;
  if (!readTrialRow(prep, 0, trial, message)) return;
  PNewExpression equation(display, {model, 0, inputsOf(model, trial), trial.title}, nullptr);
  pictures.draw("PNewExpression", equation);
  PIntModFacList inputs(display, model, nullptr);
  pictures.draw("PIntModFacList", inputs);
  PnewFactorName name(
      display, "x1", "x1 is used by y.", [](const QString&) { return QString(); }, nullptr);
  pictures.draw("PnewFactorName", name);
}

// A run of a thousand parts that has stopped because two of them failed.
bool makePartsRun(const RunDirectory& run) {
  constexpr std::int32_t kDone = 611;
  RunRecord record;
  record.directory = "/home/user";
  record.sampleFile = "flood.sam";
  record.executable = "/home/user/flood";
  record.outputFile = "flood.out";
  record.resultFile = "flood.sam.run/result.spc";
  record.parts = splitRows(kRuns, kRuns / 10);
  std::vector<LedgerEntry> entries = {
      {"started"}, {"done", {}, 1}, {"failed", {kFailedPart, kFailedPart + 100}, 1}, {"sent"}};
  entries[0].host = "n1";
  entries[0].text = "local";
  for (std::int32_t part = 0; part < kDone; ++part)
    if (part != kFailedPart && part != kFailedPart + 100) entries[1].parts.push_back(part);
  entries[2].host = "n1";
  entries[2].code = 3;
  entries[2].text = "code 3: flood: the river is dry in run 7";
  for (std::int32_t part = kDone; part < kDone + 4; ++part) entries[3].parts.push_back(part);
  Ledger ledger;
  std::vector<LedgerEntry> none;
  std::string message;
  const std::string log = "flood 2.1: reading sample.sam, 10 runs of 5 factors\nflood: the river is dry in run 7\n";
  return makeDirectories(run.attempt(kFailedPart, 1), message) && record.save(run.record(), message) &&
         ledger.open(run.ledger(), none, message) && (!none.empty() || ledger.append(entries, message)) &&
         writePlainFile(run.attempt(kFailedPart, 1) + "/log", log, message);
}

void drawParts(PMainPanel& main, Pictures& pictures) {
  const RunDirectory run("flood.sam.run");
  PartsRequest request;
  request.settings.policy = FailurePolicy::Retry;
  request.settings.repeats = 2;
  request.directory = "/home/user/flood.sam.run";
  PParts settings(
      main.display(), request, request.directory, [](const PartsRequest&, std::string&) { return false; }, nullptr);
  pictures.draw("PParts", settings);
  if (!makePartsRun(run)) return;
  PPartsRun panel(main.display(), main.controller(), run.path(), {}, nullptr);
  panel.gadget<SquareField>("FdParts")->select(kFailedPart);
  pictures.draw("PPartsRun", panel);
}

// The runs of the study, brushed: one selection in all of them.
void drawPlots(ResultDesk& desk, Pictures& pictures) {
  const std::shared_ptr<Selection> selection = desk.selection();
  if (!selection) return;
  const auto count = selection->table()->columns.size();
  PPlots plots(desk, selection);
  pictures.draw("PPlots", plots);
  const auto turnTo = [&](int page, const char* name) {
    plots.gadget<QTabWidget>("NoPlots")->setCurrentIndex(page);
    pictures.draw(name, plots);
  };
  std::vector<std::size_t> all(count);
  std::iota(all.begin(), all.end(), 0);
  const RunColumn& output = selection->table()->columns.back();
  const auto [lower, upper] = finiteRange(output);
  std::string message;
  PScatter whole(desk, selection, 0, count - 1);
  pictures.draw("PScatter", whole);
  if (!selection->setFilter(count - 1, (lower + upper) / 2.0, upper, message)) return;
  turnTo(1, "PPlots-runs");
  turnTo(2, "PPlots-correlations");
  PCobwebs cobwebs(desk, selection, all);
  pictures.draw("PCobwebs", cobwebs);
  PCobSelect bounds(desk.display(), *selection->table(), all, selection->filters(), nullptr);
  pictures.draw("PCobSelect", bounds);
  PScatter brushed(desk, selection, 0, count - 1);
  pictures.draw("PScatter-brushed", brushed);
  PHistogram histogram(desk, selection, all);
  pictures.draw("PHistogram", histogram);
  PSingleFactor single(desk, selection, count - 1);
  pictures.draw("PSingleFactor", single);
  std::vector<const RunColumn*> columns;
  for (const RunColumn& column : selection->table()->columns) columns.push_back(&column);
  PPicture matrix(desk, selection, "Scattergrams", scatterMatrix(columns), all);
  pictures.draw("PPicture", matrix);
}

// The post-processor over the results of the study, whose variables they are.
void drawResults(PMainPanel& main, Pictures& pictures) {
  ResultDesk desk(main.display(), main.controller(), nullptr);
  const Display& display = main.display();
  static_cast<void>(main.controller().selectVariables({"y", "y ** 2", "exp(y / 4)"}));
  PVelsMain vels(desk, [] {});
  vels.gadget<QPlainTextEdit>("TExpression")->setPlainText("y * (1 + y");
  pictures.draw("PVelsMain", vels);
  PReport report(desk, {"Dose at the fence", "A. Author", "2026-11-22"}, nullptr);
  pictures.draw("PReport", report);
  PSelectVariable select(display, "Dose", {0.0, 1.0, 2.5, 10.0, 100.0}, nullptr);
  select.gadget<QComboBox>("SelTime")->setCurrentIndex(1);
  select.call("changeSel");
  pictures.draw("PSelectVariable", select);
  PUaSelect some(display, {"y", "y ** 2", "exp(y / 4)"}, {0}, {}, nullptr);
  pictures.draw("PUaSelect", some);
  PUaSetting settings(display, {}, "y has values below 0, which have no logarithm.", nullptr);
  pictures.draw("PUaSetting", settings);
  AnalysisRequest request;
  request.variables = main.controller().project().vels.selectedVariables();
  request.sensitivity = false;
  if (main.controller().analyse(request) != Outcome::Done) return;
  PUaSingle single(desk, main.controller().analysis(), 0);
  pictures.draw("PUaSingle", single);
  const char* const pages[] = {"chart", "points", "quantiles"};
  for (int page = 1; page < 3; ++page) {
    single.gadget<QTabWidget>("NoVariable")->setCurrentIndex(page);
    pictures.draw(QString("PUaSingle-") + pages[page], single);
  }
}

// The first output over time, analysed at two of its times, and what plots show of them.
void drawTimes(ResultDesk& desk, Pictures& pictures) {
  const ProjectConfiguration& project = desk.controller().project();
  const std::vector<double> times = resultTimes(project.model.results);
  const std::string output = project.vels.outputNames(project.model).front();
  AnalysisRequest request;
  for (const std::size_t part : {3, 2}) request.variables.push_back(timeName(output, times[times.size() / part]));
  if (desk.controller().analyse(request) != Outcome::Done) return;
  PUaSingle single(desk, desk.controller().analysis(), 1);
  single.gadget<QTabWidget>("NoVariable")->setCurrentIndex(3);
  pictures.draw("PUaSingle-times", single);
  const std::shared_ptr<Selection> selection = desk.selection();
  if (!selection) return;
  const std::size_t last = selection->table()->columns.size() - 1;
  PScatter scatter(desk, selection, 0, last);
  pictures.draw("PScatter-times", scatter);
  PCobwebs cobwebs(desk, selection, {0, 1, 2, last - 1, last});
  pictures.draw("PCobwebs-times", cobwebs);
}

// The panel that the last call opened, as `name`.
void drawLast(ResultDesk& desk, const QString& name, Pictures& pictures) {
  if (!desk.panels().empty()) pictures.draw(name, *desk.panels().back());
}

// What is opened from the regression's panel.
void drawFromRegression(ResultDesk& desk, Pictures& pictures) {
  openSensitivity(desk);
  if (desk.panels().empty()) return;
  Panel& panel = *desk.panels().back();
  panel.gadget<QTabWidget>("NoIndexes")->setCurrentIndex(1);
  pictures.draw("PSaRandom-table", panel);
  if (!panel.show()) return;
  auto* const sheet = panel.gadget<TableView>("ShIndexes");
  sheet->setCurrentIndex(sheet->tableModel().index(1, 0));
  panel.call("doppioClick");
  drawLast(desk, "PForecast", pictures);
  panel.call("allMeasures");
  drawLast(desk, "PSaSingle", pictures);
  panel.call("visualSA");
  if (desk.panels().empty() || desk.panels().back()->name() != "VisualSA") return;
  Panel& visual = *desk.panels().back();
  visual.gadget<QListWidget>("SlAvailFac")->item(0)->setSelected(true);
  visual.gadget<QListWidget>("SlAvailVar")->item(0)->setSelected(true);
  visual.call("right");
  pictures.draw("PVisualSA", visual);
}

// The measures of each method, by demonstration cases and golden results.
void drawMeasures(const Display& display, const QString& mainDirectory, RunController& controller, Pictures& pictures) {
  const struct {
    QString file;
    const char* name;
    int form;  // of the picture
    int page;
  } results[] = {{mainDirectory + "/Demo/levelE.dem", "PSaRandom", 0, 0},
                 {mainDirectory + "/Demo/sobolG0.dem", "PSaMorris", 0, 0},
                 {"unit-classic.spc", "PSaFast", 1, 0},
                 {mainDirectory + "/Demo/sobolG2.dem", "PSaFastTO", 0, 0},
                 {mainDirectory + "/Demo/sobolG2.dem", "PSaFastTO-pies", 2, 0},
                 {mainDirectory + "/Demo/sobolG2.dem", "PSaFastTO-table", 0, 1},
                 {mainDirectory + "/Demo/sobolG3.dem", "PSaImpMeasures", 0, 0},
                 {mainDirectory + "/Demo/Ishigami.dem", "PSaSobol", 0, 0},
                 {"unit-order2.spc", "PSaSobol-terms", 1, 0},
                 {"unit-order2.spc", "PSaSobol-table", 0, 1}};
  for (const auto& result : results) {
    if (controller.loadResultsFile(result.file.toStdString()) != Outcome::Done) continue;
    ResultDesk desk(display, controller, nullptr);
    openSensitivity(desk);
    if (desk.panels().empty()) continue;
    Panel& panel = *desk.panels().back();
    panel.gadget<QComboBox>("OForm")->setCurrentIndex(result.form);
    panel.call("changePie");
    panel.gadget<QTabWidget>("NoIndexes")->setCurrentIndex(result.page);
    pictures.draw(result.name, panel);
  }
  ResultDesk desk(display, controller, nullptr);
  if (controller.loadResultsFile((mainDirectory + "/Demo/levelE.dem").toStdString()) == Outcome::Done)
    drawFromRegression(desk, pictures);
  const auto snapshot = controller.analysis();
  if (!snapshot->sensitivity) return;
  PSaRandomSelect components(display, *snapshot->sensitivity, snapshot->variables, {{0, 2, 4}, {0}}, nullptr);
  pictures.draw("PSaRandomSelect", components);
  drawTimes(desk, pictures);
}

bool drawAll(const Display& display, char** argv, Pictures& pictures) {
  PMainPanel main(display, "PMainPanel", "Tarvex", argv[1]);
  pictures.draw("PMainPanel-start", main);
  main.openFile(argv[2]);
  main.call("monteCarlo");
  pictures.draw("PMainPanel", main);
  PAbout about(display, nullptr);
  pictures.draw("PAbout", about);
  PGenerate generate(display, "generation", "Sample generation", kRuns, nullptr);
  generate.setPercentage(kSomeWay);
  generate.setStatus("Output file: /home/user/flood.sam");
  pictures.draw("PGenerate", generate);
  PExternalModel run(display, "External model execution", "/home/user/flood", "/home/user/flood.sam", nullptr);
  pictures.draw("PExternalModel", run);
  PLogFile log(display, "model.log", nullptr);
  pictures.draw("PLogFile", log);
  PHelp help(display, "Help - Ishigami", "Ishigami model description", "../help/Ishigami.bmp", "cases", nullptr);
  pictures.draw("PHelp", help);
  PQuickHelp quick(display, nullptr);
  quick.showMethod(kSomeMethod);
  pictures.draw("PQuickHelp", quick);
  QTemporaryDir cache;
  PHelpViewer viewer(display, cache.path());
  viewer.serve(HelpCommand::Topic, "morris");
  wait(kContents);
  pictures.draw("PHelpViewer", viewer);
  drawPrep(display, pictures);
  drawMethods(display, pictures);
  InternalModel model;
  std::string message;
  if (!loadModelFile(argv[3], model, message)) {
    std::fprintf(stderr, "%s\n", message.c_str());
    return false;
  }
  PLinkFactors link(display, main.controller().project().prep.factors, model, nullptr);
  pictures.draw("PLinkFactors", link);
  const OutputLink outputs{{"dose(I)", "dose(chain)"}, {"dose_I_", "dose_chain_"}, {"doseI", "doseChain"}};
  PLinkOutputs names(display, outputs, nullptr);
  pictures.draw("PLinkOutputs", names);
  drawModel(display, model, main.controller().project().prep, pictures);
  drawParts(main, pictures);
  ResultDesk desk(display, main.controller(), nullptr);
  drawPlots(desk, pictures);
  drawResults(main, pictures);
  drawMeasures(display, argv[1], main.controller(), pictures);
  return !pictures.failed();
}

}  // namespace
}  // namespace tarvex

int main(int argc, char** argv) {
  if (argc < 6) return 2;
  tarvex::Application application(argc, argv, "Tarvex", "");
  QFont font("DejaVu Sans");
  font.setPixelSize(tarvex::kFontPixels);
  QApplication::setFont(font);
  QApplication::setCursorFlashTime(0);
  const bool dark = argc > 6 && std::strcmp(argv[6], "dark") == 0;
  QApplication::setPalette(dark ? QPalette(Qt::white, Qt::black, Qt::black, Qt::black, Qt::black, Qt::white, Qt::black)
                                : QPalette());
  tarvex::applyTheme();
  application.display().appendToSearchPath(QString(argv[1]) + "/Tarvex/TarvexPanels");
  tarvex::Pictures pictures(argv[4], argv[5]);
  return tarvex::drawAll(application.display(), argv, pictures) ? 0 : 1;
}
