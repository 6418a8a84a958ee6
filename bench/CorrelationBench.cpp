#include <benchmark/benchmark.h>

#include "Cases.h"
#include "correlation/ImanConover.h"
#include "sampling/RepLatinSampler.h"

namespace tarvex::bench {
namespace {

constexpr std::int32_t kFactors = 10;
constexpr std::int32_t kReplicates = 10;
constexpr std::int32_t kDesignDone = 50;

// Neighbours in the list have a rank correlation of 0.3.
bool correlateNeighbours(FactorList& factors) {
  factors.correlationMode = kImanConover;
  bool all = true;
  for (std::int32_t i = 1; i < factors.correlatableCount(); ++i) all = factors.setMatrix(i - 1, i, 0.3f) && all;
  return all;
}

void generateDesign(PrepConfiguration& prep, benchmark::State& state) {
  if (!correlateNeighbours(prep.factors)) return state.SkipWithError("no correlation");
  for (std::int32_t target = 1; target <= kDesignDone; ++target)
    if (prep.generate(target) < 0) {
      state.SkipWithError(prep.sampler->errorText.c_str());
      return;
    }
}

// Arg: runs. The largest one is the size that must stay within 300 MB.
void latinWithRanks(benchmark::State& state) {
  for (auto _ : state) {
    PrepConfiguration prep = preparedConfiguration(kLatin, kFactors, static_cast<std::int32_t>(state.range(0)));
    generateDesign(prep, state);
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

void replicatedLatinWithRanks(benchmark::State& state) {
  const auto runs = static_cast<std::int32_t>(state.range(0));
  for (auto _ : state) {
    PrepConfiguration prep = preparedConfiguration(kRepLatin, kFactors, runs);
    auto& sampler = static_cast<RepLatinSampler&>(*prep.sampler);
    require(sampler.setBaseDesign(runs / kReplicates), "the replicated design refuses its settings");
    sampler.setReplications(kReplicates);
    generateDesign(prep, state);
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

void rankTable(benchmark::State& state) {
  FactorList factors = mixedFactors(kFactors);
  correlateNeighbours(factors);
  for (auto _ : state)
    benchmark::DoNotOptimize(ImanConover(factors, static_cast<std::int32_t>(state.range(0))).isValid());
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

BENCHMARK(latinWithRanks)->Arg(100000)->Arg(1000000)->Iterations(1)->Unit(benchmark::kMillisecond);
BENCHMARK(replicatedLatinWithRanks)->Arg(100000)->Iterations(1)->Unit(benchmark::kMillisecond);
BENCHMARK(rankTable)->Arg(100000)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace tarvex::bench
