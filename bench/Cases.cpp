#include "Cases.h"

#include <bit>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "base/TextReader.h"
#include "base/uniformRandom.h"
#include "sampling/FastSampler.h"
#include "sampling/MorrisSampler.h"
#include "sampling/RepLatinSampler.h"
#include "sampling/SamplerFactory.h"
#include "sampling/SobolSampler.h"

namespace tarvex::bench {

void require(bool good, const std::string& what) {
  if (good) return;
  std::fprintf(stderr, "%s\n", what.c_str());
  std::exit(1);
}

double millisecondsOf(clockid_t clock) {
  timespec time{};
  clock_gettime(clock, &time);
  return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) * 1e-6;
}

FactorList mixedFactors(std::int32_t count) {
  struct Kind {
    const char* type;
    const char* parameters;
  };
  static const Kind kKinds[] = {{"Normal", "1\t1\t0.2\t0.001\t0.999\n"},
                                {"Uniform", "1\t1\n-3.14159\t3.14159\t1\n"},
                                {"LogNormal", "1\t0\t0.5\t0.001\t0.999\n"},
                                {"Triangular", "1\t0\t1\t3\n"},
                                {"Weibull", "1\t2\t1\t0\t0.999\n"}};
  std::string text = "Default Truncations:\n0.001\t0.999\n\n" + std::to_string(count) + " Distributions:\n";
  for (std::int32_t i = 0; i < count; ++i) {
    const Kind& kind = kKinds[static_cast<std::size_t>(i) % std::size(kKinds)];
    text += std::string(kind.type) + "\nx" + std::to_string(i + 1) + "\n\n" + kind.parameters + "\n";
  }
  text += "Correlation information\n";
  for (std::int32_t i = 0; i < count; ++i) text += "0 -1 0 \n";
  text += "Correlation Matrix:\n";
  for (std::int32_t i = 0; i < count; ++i) {
    for (std::int32_t j = 0; j < count; ++j) text += i == j ? "1\t" : "0\t";
    text += "\n";
  }
  text += "Stein Information:\n\n0\n0\n0\n2\n";

  FactorList list;
  TextReader in = TextReader::fromText(std::move(text));
  require(list.read(in) && list.factorCount() == count, "the factors of the benchmark can't be read");
  return list;
}

namespace {

// A design of the method's own structure with at most `runs` runs.
void shapeDesign(PrepConfiguration& prep, std::int32_t runs) {
  const std::int32_t factors = prep.factors.factorCount();
  std::int64_t designRuns = runs;
  if (auto* morris = dynamic_cast<MorrisSampler*>(prep.sampler.get())) {
    const std::int32_t trajectories = runs / (factors + 1);
    require(morris->setLevels(4) && morris->setTrajectories(static_cast<std::uint32_t>(trajectories)),
            "Morris refuses its settings");
    designRuns = MorrisSampler::runCount(trajectories, factors);
  } else if (auto* sobol = dynamic_cast<SobolSampler*>(prep.sampler.get())) {
    const std::int64_t blocks = SobolSampler::blockCount(factors, 1, SobolSampler::kFirstAndTotal, false);
    const auto baseSize = static_cast<std::int32_t>(std::bit_floor(static_cast<std::uint32_t>(runs / blocks)));
    require(sobol->setBaseSize(baseSize), "Sobol refuses its settings");
    designRuns = baseSize * blocks;
  } else if (auto* replicated = dynamic_cast<RepLatinSampler*>(prep.sampler.get())) {
    constexpr std::int32_t kReplications = 10;
    require(replicated->setBaseDesign(runs / kReplications), "the replicated design refuses its settings");
    replicated->setReplications(kReplications);
    replicated->synchronise(prep.factors);
    prep.factors.correlationMode = kImanConover;
  } else if (auto* fast = dynamic_cast<FastSampler*>(prep.sampler.get())) {
    require(fast->setAnalysisMode(FastSampler::kExtended), "FAST refuses its settings");
  }
  require(prep.sampler->setSamples(static_cast<std::int32_t>(designRuns)), "the sampler refuses its runs");
}

}  // namespace

PrepConfiguration preparedConfiguration(std::int32_t methodId, std::int32_t factors, std::int32_t runs) {
  PrepConfiguration prep;
  prep.factors = mixedFactors(factors);
  prep.sampler = makeSampler(methodId);
  require(prep.sampler != nullptr, "there is no such method");
  prep.sampler->setNumFactors(factors);
  shapeDesign(prep, runs);
  require(prep.prepareGeneration(), "the generation can't be prepared");
  return prep;
}

sampValues filledStore(std::int32_t rows, std::int32_t columns) {
  sampValues store;
  require(store.allocate(columns), "the store refuses its width");
  std::vector<double> row(static_cast<std::size_t>(columns));
  std::int32_t state = 4711;
  for (std::int32_t i = 0; i < rows; ++i) {
    for (double& value : row) value = uniformRandom(state);
    require(store.addRow(row.data()) == i + 1, "the store can't be filled");
  }
  return store;
}

}  // namespace tarvex::bench
