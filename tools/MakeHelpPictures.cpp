// Draws the pictures of the help: make-help-pictures DEMO DIRECTORY
// From real samples and results: those of the demonstration cases in DEMO, and small ones made here. Each picture
// NAME.png has NAME@2x.png beside it, for screens of two pixels a point.
#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <sstream>
#include <string>
#include <vector>

#include "app/ProjectConfiguration.h"
#include "base/TextWriter.h"
#include "base/WorkingFile.h"
#include "batch/Commands.h"
#include "batch/StudyFile.h"
#include "plots/ColourSet.h"
#include "plots/runPlots.h"
#include "plots/savePicture.h"
#include "sampling/PrepConfiguration.h"
#include "sampling/SampleFiles.h"

namespace {

using tarvex::Colour;
using tarvex::Figure;
using Words = std::vector<std::string>;
namespace fs = std::filesystem;

struct Size {
  double width, height;
};
constexpr Size kHint{420.0, 340.0};
constexpr Size kQuick{199.0, 150.0};
constexpr Size kDensity{560.0, 240.0};
constexpr Size kMeasures{480.0, 320.0};
constexpr Size kScatter{210.0, 220.0};  // of each of the scattergrams of a case

// What joins the runs of a design, and what tells them apart.
struct Design {
  const char* name;  // of the picture, and of the small one
  const char* quick;
  Words words;        // for the sample
  std::size_t chain;  // so many runs in a row hang together; 0: none do
  std::size_t block;  // so many runs in a row have one colour; 0: all
};

const Design kDesigns[] = {
    {"random", "QRandom", {"random", "--runs", "200", "--seed", "1"}, 0, 0},
    {"latin", "QLatin", {"latin", "--runs", "20", "--seed", "1"}, 0, 0},
    {"repLatin", "QRepLatin", {"replicated-latin", "--base-design", "8", "--replications", "4", "--seed", "1"}, 0, 8},
    {"lptau", "QLpTau", {"lptau", "--runs", "128"}, 0, 0},
    {"morris", "QMorris", {"morris", "--trajectories", "4", "--levels", "6", "--seed", "1"}, 3, 3},
    {"fast", "QFast", {"fast", "--mode", "classic", "--runs", "151", "--seed", "1"}, 151, 0},
    {"sobol", "QSobol", {"sobol", "--base-size", "16"}, 0, 16},
    {"fixed", "QFixed", {"fixed", "--rows", "rows.csv"}, 0, 0},
};

constexpr const char* kRows = "x1,x2\n0.1,0.1\n0.1,0.9\n0.5,0.5\n0.9,0.1\n0.9,0.9\n0.5,0.95\n0.95,0.5\n";

// A record of a factor file behind its type and name.
struct Example {
  const char* picture;
  const char* type;
  const char* parameters;
};

const Example kExamples[] = {
    {"uniform", "Uniform", "1\t2\n0\t2\t0.4\n2\t4\t0.6"},
    {"loguniform", "LogUniform", "1\t1\n0.1\t10\t1"},
    {"normal", "Normal", "1\t10\t2\t0.001\t0.999"},
    {"lognormal", "LogNormal", "1\t0\t0.5\t0.001\t0.999"},
    {"triangular", "Triangular", "1\t0\t1\t4"},
    {"exponential", "Exponential", "1\t0.5\t0\t0.999"},
    {"gamma", "Gamma", "1\t2.5\t1\t0\t0.999"},
    {"beta", "Beta", "1\t2\t5\t0\t1"},
    {"weibull", "Weibull", "1\t1.8\t2\t0\t0.999"},
    {"discrete", "Discrete", "1\t3\n1\t2\t0.2\n2\t3\t0.5\n4\t5\t0.3"},
};

struct Case {
  const char* name;
  const char* file;
  std::vector<std::string> columns;  // to be shown, the output last; empty: the measures are
  Words measures;                    // for the picture of the measures
};

const Case kCases[] = {
    {"Ishigami", "Ishigami", {"x1", "x2", "x3", "y"}, {"bars"}},
    {"Linear", "linear", {"x1", "x3", "x5", "y"}, {"bars", "--measure", "src"}},
    {"LevelE", "levelE", {"v1", "W", "kI", "log10(dose[max])"}, {"bars", "-v", "dose[max]", "--measure", "spea"}},
    {"SobolG0", "sobolG0", {}, {"morris"}},
    {"SobolG1", "sobolG1", {"x1", "x4", "x8", "y"}, {"bars"}},
    {"SobolG2", "sobolG2", {"x1", "x4", "x8", "y"}, {"bars"}},
    {"SobolG3", "sobolG3", {"x1", "x2", "x3", "y"}, {"bars"}},
};

bool fail(const std::string& text) {
  std::cerr << text << '\n';
  return false;
}

bool command(const Words& words) {
  std::ostringstream out;
  return tarvex::runBatch(words, out, std::cerr, false) == tarvex::kSucceeded;
}

bool write(const std::string& path, const std::string& text) {
  tarvex::TextWriter out(path);
  out << text;
  return out.commit() || fail(path + " can't be written");
}

// How factors are correlated: by a matrix, which is the unit matrix here, or not at all.
enum class Mode { Matrix = 1, None = 2 };

// A factor file of these records.
std::string factorsText(const std::vector<std::string>& records, Mode mode = Mode::None) {
  const std::string count = std::to_string(records.size());
  std::string text = "Default Truncations:\n0.001\t0.999\n\n" + count + " Distributions:\n";
  std::string links;
  std::string matrix;
  for (std::size_t i = 0; i < records.size(); ++i) {
    text += records[i] + "\n\n";
    links += "0 -1 0 \n";
    for (std::size_t j = 0; j < records.size(); ++j) matrix += i == j ? "1\t" : "0\t";
    matrix += '\n';
  }
  text += "Correlation information\n" + links + "Correlation Matrix:\n" + matrix;
  return text + "Stein Information:\n\n0\n0\n0\n" + std::to_string(static_cast<int>(mode)) + '\n';
}

bool save(const std::string& directory, const std::string& name, Figure figure, Size size) {
  figure.width = size.width;
  figure.height = size.height;
  std::string problem;
  for (const auto& [suffix, zoom] : {std::pair{".png", 1.0}, {"@2x.png", 2.0}})
    if (!tarvex::savePicture(directory + '/' + name + suffix, figure, tarvex::PictureFormat::Png, problem, zoom))
      return fail(problem);
  return true;
}

// The same through the command that a user would give.
bool plot(const std::string& directory, const std::string& name, Words words, Size size) {
  words.insert(words.begin(), "plot");
  for (const auto& [suffix, zoom] : {std::pair{".png", "1"}, {"@2x.png", "2"}}) {
    Words whole = words;
    whole.insert(whole.end(), {"-o", directory + '/' + name + suffix, "--zoom", zoom, "--width",
                               std::to_string(size.width), "--height", std::to_string(size.height)});
    if (!command(whole)) return false;
  }
  return true;
}

// Designs: two factors between 0 and 1.

tarvex::Points pointsOf(const tarvex::RunTable& table, std::size_t first, std::size_t count, Colour colour) {
  tarvex::Points points;
  for (std::size_t run = first; run < first + count; ++run) {
    points.x.push_back(table.columns[0].values[run]);
    points.y.push_back(table.columns[1].values[run]);
  }
  points.colour = colour;
  return points;
}

Figure designFigure(const Design& design, const tarvex::RunTable& table) {
  constexpr std::size_t kColours = 4;  // the later blocks of a design are many, and alike
  const auto colour = [](std::size_t block) {
    return tarvex::sliceColour(tarvex::ColourSet::Distinct, tarvex::SliceList::Other, std::min(block, kColours - 1));
  };
  const auto runs = static_cast<std::size_t>(table.runs);
  tarvex::XyChart chart;
  chart.x = {"x1", 0.0, 1.0, tarvex::AxisScale::Linear, tarvex::NumberForm::Short};
  chart.y = {"x2", 0.0, 1.0, tarvex::AxisScale::Linear, tarvex::NumberForm::Short};
  const std::size_t block = design.block == 0 ? runs : design.block;
  if (design.chain > 0)
    for (std::size_t first = 0; first + design.chain <= runs; first += design.chain) {
      const tarvex::Points points = pointsOf(table, first, design.chain, colour(first / block));
      chart.layers.emplace_back(tarvex::Line{points.x, points.y, points.colour});
    }
  // The first blocks on top: later ones repeat points of theirs.
  for (std::size_t count = (runs + block - 1) / block; count > 0; --count) {
    const std::size_t first = (count - 1) * block;
    chart.layers.emplace_back(pointsOf(table, first, std::min(block, runs - first), colour(count - 1)));
  }
  Figure figure;
  figure.charts.emplace_back(chart);
  return figure;
}

// The columns of a sample that the command makes of these words.
bool readSample(Words words, const Words& columns, tarvex::RunTable& table) {
  const std::string sample = "drawn.sam";
  words.insert(words.begin(), {"sample", "-o", sample});
  tarvex::ProjectConfiguration project;
  std::string message;
  return command(words) && ((tarvex::loadSampleFile(sample, project.prep, message) &&
                             tarvex::readRunTable(project.prep, project.model, {}, columns, table, message)) ||
                            fail(message));
}

bool drawDesign(const Design& design, const std::string& directory) {
  // The replicated design is there for correlated factors alone.
  const std::string factors = design.words.front() == "replicated-latin" ? "matrix.fac" : "two.fac";
  Words words{factors, "--method"};
  words.insert(words.end(), design.words.begin(), design.words.end());
  tarvex::RunTable table;
  if (!readSample(words, {"x1", "x2"}, table)) return fail(design.name);
  const Figure figure = designFigure(design, table);
  return save(directory, design.name, figure, kHint) && save(directory, design.quick, figure, kQuick);
}

// The share of a column's values in each of equal classes, by the width of a class.
tarvex::Line classesOf(const tarvex::RunColumn& column, double lower, double upper) {
  constexpr std::size_t kClasses = 64;
  const double width = (upper - lower) / kClasses;
  tarvex::Line line;
  line.steps = true;
  for (std::size_t i = 0; i < kClasses; ++i) line.x.push_back(lower + width * static_cast<double>(i));
  line.y.assign(kClasses, 0.0);
  for (const double value : column.values)
    if (value >= lower && value < upper)
      line.y[static_cast<std::size_t>((value - lower) / width)] +=
          1.0 / (width * static_cast<double>(column.values.size()));
  return line;
}

// What truncation leaves of a normal distribution.
bool drawTruncation(const std::string& directory) {
  constexpr double kReach = 3.2;
  const std::string factors = "cut.fac";
  const std::string text = factorsText({"Normal\nwhole\n\n1\t0\t1\t0.001\t0.999", "Normal\ncut\n\n1\t0\t1\t0.1\t0.9"});
  tarvex::RunTable table;
  if (!write(factors, text) ||
      !readSample({factors, "--method", "latin", "--runs", "20000", "--seed", "1"}, {"whole", "cut"}, table))
    return false;
  tarvex::XyChart chart;
  chart.x = {"value", -kReach, kReach, tarvex::AxisScale::Linear, tarvex::NumberForm::Short};
  chart.y = {"density", 0.0, 0.55, tarvex::AxisScale::Linear, tarvex::NumberForm::Short};
  Figure figure;
  const char* const names[] = {"from 0.001 to 0.999", "from 0.1 to 0.9"};
  for (std::size_t i = 0; i < table.columns.size(); ++i) {
    tarvex::Line line = classesOf(table.columns[i], -kReach, kReach);
    line.colour = tarvex::sliceColour(tarvex::ColourSet::Distinct, tarvex::SliceList::Other, i);
    figure.legend.push_back({names[i], line.colour, tarvex::LegendMark::Line, line.style});
    chart.layers.emplace_back(std::move(line));
  }
  figure.charts.emplace_back(chart);
  return save(directory, "truncation", figure, kHint);
}

// Demonstration cases: the output against three factors, and the measures.
bool drawCase(const Case& demo, const std::string& from, const std::string& directory) {
  const std::string path = from + '/' + demo.file + ".dem";
  Words words{path, "-k"};
  words.insert(words.end(), demo.measures.begin(), demo.measures.end());
  if (!plot(directory, std::string(demo.name) + "-measures", words, kMeasures)) return false;
  if (demo.columns.empty()) return plot(directory, demo.name, words, kMeasures);
  tarvex::ProjectConfiguration project;
  tarvex::RunTable table;
  std::string message;
  if (!tarvex::readStudyFile(path, tarvex::FileKind::PostProcessor, {}, project, message)) return fail(message);
  if (!tarvex::readRunTable(project.prep, project.model, project.vels.outputNames(project.model), demo.columns, table,
                            message))
    return fail(message);
  Figure figure;
  for (std::size_t column = 0; column + 1 < table.columns.size(); ++column)
    figure.charts.push_back(tarvex::scatterPlot(table.columns[column], table.columns.back()).charts.front());
  figure.columns = static_cast<int>(figure.charts.size());
  return save(directory, demo.name, figure, {kScatter.width * figure.columns, kScatter.height});
}

// In a scratch directory, the current one.
bool drawAll(const std::string& demo, const std::string& directory) {
  const std::string flat = "\n\n1\t1\n0\t1\t1";
  const std::vector<std::string> two = {"Uniform\nx1" + flat, "Uniform\nx2" + flat};
  if (!write("two.fac", factorsText(two)) || !write("matrix.fac", factorsText(two, Mode::Matrix)) ||
      !write("rows.csv", kRows))
    return false;
  for (const Design& design : kDesigns)
    if (!drawDesign(design, directory)) return false;
  for (const Example& example : kExamples) {
    const std::string file = std::string(example.picture) + ".fac";
    const std::string record = std::string(example.type) + "\nX\n\n" + example.parameters;
    if (!write(file, factorsText({record})) ||
        !plot(directory, example.picture, {file, "-k", "distribution", "-v", "X"}, kDensity))
      return false;
  }
  return drawTruncation(directory) &&
         std::ranges::all_of(kCases, [&](const Case& one) { return drawCase(one, demo, directory); });
}

}  // namespace

int main(int count, char** words) {
  if (count != 3) {
    std::cerr << "make-help-pictures DEMO DIRECTORY\n";
    return 2;
  }
  const std::string demo = fs::absolute(words[1]).string();
  const std::string directory = fs::absolute(words[2]).string();
  std::string scratch = tarvex::WorkingFile::directory() + "/tarvex-help-XXXXXX";
  if (mkdtemp(scratch.data()) == nullptr) return 1;
  fs::current_path(scratch);
  const bool done = drawAll(demo, directory);
  fs::remove_all(scratch);
  return done ? 0 : 1;
}
