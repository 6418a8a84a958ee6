// A table of the work that a study of a million runs passes: ours on one core and on all, beside a program written by
// hand for the job alone, in milliseconds, the best of some turns.
#include <sys/resource.h>
#include <time.h>
#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <limits>
#include <string>
#include <vector>

#include "Cases.h"
#include "base/Cores.h"
#include "base/TextReader.h"
#include "base/TextWriter.h"
#include "base/uniformRandom.h"
#include "limits.h"
#include "model/InternalModel.h"
#include "model/InternalRun.h"
#include "model/ModelResults.h"
#include "postproc/SensitivityStats.h"
#include "sampling/FastSampler.h"
#include "sampling/SampleStatistics.h"
#include "sampling/SobolSampler.h"

namespace tarvex::bench {
namespace {

constexpr int kTurns = 3;
constexpr std::int32_t kAll = 100;  // percent of a generation

using Turn = std::function<double()>;

struct Times {
  double processor = std::numeric_limits<double>::infinity();
  double wall = std::numeric_limits<double>::infinity();
};

// Of this process and of those that it started and waited for.
double processorTime() {
  rusage children{};
  getrusage(RUSAGE_CHILDREN, &children);
  const auto of = [](const timeval& time) {
    return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_usec) * 1e-3;
  };
  return millisecondsOf(CLOCK_PROCESS_CPUTIME_ID) + of(children.ru_utime) + of(children.ru_stime);
}

Times best(const Turn& turn) {
  Times least;
  for (int i = 0; i < kTurns; ++i) {
    const double before = processorTime();
    const double wallBefore = millisecondsOf(CLOCK_MONOTONIC);
    volatile double result = turn();
    static_cast<void>(result);
    least.processor = std::min(least.processor, processorTime() - before);
    least.wall = std::min(least.wall, millisecondsOf(CLOCK_MONOTONIC) - wallBefore);
  }
  return least;
}

std::string wanted;  // rows with this in their names alone

// Without a limit where the row is more than its arithmetic.
void row(const std::string& work, const Turn& ours, const Turn& limit = nullptr) {
  if (work.find(wanted) == std::string::npos) return;
  Cores::use(1);
  const Times one = best(ours);
  Cores::use(0);
  const Times all = best(ours);
  std::printf("%-62s %9.1f %9.1f %9.1f", work.c_str(), one.processor, one.wall, all.wall);
  if (limit) {
    const Times least = best(limit);
    std::printf(" %9.1f %7.1f", least.processor, one.processor / least.processor);
  }
  std::printf("\n");
  static_cast<void>(std::fflush(stdout));
}

std::vector<double> uniformNumbers(std::size_t count) {
  std::vector<double> numbers(count);
  std::int32_t state = 4711;
  for (double& number : numbers) number = uniformRandom(state);
  return numbers;
}

sampValues tableOf(const std::vector<double>& numbers, std::size_t columns) {
  sampValues table;
  require(table.allocate(static_cast<std::int32_t>(columns)), "a table can't be made");
  for (std::size_t at = 0; at < numbers.size(); at += columns)
    require(table.addRow(numbers.data() + at) > 0, table.errorText());
  return table;
}

PrepConfiguration designOf(std::int32_t method, std::int32_t factors, std::int32_t runs) {
  PrepConfiguration prep = preparedConfiguration(method, factors, runs);
  require(prep.generate(Sampler::kComplete) >= Sampler::kComplete, prep.sampler->errorText);
  return prep;
}

// The measures of the method over an output without a pattern.
double measuresOf(const PrepConfiguration& prep, const sampValues& outputs) {
  const std::unique_ptr<SensitivityStats> measures = makeSensitivityForMethod(prep.sampler->methodId);
  require(measures->compute(prep, outputs), measures->errorText);
  return measures->records[0].values[0];
}

double square(double x) {
  return x * x;
}

std::vector<limits::Quantile> tenQuantiles() {
  const limits::Quantile uniform{-3.14159, 3.14159, nullptr, [](double u) { return (2.0 * u - 1.0) * 3.14159; }};
  const limits::Quantile normal{0.3, 1.7, [](double x) { return std::exp(-square((x - 1.0) / 0.2) / 2.0); }, nullptr};
  const limits::Quantile logNormal{0.2, 4.7, [](double x) { return std::exp(-square(std::log(x) / 0.5) / 2.0) / x; },
                                   nullptr};
  const limits::Quantile weibull{0.0, 1.0, nullptr, [](double u) { return std::sqrt(-std::log(1.0 - 0.999 * u)); }};
  const limits::Quantile beta{0.0, 1.0, [](double x) { return std::pow(x, 1.5) * std::pow(1.0 - x, 2.5); }, nullptr};
  const limits::Quantile triangular{0.0, 1.0, nullptr, [](double u) {
                                      return u < 1.0 / 3.0 ? std::sqrt(3.0 * u) : 3.0 - std::sqrt(6.0 * (1.0 - u));
                                    }};
  return {uniform, uniform, normal, normal, logNormal, logNormal, weibull, weibull, beta, triangular};
}

void latinRows() {
  constexpr std::int32_t kRuns = 1000000;
  for (const bool ranked : {false, true})
    row(
        ranked ? "the same with a rank correlation matrix" : "Latin hypercube 1M x 10, design and values",
        [ranked] {
          PrepConfiguration prep = preparedConfiguration(kLatin, tenFactors(ranked), kRuns);
          require(prep.generate(kAll) >= kAll, prep.errorText());
          return 1.0 * prep.samples.rows();
        },
        [ranked] { return limits::latin(kRuns, tenQuantiles(), ranked); });
}

void equationRow(const char* work, std::int32_t inputs, const std::string& equation,
                 double (*limit)(const std::vector<double>&)) {
  constexpr std::size_t kRuns = 1000000;
  InternalModel model;
  bool good = true;
  for (std::int32_t i = 1; i <= inputs; ++i) good = good && model.addVariable("x" + std::to_string(i));
  require(good && model.addExpression(0, "y", equation, 1), "the model refuses its equation");
  const std::vector<double> numbers = uniformNumbers(kRuns * static_cast<std::size_t>(inputs));
  const sampValues samples = tableOf(numbers, static_cast<std::size_t>(inputs));
  row(
      work,
      [&] {
        ModelResults results;
        InternalRun run(model, samples, results);
        require(run.prepare(), "the run can't be prepared");
        for (int percent = 1; percent <= 100; ++percent)
          require(run.advance(static_cast<float>(percent)) >= 0, "the results can't be stored");
        return 1.0;
      },
      [&] { return limit(numbers); });
}

std::string gEquation() {
  std::string text;
  int input = 0;
  for (const char* a : {"0", "1", "4.5", "9", "99", "99", "99", "99"}) {
    if (!text.empty()) text += " * ";
    text += "(fabs(4 * x" + std::to_string(++input) + " - 2) + " + a + ") / (1 + " + a + ")";
  }
  return text;
}

void equationRows() {
  equationRow("equations: Ishigami, 1M rows", 3, "sin(x1) + 7 * sin(x2) ** 2 + 0.1 * x3 ** 4 * sin(x1)",
              limits::ishigami);
  equationRow("equations: g function of 8 factors, 1M rows", 8, gEquation(), limits::gFunction);
}

// Whole programs, files included.
class Shell {
 public:
  Shell() { require(std::filesystem::create_directories(directory_), "no directory for files"); }
  ~Shell() {
    std::error_code error;
    std::filesystem::remove_all(directory_, error);
  }
  Shell(const Shell&) = delete;
  Shell& operator=(const Shell&) = delete;

  std::string path(const std::string& name) const { return directory_ / name; }
  void write(const std::string& name, const FactorList& factors) const {
    TextWriter out(path(name));
    factors.write(out);
    require(out.commit(), out.problem());
  }
  double run(const std::string& arguments) const {
    const std::filesystem::path batch = std::filesystem::read_symlink("/proc/self/exe").parent_path() / "tarvex-batch";
    const std::string command = "cd " + directory_.string() + " && " + batch.string() + " " + arguments +
                                " --threads " + std::to_string(Cores::count()) + " > said 2>&1";
    require(std::system(command.c_str()) == 0, "it failed: " + command);  // NOLINT(cert-env33-c): our own words
    return 1.0;
  }

 private:
  std::filesystem::path directory_ =
      std::filesystem::temp_directory_path() / ("tarvex-rows-shell-" + std::to_string(::getpid()));
};

void programRows() {
  const Shell shell;
  shell.write("ten.fac", tenFactors(false));
  shell.write("twelve.fac", twelveFactors());
  row("tarvex-batch sample, the ten factors, Latin 1M",
      [&] { return shell.run("sample ten.fac -o ten.sam -m latin -n 1000000"); });
  row("tarvex-batch sample, twelve factors, Latin 1M",
      [&] { return shell.run("sample twelve.fac -o twelve.sam -m latin -n 1000000"); });
  const std::filesystem::path demo = std::filesystem::path(TARVEX_DEMO);
  for (const char* name : {"ishigami.fac", "ishigami.imd"}) std::filesystem::copy_file(demo / name, shell.path(name));
  row("sample, run, analyse Ishigami, Sobol base 4096, 3 programs", [&] {
    shell.run("sample ishigami.fac -o i.sam -m sobol --base-size 4096");
    shell.run("run i.sam -o i.spc --model ishigami.imd");
    return shell.run("analyse i.spc");
  });
}

void sobolRows() {
  constexpr std::int32_t kBase = 65536;
  constexpr std::int32_t kFactors = 10;
  row(
      "Sobol design, base 65536, 10 factors, 1.44M rows",
      [] { return designOf(kSobol, kFactors, kBase * (2 + 2 * kFactors)).samples.rows(); },
      [] { return limits::sobolDesign(kBase, kFactors); });

  constexpr std::int32_t kLargeBase = 262144;
  const PrepConfiguration prep = designOf(kSobol, 3, 8 * kLargeBase);
  const std::vector<double> runs = uniformNumbers(8 * std::size_t{kLargeBase});
  const sampValues outputs = tableOf(runs, 1);
  row(
      "Sobol indices, first and total, 3 factors, 2.1M rows", [&] { return measuresOf(prep, outputs); },
      [&] { return limits::sobolIndices(runs, kLargeBase, 3); });
}

void fastRow() {
  const PrepConfiguration prep = designOf(kFast, 10, 100000);
  const std::vector<FastBlock>& blocks = dynamic_cast<const FastSampler&>(*prep.sampler).designTable();
  const std::vector<double> runs = uniformNumbers(static_cast<std::size_t>(prep.samples.rows()));
  const sampValues outputs = tableOf(runs, 1);
  row(
      "FAST, extended, 10 factors of 10,000 runs", [&] { return measuresOf(prep, outputs); },
      [&] {
        double sum = 0.0;
        const double* next = runs.data();
        for (const FastBlock& block : blocks)
          for (std::int32_t curve = 0; curve < block.resamples; ++curve, next += block.curveLength)
            sum += limits::fourierSums(next, block.curveLength, block.frequency / 2);
        return sum;
      });
}

void regressionRow() {
  constexpr std::size_t kFactors = 20;
  constexpr std::size_t kRuns = 100000;
  const PrepConfiguration prep = designOf(kRandom, kFactors, kRuns);
  const sampValues outputs = tableOf(uniformNumbers(kRuns), 1);
  const std::vector<std::vector<double>> columns(kFactors + 1, uniformNumbers(kRuns));
  row(
      "regression measures, all seven, 100k x 20", [&] { return measuresOf(prep, outputs); },
      [&] { return limits::regression(columns); });
}

void tableRows() {
  constexpr std::size_t kColumns = 10;
  constexpr std::size_t kCells = 1000000 * kColumns;
  const std::string ours = std::filesystem::temp_directory_path() / ("tarvex-rows-" + std::to_string(::getpid()));
  const std::string byHand = ours + "-limit";
  const std::vector<double> numbers = uniformNumbers(kCells);
  const sampValues table = tableOf(numbers, kColumns);
  row(
      "statistics of a sample, 1M x 10",
      [&] {
        SampleStatistics statistics;
        require(statistics.compute(table), table.errorText());
        return statistics.mean(0);
      },
      [&] { return limits::statistics(numbers, kColumns); });
  row(
      "write 1M x 10 sample text",
      [&] {
        TextWriter out(ours);
        table.write(out);
        require(out.commit(), out.problem());
        return 1.0;
      },
      [&] { return limits::writeTable(byHand, numbers, kColumns) ? 1.0 : 0.0; });
  row(
      "read 1M x 10 sample text",
      [&] {
        TextReader in = TextReader::fromFile(ours);
        sampValues read;
        require(read.read(in), in.problem());
        return 1.0 * read.rows();
      },
      [&] { return limits::readTable(byHand, kCells); });
  for (const std::string& path : {ours, byHand}) std::filesystem::remove(path);
}

}  // namespace
}  // namespace tarvex::bench

// Without arguments all rows, otherwise those with the word in their names.
int main(int argc, char** argv) {
  using namespace tarvex::bench;
  if (argc > 1) wanted = argv[1];
  std::printf("%-62s %9s %9s %9s %9s %7s\n", "work, ms", "core", "1 thread", "all", "limit", "ratio");
  latinRows();
  programRows();
  sobolRows();
  equationRows();
  fastRow();
  regressionRow();
  tableRows();
}
