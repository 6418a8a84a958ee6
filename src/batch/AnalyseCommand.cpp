#include "app/Analysis.h"
#include "app/FrontEnd.h"
#include "app/ProjectConfiguration.h"
#include "base/Paths.h"
#include "batch/Commands.h"
#include "batch/PictureFiles.h"
#include "batch/Reports.h"
#include "batch/TableFiles.h"
#include "postproc/PostProcessorFile.h"
#include "postproc/ResultExport.h"

namespace tarvex {

int runAnalyse(const AnalyseOptions& options, const Console& console) {
  // A post-processor file carries directories into which its reader goes: where results go is settled before.
  const std::string output = absolutePath(options.output);
  const std::string csvFile = absolutePath(options.csvFile);
  const std::string jsonFile = absolutePath(options.jsonFile);
  const std::string tables = absolutePath(options.tablesDirectory);
  const std::string plots = absolutePath(options.plotsDirectory);

  ProjectConfiguration project;
  std::string message;
  if (!loadPostProcessorFile(options.input, project.prep, project.model, project.vels, message))
    return console.fail(message);
  if (!message.empty()) console.frontEnd.message(MessageKind::Warning, "Warning", message);
  project.hasPrep = project.hasModel = project.hasVels = true;

  const HistogramScale scale = options.logScale ? kLogScale : kLinearScale;
  AnalysisRequest request;
  request.variables = options.variables;
  request.uncertainty = options.uncertainty || !options.sensitivity;
  request.sensitivity = options.sensitivity || !options.uncertainty;
  request.tchebyConfidence = options.confidence;
  request.kolmogorovConfidence = options.kolmogorov;
  request.alpha = options.alpha;
  if (!analyse(project, request, console.frontEnd)) return kFailed;

  if (!output.empty() && !savePostProcessorFile(output, project.prep, project.model, project.vels, message))
    return console.fail(message);
  if (!csvFile.empty() && !exportCsv(project.vels, csvFile, message)) return console.fail(message);
  if (!jsonFile.empty() && !exportJson(project.prep, project.vels, jsonFile, message)) return console.fail(message);
  if (!tables.empty() && !writeTableFiles(project, tables, scale, message)) return console.fail(message);
  if (!plots.empty() && !writePictureFiles(project, plots, *pictureFormat(options.plotFormat), scale, message))
    return console.fail(message);

  Document text;
  if (request.uncertainty) reportUncertainty(text, project.vels.uncertainty);
  if (request.uncertainty && options.logScale) reportHistograms(text, project.vels.uncertainty, scale);
  if (request.sensitivity) reportMeasures(text, *project.vels.sensitivity, project.vels.selectedVariables());
  printText(console.out, text);
  return kSucceeded;
}

}  // namespace tarvex
