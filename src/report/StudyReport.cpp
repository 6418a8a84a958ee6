#include "report/StudyReport.h"

#include <fmt/format.h>

#include <algorithm>
#include <filesystem>

#include "base/TextWriter.h"
#include "model/ModelConfiguration.h"
#include "plots/RunTable.h"
#include "plots/distributionPlot.h"
#include "plots/histogramPlots.h"
#include "plots/measurePlots.h"
#include "plots/savePicture.h"
#include "postproc/VelsConfiguration.h"
#include "report/Document.h"
#include "report/Reports.h"
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

void addUncertainty(Document& out, const PrepConfiguration& prep, const ModelConfiguration& model,
                    const VelsConfiguration& vels, const QuantileTable& quantiles) {
  constexpr double kHeight = 330.0;
  const UaStats& statistics = vels.uncertainty;
  out.add(Heading{"Uncertainty"});
  reportUncertainty(out, statistics);
  reportQuantiles(out, quantiles, vels.selectedVariables(), prep.methodId());
  for (std::int32_t v = 0; v < statistics.variableCount(); ++v) {
    Figure figure = histogramOf(prep, model, vels, v, HistogramForm::Area);
    Figure cumulative = histogramOf(prep, model, vels, v, HistogramForm::Cumulative);
    std::move(cumulative.charts.begin(), cumulative.charts.end(), std::back_inserter(figure.charts));
    figure.columns = 2;
    figure.title = *statistics.name(v);
    figure.height = kHeight;
    out.add(std::move(figure));
  }
}

void addMeasures(Document& out, const VelsConfiguration& vels) {
  out.add(Heading{"Sensitivity"});
  if (!vels.sensitivity || !vels.sensitivity->computed) {
    out.add(Paragraph{"Sensitivity measures: not computed"});
    return;
  }
  const std::vector<std::string>& names = vels.selectedVariables();
  for (std::int32_t v = 0; v < vels.sensitivity->variableCount; ++v) {
    const auto index = static_cast<std::size_t>(v);
    const std::string name = index < names.size() ? names[index] : std::to_string(v + 1);
    out.add(Heading{"Sensitivity of " + name, 2});
    reportMeasuresOf(out, *vels.sensitivity, v);
    for (auto& [word, figure] : measureFigures(*vels.sensitivity, v, name)) out.add(std::move(figure));
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
  Table table;
  table.addColumn("made with", Table::Align::Left);
  table.addColumn("version", Table::Align::Left);
  for (const auto& [name, version] : versionsInUse()) table.addRow({name, version});
  out.add(std::move(table));
}

}  // namespace

Document studyReport(const PrepConfiguration& prep, const ModelConfiguration& model, const VelsConfiguration& vels,
                     const std::string& title, const QuantileTable& quantiles) {
  Document out;
  out.title = title;
  out.add(Heading{"Factors"});
  reportFactors(out, prep.factors);
  addDensities(out, prep.factors);
  out.add(Heading{"Design"});
  reportDesign(out, prep);
  if (prep.samples.rows() > 0) reportSampleStatistics(out, prep);
  out.add(Heading{"Model"});
  reportResults(out, model, vels);
  addUncertainty(out, prep, model, vels, quantiles);
  addMeasures(out, vels);
  addIdentity(out, prep);
  return out;
}

bool isReportFile(const std::string& path, std::string& message) {
  const std::filesystem::path suffix = std::filesystem::path(path).extension();
  if (suffix == ".html" || suffix == kPdf) return true;
  message = "A report is a .html or a .pdf file: " + path;
  return false;
}

bool saveDocument(const std::string& path, const Document& document, std::string& message) {
  if (!isReportFile(path, message)) return false;
  const bool isPdf = std::filesystem::path(path).extension() == kPdf;
  const std::string content = isPdf ? pdfContent(document) : htmlText(document);
  TextWriter out(path);
  if (content.empty()) out.refuse("its pages can't be drawn");
  out << content;
  if (out.commit()) return true;
  message = withProblem(kCannotCreate, out);
  return false;
}

}  // namespace tarvex
