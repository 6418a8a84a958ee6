#include "Cases.h"

#include <array>
#include <bit>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <utility>
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

namespace {

struct Kind {
  const char* type;
  const char* parameters;
};

// Named x1, x2, ...
FactorList listOf(const std::vector<Kind>& kinds) {
  std::string text = "Default Truncations:\n0.001\t0.999\n\n" + std::to_string(kinds.size()) + " Distributions:\n";
  for (std::size_t i = 0; i < kinds.size(); ++i)
    text += std::string(kinds[i].type) + "\nx" + std::to_string(i + 1) + "\n\n" + kinds[i].parameters + "\n";
  text += "Correlation information\n";
  for (std::size_t i = 0; i < kinds.size(); ++i) text += "0 -1 0 \n";
  text += "Correlation Matrix:\n";
  for (std::size_t i = 0; i < kinds.size(); ++i) {
    for (std::size_t j = 0; j < kinds.size(); ++j) text += i == j ? "1\t" : "0\t";
    text += "\n";
  }
  text += "Stein Information:\n\n0\n0\n0\n2\n";

  FactorList list;
  TextReader in = TextReader::fromText(std::move(text));
  require(list.read(in) && list.factorCount() == static_cast<std::int32_t>(kinds.size()),
          "the factors of the benchmark can't be read");
  return list;
}

constexpr Kind kUniform = {"Uniform", "1\t1\n-3.14159\t3.14159\t1\n"};
constexpr Kind kNormal = {"Normal", "1\t1\t0.2\t0.001\t0.999\n"};
constexpr Kind kLogNormal = {"LogNormal", "1\t0\t0.5\t0.001\t0.999\n"};
constexpr Kind kWeibull = {"Weibull", "1\t2\t1\t0\t0.999\n"};
constexpr Kind kTriangular = {"Triangular", "1\t0\t1\t3\n"};

}  // namespace

FactorList mixedFactors(std::int32_t count) {
  constexpr std::array kKinds = {kNormal, kUniform, kLogNormal, kTriangular, kWeibull};
  std::vector<Kind> kinds;
  for (std::int32_t i = 0; i < count; ++i) kinds.push_back(kKinds[static_cast<std::size_t>(i) % kKinds.size()]);
  return listOf(kinds);
}

FactorList tenFactors(bool ranked) {
  FactorList list = listOf({kUniform,
                            kUniform,
                            kNormal,
                            kNormal,
                            kLogNormal,
                            kLogNormal,
                            kWeibull,
                            kWeibull,
                            {"Beta", "1\t2.5\t3.5\t0\t1\n"},
                            kTriangular});
  if (!ranked) return list;
  constexpr float kNearby = 0.5F;
  for (std::int32_t i = 1; i < list.factorCount(); ++i) {
    float correlation = 1.0F;
    for (std::int32_t j = i - 1; j >= 0; --j)
      require(list.setMatrix(i, j, correlation *= kNearby), "the correlation is refused");
  }
  list.correlationMode = kImanConover;
  return list;
}

FactorList twelveFactors() {
  std::vector<Kind> kinds(7, kUniform);
  kinds.resize(12, {"LogUniform", "1\t1\n0.1\t10\t1\n"});
  return listOf(kinds);
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
  return preparedConfiguration(methodId, mixedFactors(factors), runs);
}

PrepConfiguration preparedConfiguration(std::int32_t methodId, FactorList factors, std::int32_t runs) {
  PrepConfiguration prep;
  prep.factors = std::move(factors);
  prep.sampler = makeSampler(methodId);
  require(prep.sampler != nullptr, "there is no such method");
  prep.sampler->setNumFactors(prep.factors.factorCount());
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
