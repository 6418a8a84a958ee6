// A table of the work that a study of a million runs passes: ours beside a program written by hand for the job alone,
// in milliseconds of this process's own time, the best of some turns.
#include <time.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <limits>
#include <string>
#include <vector>

#include "Cases.h"
#include "base/TextReader.h"
#include "base/TextWriter.h"
#include "base/uniformRandom.h"
#include "limits.h"
#include "postproc/SensitivityStats.h"
#include "sampling/FastSampler.h"
#include "sampling/SampleStatistics.h"
#include "sampling/SobolSampler.h"

namespace tarvex::bench {
namespace {

constexpr int kTurns = 3;

double milliseconds() {
  return millisecondsOf(CLOCK_PROCESS_CPUTIME_ID);
}

double best(const std::function<double()>& turn) {
  double least = std::numeric_limits<double>::infinity();
  for (int i = 0; i < kTurns; ++i) {
    const double before = milliseconds();
    volatile double result = turn();
    static_cast<void>(result);
    least = std::min(least, milliseconds() - before);
  }
  return least;
}

void row(const char* work, const std::function<double()>& ours, const std::function<double()>& limit) {
  const double own = best(ours);
  const double least = best(limit);
  std::printf("%-62s %9.1f %9.1f %7.1f\n", work, own, least, own / least);
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

int main() {
  std::printf("%-62s %9s %9s %7s\n", "work, one thread, ms", "ours", "limit", "ratio");
  tarvex::bench::sobolRows();
  tarvex::bench::fastRow();
  tarvex::bench::regressionRow();
  tarvex::bench::tableRows();
}
