#include <benchmark/benchmark.h>

#include <filesystem>
#include <memory>
#include <string>

#include "Cases.h"
#include "base/NumberText.h"
#include "base/TextWriter.h"
#include "base/WorkingFile.h"
#include "base/uniformRandom.h"
#include "model/InternalRun.h"
#include "model/ModelConfiguration.h"

namespace tarvex::bench {
namespace {

constexpr std::int32_t kRows = 10000;

struct Equation {
  const char* name;
  const char* text;
  std::int16_t type;
};

std::unique_ptr<InternalModel> makeModel(std::int32_t inputs, const std::vector<Equation>& equations) {
  auto model = std::make_unique<InternalModel>();
  bool good = true;
  for (std::int32_t i = 0; i < inputs; ++i) good = good && model->addVariable("x" + std::to_string(i + 1));
  for (const Equation& equation : equations) {
    good = good && model->addExpression(model->numExpressions(), equation.name, equation.text, equation.type);
  }
  return good ? std::move(model) : nullptr;
}

void internalRun(benchmark::State& state, std::int32_t inputs, const std::vector<Equation>& equations) {
  std::unique_ptr<InternalModel> model = makeModel(inputs, equations);
  if (model == nullptr) {
    state.SkipWithError("the model refuses an equation");
    return;
  }
  const sampValues samples = filledStore(kRows, inputs);
  for (auto _ : state) {
    ModelResults results;
    InternalRun run(*model, samples, results);
    if (!run.prepare()) state.SkipWithError("the run can't be prepared");
    for (int target = 1; target <= 100; ++target) {
      if (run.advance(static_cast<float>(target)) < 0) {
        state.SkipWithError("the results can't be stored");
      }
    }
  }
  state.SetItemsProcessed(state.iterations() * kRows);
}

BENCHMARK_CAPTURE(internalRun, oneEquation, 3,
                  std::vector<Equation>{{"y", "sin(x1) + 7 * sin(x2) ** 2 + 0.1 * x3 ** 4 * sin(x1)", 1}})
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(internalRun, fiveEquations, 20,
                  std::vector<Equation>{{"a", "x1 * x2 + x3 * x4 + x5", 0},
                                        {"b", "exp(-a) + sqrt(x6 * x7) * x8", 0},
                                        {"c", "a > b ? x9 + x10 : x11 - x12", 1},
                                        {"d", "c * x13 + b * x14 + sin(x15)", 1},
                                        {"e", "d ** 2 + x16 * x17 + x18 + x19 / (1 + x20)", 1}})
    ->Unit(benchmark::kMillisecond);

// A file of ten outputs, a row a run or a row for each of 25 times: in all kRows rows of nine digits.
void modelOutput(benchmark::State& state, bool hasTimes) {
  constexpr std::int32_t kOutputs = 10;
  constexpr std::int32_t kPoints = 25;
  ModelConfiguration configuration;
  configuration.choice.outputFile = WorkingFile::directory() + "/tarvex-bench-model.out";
  TextWriter out(configuration.choice.outputFile);
  out << kOutputs << '\n';
  for (std::int32_t k = 0; k < kOutputs; ++k) out << 'y' << k << '\n';
  out << "time = " << (hasTimes ? "yes" : "no") << '\n' << (hasTimes ? kRows / kPoints : kRows) << '\n';
  std::int32_t word = 1;
  for (std::int32_t row = 0; row < kRows; ++row) {
    if (hasTimes && row % kPoints == 0) out << "RUN " << row / kPoints << '\n' << kPoints << '\n';
    if (hasTimes) out << row % kPoints << ' ';
    for (std::int32_t k = 0; k < kOutputs; ++k) out << numberText(uniformRandom(word), 9) << ' ';
    out << '\n';
  }
  if (!out.commit()) state.SkipWithError("the file can't be written");
  const auto ignore = [](const std::string&, const std::string&) {};
  std::string problem;
  for (auto _ : state) {
    if (!configuration.readModelOutput(ignore, problem)) state.SkipWithError("the file can't be read");
  }
  std::filesystem::remove(configuration.choice.outputFile);
  state.SetItemsProcessed(state.iterations() * kRows);
}

BENCHMARK_CAPTURE(modelOutput, noTimes, false)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(modelOutput, times, true)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace tarvex::bench
