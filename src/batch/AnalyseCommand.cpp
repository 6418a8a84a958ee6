#include <tuple>

#include "app/Analysis.h"
#include "app/ProjectConfiguration.h"
#include "batch/CommandFiles.h"
#include "batch/Commands.h"
#include "plots/savePicture.h"
#include "postproc/PostProcessorFile.h"
#include "postproc/ResultExport.h"
#include "report/PictureFiles.h"
#include "report/TableFiles.h"
#include "report/printSection.h"

namespace tarvex {

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
  if (!analyse(project, request, console.frontEnd)) return kFailed;

  // What takes longest goes first: whoever stops that finds none of the others.
  if (!plots.empty() && !writePictureFiles(project.prep, project.model, project.vels, plots,
                                           *pictureFormat(options.plotFormat), scale, message))
    return console.fail(message);
  if (!tables.empty() && !writeTableFiles(project.prep, project.vels, tables, scale, message))
    return console.fail(message);
  if (!csvFile.empty() && !exportCsv(project.vels, csvFile, message)) return console.fail(message);
  if (!jsonFile.empty() && !exportJson(project.prep, project.vels, jsonFile, message)) return console.fail(message);
  if (!output.empty() &&
      !savePostProcessorFile(output, project.prep, project.model, project.vels, message, console.watched()))
    return console.fail(message);

  Document text;
  if (request.uncertainty) reportUncertainty(text, project.vels.uncertainty);
  if (request.uncertainty && options.logScale) reportHistograms(text, project.vels.uncertainty, scale);
  if (request.sensitivity) reportMeasures(text, *project.vels.sensitivity, project.vels.selectedVariables());
  printText(console.out, text);
  return kSucceeded;
}

}  // namespace tarvex
