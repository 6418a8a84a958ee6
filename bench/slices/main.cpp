// A table of how long the user's events wait: of each operation on a study of many runs the longest time of this thread
// between two reports of progress, the progress that the second of them told, and the whole time, in milliseconds.
//   tarvex-slices [RUNS [FACTORS [METHOD]]]     1000000 20; of one method, by its number, alone
#include <cairo.h>
#include <time.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <utility>

#include "Cases.h"
#include "app/PostProcessor.h"
#include "app/ProjectConfiguration.h"
#include "app/Selection.h"
#include "base/WorkingFile.h"
#include "model/InternalRun.h"
#include "plots/CairoStream.h"
#include "plots/FigureIndex.h"
#include "plots/FigureLayout.h"
#include "plots/drawFigure.h"
#include "plots/runPlots.h"
#include "plots/savePicture.h"
#include "postproc/PostProcessorFile.h"
#include "sampling/SampleFiles.h"
#include "sampling/SampleSelection.h"
#include "sampling/SamplerFactory.h"

namespace tarvex::bench {
namespace {

constexpr std::int32_t kDone = 100;  // percent

double milliseconds() {
  return millisecondsOf(CLOCK_THREAD_CPUTIME_ID);
}

// A row of the table: what an operation does between the object's making and its end.
class Slices {
 public:
  explicit Slices(std::string operation) : operation_(std::move(operation)) {}
  ~Slices() {
    mark();
    std::printf("%-48s %8d %10.1f %6.3f %12.1f\n", operation_.c_str(), reports_ - 1, longest_, longestEnd_,
                last_ - start_);
    static_cast<void>(std::fflush(stdout));
  }
  Slices(const Slices&) = delete;
  Slices& operator=(const Slices&) = delete;

  // `done` says where in the operation, 0 to 1.
  bool mark(double done = 1.0) {
    const double now = milliseconds();
    if (now - last_ > longest_) {
      longest_ = now - last_;
      longestEnd_ = done;
    }
    last_ = now;
    ++reports_;
    return true;
  }
  const Progress& progress() const { return progress_; }

 private:
  std::string operation_;
  double start_ = milliseconds();
  double last_ = start_;
  double longest_ = 0.0;
  double longestEnd_ = 0.0;
  int reports_ = 0;
  Progress progress_{[this](double done) { return mark(done); }};
};

PrepConfiguration generated(std::int32_t method, std::int32_t factors, std::int32_t runs, bool ranked = false) {
  PrepConfiguration prep = preparedConfiguration(method, factors, runs);
  if (ranked) {
    prep.factors.correlationMode = kImanConover;
    require(prep.prepareGeneration(), prep.errorText());
  }
  Slices slices("generate, " + std::string(methodNameOf(method)) + (ranked ? ", ranked" : ""));
  for (std::int32_t target = 1, percent = 0; percent < kDone; ++target) {
    percent = prep.generate(target, slices.progress());
    require(percent >= 0, prep.errorText());
    slices.mark();
  }
  return prep;
}

void statistics(const PrepConfiguration& prep) {
  const Slices slices("statistics of the sample");
  require(SampleStatistics().compute(prep.samples, slices.progress()), prep.samples.errorText());
}

// The sum of the first two factors, and a curved one.
ModelConfiguration runOf(const PrepConfiguration& prep) {
  ModelConfiguration model;
  auto equations = std::make_unique<InternalModel>();
  for (std::int32_t i = 0; i < prep.factors.factorCount(); ++i)
    require(equations->addVariable(prep.factors.factor(i).name), equations->errorText());
  require(equations->addExpression(0, "y", "x1+2*x2+sin(x3)*x4", 1), equations->errorText());
  InternalRun run(*equations, prep.samples, model.results);
  require(run.prepare(), run.errorText());
  Slices slices("run of the equations");
  std::int32_t percent = 0;
  for (float target = 1.0f; percent < kDone; target += 1.0f) {
    percent = run.advance(target, slices.progress());
    require(percent >= 0, run.errorText());
    slices.mark();
  }
  model.choice.setInternalModel(std::move(equations));
  return model;
}

// A file by each of its two ways.
void files(const std::string& name, const std::function<bool(const std::string& path, const Progress&)>& write,
           const std::function<bool(const std::string& path, const Progress&)>& read) {
  const std::string path = WorkingFile::directory() + "/tarvex-slices" + name;
  {
    const Slices slices("write " + name);
    require(write(path, slices.progress()), "can't write " + path);
  }
  {
    const Slices slices("read " + name);
    require(read(path, slices.progress()), "can't read " + path);
  }
  std::filesystem::remove(path);
}

void sampleFile(const PrepConfiguration& prep) {
  std::string message;
  PrepConfiguration read;
  files(
      ".sam",
      [&](const std::string& path, const Progress& progress) { return saveSampleFile(path, prep, message, progress); },
      [&](const std::string& path, const Progress& progress) { return loadSampleFile(path, read, message, progress); });
}

void studyFiles(ProjectConfiguration& project) {
  std::string message;
  ProjectConfiguration read;
  files(
      ".spc",
      [&](const std::string& path, const Progress& progress) {
        return savePostProcessorFile(path, project.prep, project.model, project.vels, message, progress);
      },
      [&](const std::string& path, const Progress& progress) {
        return loadPostProcessorFile(path, read.prep, read.model, read.vels, message, progress);
      });
  files(
      ".psc", [&](const std::string& path, const Progress& progress) { return project.save(path, progress); },
      [&](const std::string& path, const Progress& progress) { return read.load(path, progress); });
}

void analyse(ProjectConfiguration& project) {
  const std::string method(methodNameOf(project.prep.methodId()));
  for (const bool uncertainty : {true, false}) {
    if (uncertainty && project.prep.methodId() != kRandom) continue;
    PostProcessor postProcessor(project);
    std::string message;
    AnalysisRequest request;
    request.uncertainty = uncertainty;
    request.sensitivity = !uncertainty;
    const Slices slices(uncertainty ? "output table and uncertainty" : "output table and measures, " + method);
    require(postProcessor.compute(request, slices.progress(), message), message);
  }
}

void drawLayers(const std::string& name, const Figure& figure) {
  const FigureLayout layout = layOut(figure, {800.0, 600.0, {}});
  const CairoSurface surface(cairo_image_surface_create(CAIRO_FORMAT_ARGB32, 800, 600));
  const CairoContext context(cairo_create(surface.get()));
  {
    const Slices slices("draw " + name);
    for (const FigureLayer layer : kFigureLayers)
      require(drawLayer(context.get(), figure, layout, layer, {}, slices.progress()), "can't draw");
  }
  {
    const Slices slices("index of " + name);
    FigureIndex index;
    require(index.build(figure, layout, slices.progress()), "can't build the index");
    // Within the row before, whose longest it is where a picture has no grid.
    Slices asked("a run under the pointer, " + name);
    constexpr double kReach = 4.0;
    static_cast<void>(index.hit(400.0, 300.0, kReach));  // whether one is there doesn't matter
    asked.mark();
  }
}

void render(const std::string& name, const Figure& figure) {
  for (const auto& [format, suffix] : {std::pair(PictureFormat::Pdf, "PDF"), std::pair(PictureFormat::Png, "PNG")}) {
    const Slices slices(std::string(suffix) + " of " + name);
    require(!renderPicture(figure, format, 1.0, slices.progress()).empty(), "can't render");
  }
}

void pictures(const ProjectConfiguration& project) {
  RunTable table;
  std::string message;
  {
    const Slices slices("columns of plots");
    require(readRunTable(project.prep, project.model, project.vels.outputNames(project.model), {}, table, message,
                         slices.progress()),
            message);
  }
  const Figure scattergram = scatterPlot(table.columns.front(), table.columns.back());
  drawLayers("scattergram", scattergram);
  render("scattergram", scattergram);
  Figure cobweb;
  {
    const Slices slices("figure of cobweb");
    cobweb = cobwebPlot(table, {}, false, ColourSet::Distinct, slices.progress());
  }
  drawLayers("cobweb", cobweb);
  // In a file each line is inked by itself, a hundred thousand of them in ten seconds.
  constexpr std::int32_t kInked = 100000;
  RunTable first = table;
  first.runs = std::min(first.runs, kInked);
  for (RunColumn& column : first.columns) column.values.resize(static_cast<std::size_t>(first.runs));
  render("cobweb of 100000 runs", cobwebPlot(first, {}));
  const Selection selection(std::make_shared<RunTable>(std::move(table)), 0);
  const std::string path = WorkingFile::directory() + "/tarvex-slices.selection";
  {
    const Slices slices("save a selection as a sample");
    require(saveSelection(path, project.prep, selection.runs(), message, slices.progress()), message);
  }
  {
    const Slices slices("save a selection as a table");
    require(selection.saveCsv(path, message, slices.progress()), message);
  }
  std::filesystem::remove(path);
}

void study(std::int32_t method, std::int32_t factors, std::int32_t runs) {
  ProjectConfiguration project;
  std::string message;
  project.setPrep(generated(method, factors, runs));
  project.setModel(runOf(project.prep));
  project.markResults();
  VelsConfiguration vels;
  require(vels.setOutputs(project.model.results.outputNames(), message), message);
  project.setVels(std::move(vels));
  if (method == kRandom) {
    statistics(project.prep);
    sampleFile(project.prep);
  }
  analyse(project);
  if (method != kRandom) return;
  studyFiles(project);
  pictures(project);
}

}  // namespace
}  // namespace tarvex::bench

int main(int argc, char** argv) {
  using namespace tarvex;
  const int runs = argc > 1 ? std::atoi(argv[1]) : 1000000;
  const int factors = argc > 2 ? std::atoi(argv[2]) : 20;
  bench::require(runs >= 1000 && factors >= 4, "at least 1000 runs and 4 factors");
  std::printf("%d runs of %d factors; milliseconds of this thread\n", runs, factors);
  std::printf("%-48s %8s %10s %6s %12s\n", "operation", "reports", "longest", "until", "whole");
  const int wanted = argc > 3 ? std::atoi(argv[3]) : -1;
  for (const std::int32_t method : {kRandom, kLatin, kLpTau, kMorris, kFast, kSobol, kRepLatin})
    if (wanted < 0 || method == wanted) bench::study(method, factors, runs);
  for (const std::int32_t method : {kRandom, kLatin})
    if (wanted < 0 || method == wanted)
      static_cast<void>(bench::generated(method, factors, runs, true));  // only its row counts
  return 0;
}
