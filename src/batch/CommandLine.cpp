#include "batch/CommandLine.h"

#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <charconv>

#include "batch/FileFindings.h"
#include "batch/PartsWords.h"
#include "batch/SamplerOptions.h"
#include "report/versions.h"

namespace tarvex {

namespace {

const std::vector<std::string> kFormatWords = {"svg", "pdf", "ps", "eps", "png"};
const std::vector<std::string> kKindWords = {"scatter",      "cobweb",       "histogram", "bars",         "pie",
                                             "morris",       "forecast",     "preview",   "distribution", "matrix",
                                             "correlations", "interactions", "times",     "curves"};
const std::vector<std::string> kMethodWords = {"random", "latin", "replicated-latin", "lptau", "morris", "fast",
                                               "sobol",  "fixed"};

// A whole number in decimal, whatever zeros it begins with.
std::int64_t wholeNumber(const std::string& text, const char* names) {
  std::int64_t number = 0;
  const char* const end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data() + (text.starts_with('+') ? 1 : 0), end, number);
  if (text.empty() || error != std::errc() || stop != end) throw CLI::ConversionError(text, names);
  return number;
}

void addNumber(CLI::App& app, const char* names, std::optional<std::int64_t>& value, const char* help) {
  app.add_option_function<std::string>(
         names, [&value, names](const std::string& text) { value = wholeNumber(text, names); }, help)
      ->type_name("INT");
}

// CLI11's own lets a nan through.
CLI::Validator between(double low, double high) {
  return {[=](std::string& text) {
            double value = 0.0;
            if (CLI::detail::lexical_cast(text, value) && value >= low && value <= high) return std::string();
            return fmt::format("{} is not a number from {} to {}", text, low, high);
          },
          fmt::format("{} to {}", low, high)};
}

void addThreads(CLI::App& app, std::size_t& threads) {
  constexpr std::int64_t kMost = 1024;
  const auto read = [&threads](const std::string& text) {
    const std::int64_t number = wholeNumber(text, "--threads");
    if (number < 1 || number > kMost) throw CLI::ValidationError("--threads", text + " is not a number from 1 to 1024");
    threads = static_cast<std::size_t>(number);
  };
  app.add_option_function<std::string>("--threads", read,
                                       "Cores to compute on (default: all); the results are the same")
      ->type_name("INT");
}

void addSample(CLI::App& app, SampleOptions& options, Command& command) {
  CLI::App* sub = app.add_subcommand("sample", "Generate a sample of the factors in FACTORS.fac");
  sub->add_option("FACTORS", options.factorFile, "Factor file (.fac)")->required();
  sub->add_option("-o,--output", options.output, "Sample file to write (.sam)")->required();
  sub->add_option("-m,--method", options.method, "Sampling method")->required()->check(CLI::IsMember(kMethodWords));
  addNumber(*sub, "-n,--runs", options.settings.runs, "Number of runs (random, latin, lptau, fast)");
  addNumber(*sub, "-s,--seed", options.settings.seed, "Seed (random, latin, replicated-latin, morris, fast)");
  addNumber(*sub, "--base-design", options.settings.baseDesign, "Runs of the base design (replicated-latin)");
  addNumber(*sub, "--replications", options.settings.replications, "Number of replications (replicated-latin)");
  addNumber(*sub, "--trajectories", options.settings.trajectories, "Number of trajectories (morris)");
  addNumber(*sub, "--levels", options.settings.levels, "Levels of the grid (morris)");
  sub->add_option("--mode", options.mode, "Indices to compute (fast)")
      ->check(CLI::IsMember({"classic", "extended", "groups"}));
  sub->add_option("--group", options.groups, "A group of factors, NAME=a,b,c; may be repeated (fast, mode groups)")
      ->allow_extra_args(false);
  addNumber(*sub, "--base-size", options.settings.baseSize, "Rows of a base matrix (sobol)");
  addNumber(*sub, "--order", options.settings.order,
            "Indices up to this order; without it first and total order (sobol)");
  sub->add_flag("--cheap", options.settings.cheap, "Leave out the blocks that their complements stand for (sobol)");
  sub->add_option("--rows", options.rowsFile, "Rows to take as they are: a CSV file with a header of names (fixed)");
  sub->add_option_function<std::string>(
         "--by", [&options](const std::string& by) { options.settings.listing = by == "factor" ? 1 : 0; },
         "How the file lists the table (default run)")
      ->check(CLI::IsMember({"run", "factor"}));
  sub->add_flag("--strict", options.strict,
                "Refuse factors with doubtful relations or correlations instead of warning");
  sub->callback([&] {
    if (const std::string size = missingSize(options); !size.empty())
      throw CLI::RequiredError("--method " + options.method + ": " + size);
    command = options;
  });
}

void addImport(CLI::App& app, ImportOptions& options, Command& command) {
  CLI::App* sub = app.add_subcommand("import", "Make a sample file of a sample that another program generated");
  sub->add_option("EXTERNAL", options.externalFile, "External sample file")->required();
  sub->add_option("-o,--output", options.output, "Sample file to write (.sam)")->required();
  sub->callback([&] { command = options; });
}

void addRun(CLI::App& app, RunOptions& options, Command& command) {
  CLI::App* sub = app.add_subcommand("run", "Run a model over a sample");
  sub->add_option("SAMPLE", options.sampleFile, "Sample file (.sam)")->required();
  auto* result = sub->add_option_group("result", "What becomes of it");
  result->add_option("-o", options.output, "Post-processor file to write (.spc)");
  result->add_option("--try", options.tryRow,
                     "Try the model on one run, a row of the sample or \"means\", and say what came of it");
  result->require_option(1);
  auto* kind = sub->add_option_group("model", "What to run");
  auto* equations = kind->add_option("--model", options.modelFile, "Internal model, a file of equations (.imd)");
  auto* executable = kind->add_option("--executable", options.executable,
                                      "Program to start, with the path of the sample file as its argument, or words "
                                      "with {sample} and {output}");
  auto* file = kind->add_option("--output", options.modelOutput,
                                "File that the program writes; without a program, that it wrote elsewhere");
  executable->needs(file);
  equations->excludes(executable)->excludes(file);
  auto* workbook = kind->add_option("--workbook", options.workbook,
                                    "Workbook to compute, by its sheets Inputs and Outputs (.ods, .xlsx, .xls)");
  workbook->excludes(equations)->excludes(executable)->excludes(file);
  auto* readOnly = kind->add_flag("--read-only", options.readOnly, "Only read what the workbook holds");
  readOnly->needs(workbook);
  auto* inputs = sub->add_option("--input-cell", options.inputCells,
                                 "Cell of the workbook that takes a factor, as x1=Model!B3; may be repeated: each row "
                                 "of the sample goes through such cells, and none through the sheets");
  auto* outputs = sub->add_option("--output-cell", options.outputCells,
                                  "Cell of the workbook that then holds an output, as y=Model!F9; may be repeated");
  inputs->allow_extra_args(false)->needs(workbook)->needs(outputs)->excludes(readOnly);
  outputs->allow_extra_args(false)->needs(workbook)->needs(inputs)->excludes(readOnly);
  kind->require_option(1, 2);
  addPartsWords(*sub, options.parts);
  sub->callback([&] {
    const bool isRun = options.executable || (options.workbook && !options.readOnly);
    if (options.parts.any() && (!isRun || !options.tryRow.empty()))
      throw CLI::ValidationError("--parts", "and what goes with it belong to -o and --executable or --workbook");
    command = options;
  });
}

void addAnalyse(CLI::App& app, AnalyseOptions& options, Command& command) {
  CLI::App* sub = app.add_subcommand("analyse", "Compute uncertainty statistics and sensitivity measures of a run");
  sub->add_option("RESULTS", options.input, "Post-processor file (.spc)")->required();
  sub->add_option("-o,--output", options.output, "Post-processor file to write, with the statistics (.spc)");
  sub->add_option("-v,--variable", options.variables,
                  "An output, an output at a time (Y[max], Y[2.5]) or an expression; may be repeated (default: all)")
      ->allow_extra_args(false);
  sub->add_flag("--ua", options.uncertainty, "Only the uncertainty statistics");
  sub->add_flag("--sa", options.sensitivity, "Only the sensitivity measures");
  sub->add_option("--confidence", options.confidence, "Level of both bounds on the mean (default 0.75)");
  sub->add_option("--kolmogorov", options.kolmogorov, "Level of the Kolmogorov band (default 0.9)");
  sub->add_option("--alpha", options.alpha, "Confidence of the significance tests (default 0.95)");
  sub->add_option("--quantile", options.quantiles,
                  "A quantile in percent, beside 1, 5, 25, 50, 75, 95 and 99; may be repeated")
      ->allow_extra_args(false);
  sub->add_option("--exceeds", options.thresholds,
                  "A value whose probability of being exceeded is told; may be repeated")
      ->allow_extra_args(false);
  sub->add_option("--interval", options.interval,
                  "Confidence of the intervals of quantiles and probabilities (default 0.95)");
  sub->add_flag("--log", options.logScale, "Show the histograms on the logarithmic scale");
  sub->add_option("--csv", options.csvFile, "Write all results with full precision as CSV");
  sub->add_option("--json", options.jsonFile, "Write all results with full precision as JSON");
  sub->add_option("--tables", options.tablesDirectory, "Write the saved tables into this directory");
  sub->add_option("--plots", options.plotsDirectory, "Write the pictures of the analysis into this directory");
  sub->add_option("--format", options.plotFormat, "Format of the pictures (default svg)")
      ->check(CLI::IsMember(kFormatWords));
  sub->callback([&] { command = options; });
}

void addPlot(CLI::App& app, PlotOptions& options, Command& command) {
  const CLI::Validator size = between(16.0, 30000.0);
  CLI::App* sub = app.add_subcommand("plot", "Draw a picture of a sample, of results or of factors");
  sub->add_option("FILE", options.input, "Factor, sample, post-processor, demonstration or project file")->required();
  auto* kind = sub->add_option("-k,--kind", options.kind, "What to draw")->check(CLI::IsMember(kKindWords));
  sub->add_option("-v,--variables", options.variables,
                  "Factors, outputs or expressions, split at commas outside brackets; may be repeated")
      ->allow_extra_args(false);
  sub->add_option("--filter", options.filters, "Only runs with a value in NAME=LOWER:UPPER; may be repeated")
      ->allow_extra_args(false);
  sub->add_option("--region", options.region, "Frame x=LOWER:UPPER,y=LOWER:UPPER (scatter), its upper edges excluded");
  sub->add_flag("--show-dropped", options.showDropped, "Leave the runs outside the bounds in the background (cobweb)");
  sub->add_option("--form", options.form, "Form of the curves (histogram; default area)")
      ->check(CLI::IsMember({"area", "outline", "bars", "frequency", "cumulative", "complement"}));
  sub->add_flag("--log", options.logScale, "Logarithmic scale (histogram)");
  sub->add_option("--bins", options.bins, "As many as suit the runs, or all of the saved table (histogram)")
      ->check(CLI::IsMember({"suited", "all"}));
  sub->add_flag("--log-x", options.logX, "Logarithmic axis across (scatter, times)");
  sub->add_flag("--log-y", options.logY, "Logarithmic axis up (scatter)");
  sub->add_flag("--jitter", options.jitter, "Move points of discrete factors a little apart (scatter)");
  sub->add_option("--shade", options.shade, "Colours by the density of points (scatter; default: where they are many)")
      ->check(CLI::IsMember({"yes", "no"}));
  sub->add_flag("--ranks", options.ranks, "Of ranks (correlations)");
  sub->add_option("--measure", options.measure, "Measures by their words (bars, pie, forecast, curves)");
  sub->add_option("--colours", options.colours, "Colours of cobwebs, bars and pies (default distinct)")
      ->check(CLI::IsMember({"distinct", "system"}));
  auto* written = sub->add_option_group("output", "What to write");
  written->add_option("-o,--output", options.output, "Picture: .svg, .pdf, .ps, .eps or .png")->needs(kind);
  written->add_option("--save-selection", options.selection, "Sample file of the runs within the bounds (.sam)");
  written->require_option(1, 2);
  sub->add_option("--format", options.format, "Format of the picture (default: by its suffix)")
      ->check(CLI::IsMember(kFormatWords));
  sub->add_option("--width", options.width, "Width in units of which 96 are an inch")->check(size);
  sub->add_option("--height", options.height, "Height in the same units")->check(size);
  sub->add_option("--font", options.font, "Family of the font (default DejaVu Sans)");
  sub->add_option("--font-size", options.fontSize, "Size of the titles of axes in points (default 9)")
      ->check(between(2.0, 200.0));
  sub->add_option("--width-mm", options.widthMillimetres, "Width in millimetres")->check(between(5.0, 8000.0));
  sub->add_option("--height-mm", options.heightMillimetres, "Height in millimetres")->check(between(5.0, 8000.0));
  sub->add_option("--zoom", options.zoom, "Pixels a unit of a PNG (default 1)")->check(between(0.1, 16.0));
  sub->callback([&] { command = options; });
}

void addReport(CLI::App& app, ReportOptions& options, Command& command) {
  CLI::App* sub = app.add_subcommand(
      "report", "Write a study as one page: summary, limits, factors, design, model, statistics, pictures");
  sub->add_option("FILE", options.input, "Post-processor or project file (.spc, .psc, .dem)")->required();
  sub->add_option("-o,--output", options.output, "Page to write (.html or .pdf)")->required();
  sub->add_option("--title", options.title, "What stands above it (default: the file's name)");
  sub->add_option("--author", options.author, "Whose it is (default: nobody is named)");
  sub->add_option("--date", options.date, "Its date, as it shall be written (default: today)");
  sub->callback([&] { command = options; });
}

void addProject(CLI::App& app, ProjectOptions& options, Command& command) {
  CLI::App* sub = app.add_subcommand("project", "Put a sample or results into a project file, or take them out");
  sub->add_option("FILE", options.input, "Sample file (.sam), post-processor file (.spc) or project file (.psc)")
      ->required();
  auto* written = sub->add_option_group("output", "What to write");
  written->add_option("-o,--output", options.project, "Project file (.psc)");
  written->add_option("--sample", options.sample, "Sample file, of the project's sample (.sam)");
  written->add_option("--results", options.results, "Post-processor file, of the project's results (.spc)");
  written->require_option(1, 3);
  sub->callback([&] { command = options; });
}

void addShow(CLI::App& app, ShowOptions& options, Command& command) {
  CLI::App* sub = app.add_subcommand("show", "Print what a file holds");
  sub->add_option("FILE", options.file, "Factor, sample, internal model, post-processor or project file")->required();
  sub->callback([&] { command = options; });
}

void addCheck(CLI::App& app, CheckOptions& options, Command& command) {
  CLI::App* sub =
      app.add_subcommand("check", "List all that is wrong or doubtful in files; status 1 when any is wrong");
  sub->add_option("FILE", options.files, "Any of the system's files")->required();
  auto* kind = sub->add_option("--kind", options.kind, "What they are, where names and first lines don't tell")
                   ->check(CLI::IsMember(fileKindWords()));
  sub->add_option("--factors", options.factorFile, "Factor file to whose factors the rows belong (kind rows)")
      ->needs(kind);
  sub->callback([&] {
    if ((options.kind == "rows") == options.factorFile.empty())
      throw CLI::ValidationError("--factors", "belongs to --kind rows, which needs it");
    command = options;
  });
}

void addDemo(CLI::App& app, DemoOptions& options, Command& command) {
  CLI::App* sub = app.add_subcommand("demo", "Carry a demonstration case from factors to measures");
  sub->add_option("CASE", options.caseName, "Name of the case (default Ishigami)");
  sub->callback([&] { command = options; });
}

}  // namespace

CommandLine parseCommandLine(const std::vector<std::string>& words, std::ostream& out, std::ostream& errors) {
  CLI::App app("Uncertainty and sensitivity analysis of numerical models", "tarvex-batch");
  app.get_formatter()->column_width(34);
  app.set_version_flag("--version", "tarvex-batch " + programVersion());
  CommandLine line;
  Command& command = line.command;
  SampleOptions sample;
  ImportOptions import;
  RunOptions run;
  PartsCommands parts;
  AnalyseOptions analyse;
  PlotOptions plot;
  ReportOptions report;
  ProjectOptions project;
  ShowOptions show;
  CheckOptions check;
  DemoOptions demo;
  addSample(app, sample, command);
  addImport(app, import, command);
  addRun(app, run, command);
  addPartsCommands(app, parts, command);
  addAnalyse(app, analyse, command);
  addPlot(app, plot, command);
  addReport(app, report, command);
  addProject(app, project, command);
  addShow(app, show, command);
  addCheck(app, check, command);
  addDemo(app, demo, command);
  for (CLI::App* sub : app.get_subcommands({})) addThreads(*sub, line.threads);
  try {
    std::vector<std::string> reversed(words.rbegin(), words.rend());
    app.parse(reversed);
    if (app.get_subcommands().empty()) throw CLI::RequiredError("A subcommand");
  } catch (const CLI::ParseError& error) {
    constexpr int kWrongUsage = 2;
    line.status = app.exit(error, out, errors) == 0 ? 0 : kWrongUsage;
    command = {};
  }
  return line;
}

}  // namespace tarvex
