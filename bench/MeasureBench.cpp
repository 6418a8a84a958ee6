#include <benchmark/benchmark.h>

#include <string>
#include <vector>

#include "Cases.h"
#include "postproc/SensitivityStats.h"
#include "postproc/UaStats.h"

namespace tarvex::bench {
namespace {

constexpr std::int32_t kFactors = 20;
constexpr std::int32_t kVariables = 5;
constexpr std::int32_t kRuns = 1000000;

// The measures of the method over a whole design and five outputs.
void measures(benchmark::State& state, std::int32_t methodId) {
  PrepConfiguration prep = preparedConfiguration(methodId, kFactors, kRuns);
  if (prep.generate(50) < 50) {
    state.SkipWithError(prep.sampler->errorText.c_str());
    return;
  }
  const OutputTable outputs = filledStore(prep.samples.rows(), kVariables);
  for (auto _ : state) {
    const std::unique_ptr<SensitivityStats> statistics = makeSensitivityForMethod(methodId);
    statistics->variableCount = kVariables;
    if (!statistics->compute(prep, outputs)) state.SkipWithError(statistics->errorText.c_str());
  }
  state.SetItemsProcessed(state.iterations() * prep.samples.rows());
}

void uncertainty(benchmark::State& state) {
  const OutputTable outputs = filledStore(kRuns, kVariables);
  const std::vector<std::string> names(kVariables, "y");
  for (auto _ : state) {
    UaStats statistics;
    if (!statistics.compute(names, outputs)) state.SkipWithError("the table can't be read");
  }
  state.SetItemsProcessed(state.iterations() * kRuns);
}

BENCHMARK_CAPTURE(measures, regressionRanksSmirnov, kRandom)->Unit(benchmark::kMillisecond)->Iterations(1);
BENCHMARK_CAPTURE(measures, fastExtended, kFast)->Unit(benchmark::kMillisecond)->Iterations(1);
BENCHMARK_CAPTURE(measures, sobolFirstAndTotal, kSobol)->Unit(benchmark::kMillisecond)->Iterations(1);
BENCHMARK_CAPTURE(measures, morris, kMorris)->Unit(benchmark::kMillisecond)->Iterations(1);
BENCHMARK_CAPTURE(measures, importance, kRepLatin)->Unit(benchmark::kMillisecond)->Iterations(1);
BENCHMARK(uncertainty)->Unit(benchmark::kMillisecond)->Iterations(1);

}  // namespace
}  // namespace tarvex::bench
