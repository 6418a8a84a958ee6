#include "app/FrontEnd.h"
#include "app/ProjectConfiguration.h"
#include "batch/CommandFiles.h"
#include "batch/CommandLine.h"
#include "batch/Commands.h"
#include "batch/PlotFigures.h"
#include "batch/StudyFile.h"
#include "plots/drawFigure.h"
#include "plots/savePicture.h"
#include "postproc/ResultExport.h"
#include "report/PictureFiles.h"
#include "sampling/SampleFiles.h"
#include "sampling/SampleSelection.h"

namespace tarvex {

namespace {

bool chooseFormat(const PlotOptions& options, PictureFormat& format, std::string& message) {
  const auto chosen = options.format.empty() ? pictureFormatOf(options.output) : pictureFormat(options.format);
  if (!chosen) {
    message = "The name of a picture ends in .svg, .pdf, .ps, .eps or .png, or --format names one of them.\n" +
              options.output;
    return false;
  }
  format = *chosen;
  return true;
}

bool isOfRuns(const std::string& kind) {
  return kind.empty() || kind == "scatter" || kind == "cobweb" || kind == "histogram" || kind == "matrix" ||
         kind == "correlations";
}

bool makeFigure(const PlotOptions& options, const RunSelection& runs, ProjectConfiguration& project,
                const Console& console, Figure& figure, std::string& message) {
  if (isOfRuns(options.kind)) return makeRunFigure(options, runs, figure, message);
  if (options.kind == "distribution" || options.kind == "preview")
    return makeFactorFigure(options, project.prep.factors, figure, message);
  if (options.kind == "times") return makeTimeFigure(options, project, console.frontEnd, figure, message);
  return makeMeasureFigure(options, project, console.frontEnd, figure, message);
}

void setSize(const PlotOptions& options, Figure& figure) {
  constexpr double kUnitsAMillimetre = 96.0 / 25.4;
  const auto chosen = [](const std::optional<double>& millimetres, const std::optional<double>& units, double own) {
    return millimetres ? *millimetres * kUnitsAMillimetre : units.value_or(own);
  };
  figure.width = chosen(options.widthMillimetres, options.width, figure.width);
  figure.height = chosen(options.heightMillimetres, options.height, figure.height);
}

bool setFont(const PlotOptions& options, FigureFont& font, std::string& message) {
  constexpr double kUsualPoints = 9.0;
  font.scale = options.fontSize.value_or(kUsualPoints) / kUsualPoints;
  if (options.font.empty()) return true;
  font.family = options.font;
  if (hasFont(font.family)) return true;
  message = "There is no font \"" + options.font + "\" on this machine.";
  return false;
}

int refuse(const Console& console, const std::string& message) {
  return message.empty() ? kFailed : console.fail(message);
}

int saveRuns(const PrepConfiguration& prep, const RunSelection& selection, const std::string& path,
             const Console& console) {
  const std::vector<std::int32_t> runs = selection.runs();
  std::string message;
  if (!saveSelection(path, prep, runs, message)) return console.fail(message);
  console.out << savedRunsText(prep.samples.rows(), static_cast<std::int32_t>(runs.size())) << '\n';
  return kSucceeded;
}

}  // namespace

int runPlot(const PlotOptions& options, const Console& console) {
  const std::string& output = options.output;
  const std::string& selection = options.selection;
  std::string message;
  PictureFormat format = PictureFormat::Svg;
  if (!output.empty() && !chooseFormat(options, format, message)) return console.fail(message);
  CommandFiles files;
  files.reads("file to read", options.input);
  const bool isHistogram = options.kind == "histogram";
  files.writes("picture", output, isHistogram ? kCannotSave : kCannotCreate);
  files.writes("sample file of the selection", selection, outputNotWritten(selection));
  if (!files.check(message)) return console.fail(message);
  ProjectConfiguration project;
  if (!loadStudyFile(options.input, project, console)) return kFailed;

  const bool hasBounds = !options.filters.empty() || !options.region.empty();
  if (hasBounds && selection.empty() && !isOfRuns(options.kind))
    return console.fail("Bounds leave runs out of pictures of runs; the kind " + options.kind + " shows all of them.");
  RunSelection runs;
  if (isOfRuns(options.kind) || !selection.empty()) {
    if (!project.hasPrep) return console.fail("The file holds no sample.\n" + options.input);
    if (!readRunSelection(options, project, runs, message)) return console.fail(message);
    if (!message.empty()) console.frontEnd.message(MessageKind::Warning, "Warning", message);
  }
  Figure figure;
  if (!output.empty()) {
    if (!makeFigure(options, runs, project, console, figure, message)) return refuse(console, message);
    setSize(options, figure);
    if (!setFont(options, figure.font, message)) return console.fail(message);
    const PictureKind kind = isHistogram ? PictureKind::Uncertainty : PictureKind::Other;
    if (!writePicture(output, figure, format, options.zoom, kind, message)) return console.fail(message);
  }
  return selection.empty() ? kSucceeded : saveRuns(project.prep, runs, selection, console);
}

}  // namespace tarvex
