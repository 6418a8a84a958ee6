#include <benchmark/benchmark.h>

#include <vector>

#include "Cases.h"
#include "base/TextReader.h"
#include "base/TextWriter.h"

namespace tarvex::bench {
namespace {

constexpr std::int32_t kColumns = 20;
// Ten windows: every pass goes through the working files.
constexpr std::int32_t kRows = 10 * sampValues::cacheLimit / kColumns;

void storeFillByRow(benchmark::State& state) {
  for (auto _ : state) benchmark::DoNotOptimize(filledStore(kRows, kColumns).rows());
  state.SetItemsProcessed(state.iterations() * kRows);
}
BENCHMARK(storeFillByRow)->Unit(benchmark::kMillisecond);

void storeReadByRow(benchmark::State& state) {
  const sampValues store = filledStore(kRows, kColumns);
  std::vector<double> row(kColumns);
  for (auto _ : state) {
    for (std::int32_t i = 0; i < kRows; ++i) benchmark::DoNotOptimize(store.getRow(i, row.data()));
  }
  state.SetItemsProcessed(state.iterations() * kRows);
}
BENCHMARK(storeReadByRow)->Unit(benchmark::kMillisecond);

void storeReadByColumn(benchmark::State& state) {
  const sampValues store = filledStore(kRows, kColumns);
  std::vector<double> column;
  for (auto _ : state) {
    for (std::int32_t j = 0; j < kColumns; ++j) benchmark::DoNotOptimize(store.getColumn(j, column));
  }
  state.SetItemsProcessed(state.iterations() * kRows);
}
BENCHMARK(storeReadByColumn)->Unit(benchmark::kMillisecond);

void storeChangeByColumn(benchmark::State& state) {
  sampValues store = filledStore(kRows, kColumns);
  std::vector<double> row(kColumns);
  for (auto _ : state) {
    for (std::int32_t j = 0; j < kColumns; ++j) {
      for (std::int32_t i = 0; i < kRows; ++i)
        if (!store.setColumnValue(i, j, i * 0.5)) state.SkipWithError(store.errorText().c_str());
    }
    // Back to rows: what was changed must arrive there.
    benchmark::DoNotOptimize(store.getRow(0, row.data()));
  }
  state.SetItemsProcessed(state.iterations() * kRows);
}
BENCHMARK(storeChangeByColumn)->Unit(benchmark::kMillisecond);

void sampleTextWrite(benchmark::State& state) {
  const sampValues store = filledStore(kRows, kColumns);
  std::int64_t bytes = 0;
  for (auto _ : state) {
    TextWriter out;
    store.write(out);
    bytes += static_cast<std::int64_t>(out.text().size());
  }
  state.SetItemsProcessed(state.iterations() * kRows);
  state.SetBytesProcessed(bytes);
}
BENCHMARK(sampleTextWrite)->Unit(benchmark::kMillisecond);

void sampleTextRead(benchmark::State& state) {
  TextWriter out;
  filledStore(kRows, kColumns).write(out);
  for (auto _ : state) {
    TextReader in = TextReader::fromText(out.text());
    sampValues store;
    if (!store.read(in) || store.rows() != kRows) state.SkipWithError("the table can't be read back");
  }
  state.SetItemsProcessed(state.iterations() * kRows);
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(out.text().size()));
}
BENCHMARK(sampleTextRead)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace tarvex::bench
