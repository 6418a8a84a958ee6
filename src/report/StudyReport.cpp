#include "report/StudyReport.h"

#include <fmt/chrono.h>
#include <fmt/format.h>

#include <algorithm>
#include <ctime>
#include <filesystem>

#include "base/TextWriter.h"
#include "model/ModelConfiguration.h"
#include "plots/RunTable.h"
#include "plots/distributionPlot.h"
#include "plots/histogramPlots.h"
#include "plots/measurePlots.h"
#include "plots/runPlots.h"
#include "plots/savePicture.h"
#include "plots/strongestFactors.h"
#include "postproc/TimedVariables.h"
#include "postproc/VelsConfiguration.h"
#include "report/Document.h"
#include "report/Reports.h"
#include "report/StudySections.h"
#include "report/sampleChecksum.h"
#include "report/versions.h"
#include "sampling/PrepConfiguration.h"

namespace tarvex {

namespace {

// Densities stand small, in rows, a few rows a picture so that pages can break between them.
constexpr const char* kPdf = ".pdf";
constexpr int kDensityColumns = 3;
constexpr std::size_t kDensitiesAFigure = 9;
constexpr double kDensityHeight = 210.0;

void addDensities(Document& out, const FactorList& factors) {
  std::vector<Figure> figures;
  std::string left;
  for (std::int32_t i = 0; i < factors.factorCount(); ++i) {
    Figure whole = distributionPlot(factors.factor(i));
    if (whole.charts.empty()) continue;
    auto* density = std::get_if<XyChart>(&whole.charts.front());
    if (density == nullptr) continue;
    density->title = factors.factor(i).name;
    if (figures.empty() || figures.back().charts.size() == kDensitiesAFigure) {
      figures.emplace_back();
      figures.back().columns = kDensityColumns;
    }
    figures.back().charts.push_back(std::move(*density));
  }
  if (!figures.empty()) out.add(Heading{"Densities of the factors", 2});
  for (Figure& figure : figures) {
    const std::size_t rows = (figure.charts.size() + kDensityColumns - 1) / kDensityColumns;
    figure.height = kDensityHeight * static_cast<double>(rows);
    out.add(std::move(figure));
    out.add(Caption{Caption::Of::Figure, "Densities of factors"});
  }
}

// From the statistics, or from the runs where these have no bins.
Figure histogramOf(const PrepConfiguration& prep, const ModelConfiguration& model, const VelsConfiguration& vels,
                   std::int32_t variable, HistogramForm form) {
  const UaStats& statistics = vels.uncertainty;
  RunTable runs;
  std::string message;
  if (isWithoutBins(statistics, variable) &&
      readRunTable(prep, model, vels.outputNames(model), {"V - " + *statistics.name(variable)}, runs, message))
    return histogramPlot({&runs.columns.front()}, form, kLinearScale);
  return histogramPlot(statistics, {variable}, form, kLinearScale);
}

// The columns that sections are made of: all factors, then the analysed variables. Without columns where it can't be
// read, or where it is so large that pictures of single runs say nothing: `missing` then says why.
struct StudyColumns {
  RunTable table;
  std::size_t factors = 0;  // so many come first
  std::string missing = {};
};

StudyColumns readStudyColumns(const StudyParts& study, const Progress& progress) {
  constexpr double kMostCells = 5e7;  // 400 MB
  StudyColumns columns;
  std::vector<std::string> names;
  const FactorList& factors = study.prep.factors;
  for (std::int32_t i = 0; i < factors.factorCount(); ++i) names.push_back("F - " + factors.factor(i).name);
  columns.factors = names.size();
  for (const std::string& variable : study.vels.selectedVariables()) names.push_back("V - " + variable);
  if (static_cast<double>(names.size()) * study.prep.samples.rows() > kMostCells) {
    columns.missing = "Of so many runs and factors rank correlations and scattergrams are left out.";
    return columns;
  }
  std::string problem;
  if (!readRunTable(study.prep, study.model, study.vels.outputNames(study.model), names, columns.table, problem,
                    progress))
    columns.missing = problem;
  return columns;
}

void addScattergrams(Document& out, const StudyParts& study, const StudyColumns& columns, std::int32_t variable) {
  constexpr std::size_t kScattersAFigure = 3;
  constexpr double kScatterHeight = 290.0;
  if (columns.table.columns.empty()) return;
  const RunColumn& output = columns.table.columns[columns.factors + static_cast<std::size_t>(variable)];
  const SensitivityStats* const measures = study.vels.sensitivity.get();
  const bool isMeasured = measures != nullptr && measures->computed && variable < measures->variableCount;
  Figure figure;
  std::string names;
  for (const std::size_t factor :
       strongestFactors(columns.table, output, isMeasured ? measures : nullptr, variable, kScattersAFigure)) {
    Figure one = scatterPlot(columns.table.columns[factor], output);
    if (one.charts.empty()) continue;
    figure.charts.push_back(std::move(one.charts.front()));
    names += (names.empty() ? "" : ", ") + columns.table.columns[factor].name;
  }
  if (figure.charts.empty()) return;
  figure.columns = kScattersAFigure;
  figure.height = kScatterHeight;
  out.add(std::move(figure));
  out.add(Caption{Caption::Of::Figure, output.name + " against its strongest factors: " + names});
}

void addUncertainty(Document& out, const StudyParts& study) {
  constexpr double kHeight = 330.0;
  const UaStats& statistics = study.vels.uncertainty;
  out.add(Heading{"Uncertainty"});
  reportUncertainty(out, statistics);
  reportQuantiles(out, study.quantiles, study.vels.selectedVariables(), study.prep.methodId());
  for (std::int32_t v = 0; v < statistics.variableCount(); ++v) {
    Figure figure = histogramOf(study.prep, study.model, study.vels, v, HistogramForm::Area);
    Figure cumulative = histogramOf(study.prep, study.model, study.vels, v, HistogramForm::Cumulative);
    std::move(cumulative.charts.begin(), cumulative.charts.end(), std::back_inserter(figure.charts));
    figure.columns = 2;
    figure.title = *statistics.name(v);
    figure.height = kHeight;
    out.add(std::move(figure));
    out.add(Caption{Caption::Of::Figure, "Histogram and cumulative curve of " + *statistics.name(v)});
  }
}

// What a picture of measures shows, by its word.
std::string pictureText(const SensitivityStats& statistics, const std::string& word, const std::string& variable) {
  if (word == "plane") return "Plane of Morris, mean size of the effects against their spread, for " + variable;
  if (word == "indices") return "Indices of first and total order of " + variable;
  if (word == "interactions") return "First order and interactions of each factor, of " + variable;
  if (word == "pies") return "Shares of the variance of " + variable;
  for (const MeasureChoice& choice : measureChoices(statistics))
    if (choice.word == word) return choice.title + " of each factor, for " + variable;
  return "Measures of " + variable;
}

// The first of the usual measures over the times at which an output is analysed.
void addCurves(Document& out, const StudyParts& study) {
  const std::vector<TimedVariables> timed =
      timedVariables(study.vels.selectedVariables(), study.vels.outputNames(study.model));
  if (timed.empty()) return;
  out.add(Heading{"Measures over time", 2});
  for (const TimedVariables& times : timed)
    for (const std::int32_t slot : usualSlots(*study.vels.sensitivity)) {
      out.add(measureCurves(*study.vels.sensitivity, times, slot));
      out.add(Caption{Caption::Of::Figure, "Measures of " + times.output + " over time"});
    }
}

void addMeasures(Document& out, const StudyParts& study, const StudyColumns& columns, const Progress& progress) {
  constexpr double kMap = 0.4;  // of the time
  out.add(Heading{"Sensitivity"});
  addCorrelationMap(out, columns.table, columns.factors, progress.part(0.0, kMap));
  if (!study.vels.sensitivity || !study.vels.sensitivity->computed) {
    out.add(Paragraph{"Sensitivity measures: not computed"});
    return;
  }
  addCurves(out, study);
  const std::vector<std::string>& names = study.vels.selectedVariables();
  const std::int32_t count = study.vels.sensitivity->variableCount;
  const Progress pictures = progress.part(kMap, 1.0);
  for (std::int32_t v = 0; v < count && pictures.report(v, count); ++v) {
    const auto index = static_cast<std::size_t>(v);
    const std::string name = index < names.size() ? names[index] : std::to_string(v + 1);
    out.add(Heading{"Sensitivity of " + name, 2});
    reportMeasuresOf(out, *study.vels.sensitivity, v, name);
    for (auto& [word, figure] : measureFigures(*study.vels.sensitivity, v, name)) {
      out.add(std::move(figure));
      out.add(Caption{Caption::Of::Figure, pictureText(*study.vels.sensitivity, word, name)});
    }
    if (index < names.size()) addScattergrams(out, study, columns, v);
  }
}

void addIdentity(Document& out, const PrepConfiguration& prep) {
  out.add(Heading{"To repeat this study"});
  const std::string checksum = sampleChecksum(prep.samples);
  if (prep.samples.rows() > 0 && !checksum.empty())
    out.add(Paragraph{fmt::format("SHA-256 of the sample's table, lines 5 to {} of its file:\n{}",
                                  (prep.samples.order() == 0 ? prep.samples.rows() : prep.samples.columns()) + 4,
                                  checksum)});
  out.add(Paragraph{"The same factors, design and seed give the same sample, digit by digit, on every machine."});
  out.add(Caption{Caption::Of::Table, "What made the numbers"});
  Table table;
  table.addColumn("made with", Table::Align::Left);
  table.addColumn("version", Table::Align::Left);
  for (const auto& [name, version] : versionsInUse()) table.addRow({name, version});
  out.add(std::move(table));
}

}  // namespace

std::string today() {
  const std::time_t now = std::time(nullptr);
  std::tm local{};
  return localtime_r(&now, &local) == nullptr ? std::string() : fmt::format("{:%Y-%m-%d}", local);
}

Document studyReport(const PrepConfiguration& prep, const ModelConfiguration& model, const VelsConfiguration& vels,
                     const ReportWords& words, const QuantileTable& quantiles, const Progress& progress) {
  constexpr double kRead = 0.3, kTimes = 0.6;  // parts of the time: columns, times, pictures
  const StudyParts study{prep, model, vels, quantiles};
  Document out;
  out.title = words.title;
  out.author = words.author;
  out.date = words.date;
  const StudyColumns columns = readStudyColumns(study, progress.part(0.0, kRead));
  out.add(Contents{});
  addStudySummary(out, study);
  addStudyLimits(out, study);
  out.add(Heading{"Factors"});
  reportFactors(out, prep.factors);
  addDensities(out, prep.factors);
  out.add(Heading{"Design"});
  reportDesign(out, prep);
  if (prep.samples.rows() > 0) reportSampleStatistics(out, prep);
  if (columns.missing.empty())
    addDesignCorrelations(out, prep, columns.table);
  else
    out.add(Remark{columns.missing});
  out.add(Heading{"Model"});
  reportResults(out, model, vels);
  addUncertainty(out, study);
  addStudyTimes(out, study, progress.part(kRead, kTimes));
  addMeasures(out, study, columns, progress.part(kTimes, 1.0));
  addGlossary(out, study);
  addIdentity(out, prep);
  return out;
}

bool isReportFile(const std::string& path, std::string& message) {
  const std::filesystem::path suffix = std::filesystem::path(path).extension();
  if (suffix == ".html" || suffix == kPdf) return true;
  message = "A report is a .html or a .pdf file: " + path;
  return false;
}

bool saveDocument(const std::string& path, const Document& document, std::string& message, const Progress& progress) {
  if (!isReportFile(path, message)) return false;
  const bool isPdf = std::filesystem::path(path).extension() == kPdf;
  const std::string content = isPdf ? pdfContent(document, progress) : htmlText(document, progress);
  message = kStoppedText;
  if (progress.stopped()) return false;
  TextWriter out(path);
  if (content.empty()) out.refuse("its pages can't be drawn");
  out << content;
  message = "";
  if (out.commit()) return true;
  message = withProblem(kCannotCreate, out);
  return false;
}

}  // namespace tarvex
