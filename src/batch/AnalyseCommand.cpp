#include <algorithm>
#include <cmath>
#include <tuple>

#include "app/Analysis.h"
#include "app/ProjectConfiguration.h"
#include "batch/CommandFiles.h"
#include "batch/Commands.h"
#include "plots/savePicture.h"
#include "postproc/PostProcessorFile.h"
#include "postproc/Quantiles.h"
#include "postproc/ResultExport.h"
#include "report/PictureFiles.h"
#include "report/TableFiles.h"
#include "report/printSection.h"

namespace tarvex {

namespace {

QuantileRequest quantileRequest(const AnalyseOptions& options) {
  constexpr double kPercent = 100.0;
  QuantileRequest request;
  for (const double percent : options.quantiles) request.shares.push_back(percent / kPercent);
  if (std::ranges::none_of(request.shares, [](double share) { return std::isnan(share); }))
    std::ranges::sort(request.shares);
  request.shares.erase(std::unique(request.shares.begin(), request.shares.end()), request.shares.end());
  request.thresholds = options.thresholds;
  request.confidence = options.interval.value_or(kUsualConfidence);
  return request;
}

}  // namespace

int runAnalyse(const AnalyseOptions& options, const Console& console) {
  const auto& [output, csvFile, jsonFile, tables, plots] =
      std::tie(options.output, options.csvFile, options.jsonFile, options.tablesDirectory, options.plotsDirectory);
  CommandFiles files;
  files.reads("post-processor file to read", options.input);
  files.writes("post-processor file", output, kResultsNotWritten);
  files.writes("file of comma-separated values", csvFile, kCannotSave);
  files.writes("JSON file", jsonFile, kCannotSave);
  files.fills("tables", tables, ".txt", kCannotSave);
  const bool histograms = options.uncertainty || !options.sensitivity;
  files.fills("pictures", plots, '.' + options.plotFormat, histograms ? kCannotSave : kCannotCreate);
  ProjectConfiguration project;
  std::string message;
  if (!files.check(message)) return console.fail(message);
  const QuantileRequest wanted = quantileRequest(options);
  if (message = wanted.problem(); !message.empty()) return console.fail(message);
  if (!loadPostProcessorFile(options.input, project.prep, project.model, project.vels, message, console.watched()))
    return console.fail(message, options.input);
  console.warn(message);
  project.hasPrep = project.hasModel = project.hasVels = true;

  const HistogramScale scale = options.logScale ? kLogScale : kLinearScale;
  AnalysisRequest request;
  request.variables = options.variables;
  request.uncertainty = histograms;
  request.sensitivity = options.sensitivity || !options.uncertainty;
  request.tchebyConfidence = options.confidence;
  request.kolmogorovConfidence = options.kolmogorov;
  request.alpha = options.alpha;
  PostProcessor postProcessor(project);
  if (!analyse(postProcessor, request, console.frontEnd)) return kFailed;
  QuantileTable quantiles;
  if (histograms && !computeQuantiles(*postProcessor.snapshot()->table, wanted, quantiles, message, console.watched()))
    return console.fail(message);

  // What takes longest goes first: whoever stops that finds none of the others.
  if (!plots.empty() && !writePictureFiles(project.prep, project.model, project.vels, plots,
                                           *pictureFormat(options.plotFormat), scale, message))
    return console.fail(message);
  if (!tables.empty() && !writeTableFiles(project.prep, project.vels, tables, scale, message))
    return console.fail(message);
  if (!csvFile.empty() && !exportCsv(project.vels, csvFile, message, quantiles)) return console.fail(message);
  if (!jsonFile.empty() && !exportJson(project.prep, project.vels, jsonFile, message, quantiles))
    return console.fail(message);
  if (!output.empty() &&
      !savePostProcessorFile(output, project.prep, project.model, project.vels, message, console.watched()))
    return console.fail(message);

  Document text;
  if (request.uncertainty) {
    reportUncertainty(text, project.vels.uncertainty);
    reportQuantiles(text, quantiles, project.vels.selectedVariables(), project.prep.methodId());
  }
  if (request.uncertainty && options.logScale) reportHistograms(text, project.vels.uncertainty, scale);
  if (request.sensitivity) reportMeasures(text, *project.vels.sensitivity, project.vels.selectedVariables());
  printText(console.out, text);
  return kSucceeded;
}

}  // namespace tarvex
