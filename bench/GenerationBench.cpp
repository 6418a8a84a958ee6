#include <benchmark/benchmark.h>

#include <cctype>
#include <string>

#include "Cases.h"
#include "sampling/SamplerFactory.h"

namespace tarvex::bench {
namespace {

constexpr std::int32_t kFactors = 10;
constexpr std::int32_t kRuns = 100000;
constexpr std::int32_t kDesignDone = 50;
constexpr std::int32_t kDone = 100;

void generateTo(PrepConfiguration& prep, std::int32_t from, std::int32_t to, benchmark::State& state) {
  for (std::int32_t target = from; target <= to; ++target) {
    if (prep.generate(target) < 0) {
      state.SkipWithError(prep.sampler->errorText.c_str());
      return;
    }
  }
}

// The numbers of the design, before they become values of factors.
void design(benchmark::State& state, std::int32_t methodId) {
  std::int64_t rows = 0;
  for (auto _ : state) {
    PrepConfiguration prep = preparedConfiguration(methodId, kFactors, kRuns);
    generateTo(prep, 1, kDesignDone, state);
    rows += prep.samples.rows();
  }
  state.SetItemsProcessed(rows);
}

void valuePass(benchmark::State& state) {
  std::int64_t rows = 0;
  for (auto _ : state) {
    state.PauseTiming();
    PrepConfiguration prep = preparedConfiguration(kRandom, kFactors, kRuns);
    generateTo(prep, 1, kDesignDone, state);
    state.ResumeTiming();
    generateTo(prep, kDesignDone + 1, kDone, state);
    rows += prep.samples.rows();
  }
  state.SetItemsProcessed(rows);
}

const bool kRegistered = [] {
  for (std::int32_t id = 0; id < kMethodCount; ++id) {
    // Fixed samples are typed, not generated.
    if (id == kFixed || makeSampler(id) == nullptr) continue;
    const std::string name = "design/" + std::string(methodNameOf(id));
    benchmark::RegisterBenchmark(name.c_str(), design, id)->Unit(benchmark::kMillisecond);
  }
  return true;
}();
BENCHMARK(valuePass)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace tarvex::bench
