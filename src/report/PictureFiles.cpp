#include "report/PictureFiles.h"

#include <algorithm>

#include "base/TextWriter.h"
#include "model/ModelConfiguration.h"
#include "plots/drawFigure.h"
#include "plots/histogramPlots.h"
#include "plots/measurePlots.h"
#include "plots/runPlots.h"
#include "plots/savePicture.h"
#include "plots/strongestFactors.h"
#include "postproc/ResultExport.h"
#include "postproc/VelsConfiguration.h"
#include "report/ResultDirectory.h"
#include "sampling/PrepConfiguration.h"

namespace tarvex {

namespace {

constexpr std::size_t kScattergrams = 3;   // of a variable
constexpr std::size_t kCobwebFactors = 6;  // beside the variable: more axes than these are hard to read

std::string refusal(PictureKind kind, const std::string& problem) {
  return std::string(kind == PictureKind::Uncertainty ? kCannotSave : kCannotCreate) + '\n' + problem;
}

bool canDraw(std::string& message) {
  if (hasFont()) return true;
  message = "This system has no font: no picture can be drawn.";
  return false;
}

// Pictures of an analysis on their way into a directory.
class PictureWriter {
 public:
  PictureWriter(const std::string& directory, PictureFormat format) : directory_(directory), format_(format) {}

  void add(const std::string& variable, const std::string& what, const Figure& figure,
           PictureKind kind = PictureKind::Other) {
    static constexpr const char* kSuffixes[] = {".svg", ".pdf", ".ps", ".eps", ".png"};  // as PictureFormat has them
    if (directory_.ok()) kind_ = kind;
    directory_.add(
        variable, what, kSuffixes[static_cast<std::size_t>(format_)],
        [&](const std::string& path, std::string& problem) { return savePicture(path, figure, format_, problem); });
  }
  bool finish(std::string& message) {
    if (directory_.finish()) return true;
    message = refusal(kind_, directory_.problem());
    return false;
  }

 private:
  ResultDirectory directory_;
  PictureFormat format_;
  PictureKind kind_ = PictureKind::Other;  // of the last one that was tried
};

void addRunPictures(const RunTable& table, const RunColumn& output, const SensitivityStats* stats,
                    std::int32_t variable, PictureWriter& pictures) {
  const std::vector<std::size_t> factors = strongestFactors(table, output, stats, variable, kCobwebFactors);
  if (factors.empty()) return;
  RunTable axes;  // the variable first: the runs have their colours from it
  axes.runs = table.runs;
  axes.columns.push_back(output);
  for (const std::size_t factor : factors) axes.columns.push_back(table.columns[factor]);
  pictures.add(output.name, "cobweb", cobwebPlot(axes, {}));
  for (std::size_t k = 0; k < std::min(factors.size(), kScattergrams); ++k) {
    const RunColumn& factor = table.columns[factors[k]];
    pictures.add(output.name, "scatter-" + factor.name, scatterPlot(factor, output));
  }
}

// From the statistics; they have no bins where a value is infinite, and the column has.
Figure histogramOf(const UaStats& stats, std::int32_t variable, const RunColumn& column, HistogramForm form,
                   HistogramScale scale) {
  return isWithoutBins(stats, variable) ? histogramPlot({&column}, form, scale)
                                        : histogramPlot(stats, {variable}, form, scale);
}

// All factors, then the analysed variables.
bool readColumns(const PrepConfiguration& prep, const ModelConfiguration& model, const VelsConfiguration& vels,
                 RunTable& table, std::string& message) {
  std::vector<std::string> names;
  for (std::int32_t i = 0; i < prep.factors.factorCount(); ++i) names.push_back("F - " + prep.factors.factor(i).name);
  for (const std::string& variable : vels.selectedVariables()) names.push_back("V - " + variable);
  // What it may have to say of a success, the analysis has said already.
  return readRunTable(prep, model, vels.outputNames(model), names, table, message);
}

}  // namespace

bool writePicture(const std::string& path, const Figure& figure, PictureFormat format, double zoom, PictureKind kind,
                  std::string& message) {
  if (!canDraw(message)) return false;
  std::string problem;
  if (savePicture(path, figure, format, problem, zoom)) return true;
  message = refusal(kind, problem);
  return false;
}

bool writePictureFiles(const PrepConfiguration& prep, const ModelConfiguration& model, const VelsConfiguration& vels,
                       const std::string& directory, PictureFormat format, HistogramScale scale, std::string& message) {
  if (!canDraw(message)) return false;
  RunTable table;
  if (!readColumns(prep, model, vels, table, message)) return false;
  const std::vector<std::string>& variables = vels.selectedVariables();
  const std::size_t firstOutput = table.columns.size() - variables.size();
  const UaStats& uncertainty = vels.uncertainty;
  const SensitivityStats* stats = vels.sensitivity.get();
  if (stats != nullptr && !stats->computed) stats = nullptr;
  PictureWriter pictures(directory, format);
  for (std::size_t k = 0; k < variables.size(); ++k) {
    const auto v = static_cast<std::int32_t>(k);
    const RunColumn& column = table.columns[firstOutput + k];
    if (v < uncertainty.variableCount()) {
      pictures.add(variables[k], "histogram", histogramOf(uncertainty, v, column, HistogramForm::Area, scale),
                   PictureKind::Uncertainty);
      pictures.add(variables[k], "cumulative", histogramOf(uncertainty, v, column, HistogramForm::Cumulative, scale),
                   PictureKind::Uncertainty);
    }
    if (stats != nullptr)
      for (const auto& [word, figure] : measureFigures(*stats, v, variables[k]))
        pictures.add(variables[k], word, figure);
    addRunPictures(table, column, stats, v, pictures);
  }
  return pictures.finish(message);
}

}  // namespace tarvex
