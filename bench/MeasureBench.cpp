#include <benchmark/benchmark.h>
#include <time.h>

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "Cases.h"
#include "postproc/SensitivityStats.h"
#include "postproc/UaStats.h"

namespace tarvex::bench {
namespace {

constexpr std::int32_t kFactors = 20;
constexpr std::int32_t kVariables = 5;
constexpr std::int32_t kRuns = 1000000;

// The longest time between two reports of an operation, in milliseconds of this thread's own: other programs don't
// count.
class SlowestSlice {
 public:
  Progress progress() {
    last_ = now();
    return Progress([this](double) {
      end();
      return true;
    });
  }
  // Once the operation has returned.
  void show(benchmark::State& state) {
    end();
    state.counters["slice_ms"] = slowest_;
  }

 private:
  static double now() {
    timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) * 1e-6;
  }
  void end() {
    const double before = std::exchange(last_, now());
    slowest_ = std::max(slowest_, last_ - before);
  }

  double last_ = 0.0;
  double slowest_ = 0.0;
};

// The measures of the method over a whole design.
void measures(benchmark::State& state, std::int32_t methodId, std::int32_t variables = kVariables) {
  PrepConfiguration prep = preparedConfiguration(methodId, kFactors, kRuns);
  if (prep.generate(50) < 50) {
    state.SkipWithError(prep.sampler->errorText.c_str());
    return;
  }
  const OutputTable outputs = filledStore(prep.samples.rows(), variables);
  SlowestSlice slice;
  for (auto _ : state) {
    const std::unique_ptr<SensitivityStats> statistics = makeSensitivityForMethod(methodId);
    if (!statistics->compute(prep, outputs, slice.progress())) state.SkipWithError(statistics->errorText.c_str());
  }
  slice.show(state);
  state.SetItemsProcessed(state.iterations() * prep.samples.rows());
}

void uncertainty(benchmark::State& state) {
  const OutputTable outputs = filledStore(kRuns, kVariables);
  const std::vector<std::string> names(kVariables, "y");
  SlowestSlice slice;
  for (auto _ : state) {
    UaStats statistics;
    if (!statistics.compute(names, outputs, slice.progress())) state.SkipWithError(statistics.errorText.c_str());
  }
  slice.show(state);
  state.SetItemsProcessed(state.iterations() * kRuns);
}

BENCHMARK_CAPTURE(measures, regressionRanksSmirnov, kRandom)->Unit(benchmark::kMillisecond)->Iterations(1);
BENCHMARK_CAPTURE(measures, regressionOfOneOutput, kRandom, 1)->Unit(benchmark::kMillisecond)->Iterations(1);
BENCHMARK_CAPTURE(measures, fastExtended, kFast)->Unit(benchmark::kMillisecond)->Iterations(1);
BENCHMARK_CAPTURE(measures, sobolFirstAndTotal, kSobol)->Unit(benchmark::kMillisecond)->Iterations(1);
BENCHMARK_CAPTURE(measures, morris, kMorris)->Unit(benchmark::kMillisecond)->Iterations(1);
BENCHMARK_CAPTURE(measures, importance, kRepLatin)->Unit(benchmark::kMillisecond)->Iterations(1);
BENCHMARK(uncertainty)->Unit(benchmark::kMillisecond)->Iterations(1);

}  // namespace
}  // namespace tarvex::bench
