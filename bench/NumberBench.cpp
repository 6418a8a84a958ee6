#include <benchmark/benchmark.h>

#include <string>
#include <vector>

#include "base/NumberText.h"
#include "base/uniformRandom.h"

namespace tarvex::bench {
namespace {

std::vector<double> numbers() {
  std::vector<double> values(4096);
  std::int32_t state = 99;
  for (double& value : values) value = (uniformRandom(state) - 0.5) * 2000.0;
  return values;
}

void numberWrite(benchmark::State& state) {
  const std::vector<double> values = numbers();
  const int precision = static_cast<int>(state.range(0));
  char buffer[kMaxNumberText];
  for (auto _ : state) {
    for (const double value : values) benchmark::DoNotOptimize(writeNumber(buffer, value, precision));
  }
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(values.size()));
}
BENCHMARK(numberWrite)->ArgName("digits")->Arg(6)->Arg(10);

void numberParse(benchmark::State& state) {
  std::vector<std::string> texts;
  for (const double value : numbers()) texts.push_back(numberText(value, 10));
  double value = 0.0;
  for (auto _ : state) {
    for (const std::string& text : texts) {
      benchmark::DoNotOptimize(parseNumber(text, value));
      benchmark::DoNotOptimize(value);
    }
  }
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(texts.size()));
}
BENCHMARK(numberParse);

void uniformNumbers(benchmark::State& state) {
  std::int32_t word = 4711;
  for (auto _ : state) benchmark::DoNotOptimize(uniformRandom(word));
  state.SetItemsProcessed(state.iterations());
}
BENCHMARK(uniformNumbers);

}  // namespace
}  // namespace tarvex::bench
