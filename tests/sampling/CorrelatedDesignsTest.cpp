#include "base/ColumnShelf.h"
#include "base/uniformRandom.h"
#include "sampling/Designs.h"
#include "sampling/LatinSampler.h"
#include "sampling/RandomSampler.h"
#include "sampling/RepLatinSampler.h"
#include "sampling/SamplerFactory.h"
#include "support/Test.h"

// What the designs that go with a correlation promise in each of its modes: the wanted correlation between columns that
// are what they would be without it, the same sample in steps of any size, a section that is read back.

namespace tarvex {
namespace {

constexpr std::int32_t kSteinRows = 700;

// f0 follows f4 by 0.8, f2 follows f0 by -0.5; in the matrix and the Stein sample the same pairs are correlated.
FactorList correlated(CorrelationMode mode) {
  FactorList factors = listOf("srscs");
  factors.correlationMode = mode;
  EXPECT_TRUE(factors.link(0, 4, 0.8));
  EXPECT_TRUE(factors.link(2, 0, -0.5));
  EXPECT_TRUE(factors.setMatrix(0, 2, 0.8f));
  EXPECT_TRUE(factors.setMatrix(0, 1, -0.5f));
  EXPECT_TRUE(factors.steinInfo.allocate(factors.factorCount()));
  std::int32_t state = -99;
  for (std::int32_t row = 0; row < kSteinRows; ++row) {
    const double x = uniformRandom(state);
    const double values[] = {x, 0.0, 1.0 - x + uniformRandom(state), 103.0, x + 0.5 * uniformRandom(state)};
    EXPECT_GT(factors.steinInfo.addRow(values), 0);
  }
  return factors;
}

std::unique_ptr<Sampler> samplerOf(std::int32_t method, std::int32_t runs, std::int32_t seed) {
  std::unique_ptr<Sampler> sampler = makeSampler(method);
  if (auto* replicated = dynamic_cast<RepLatinSampler*>(sampler.get())) {
    EXPECT_TRUE(replicated->setBaseDesign(runs / 5));
    replicated->setReplications(5);
  }
  EXPECT_TRUE(sampler->setSamples(runs));
  EXPECT_TRUE(sampler->setSeed(seed));
  return sampler;
}

struct Combination {
  MethodId method;
  CorrelationMode mode;
};

const std::vector<Combination> kCombinations{
    {kRandom, kDependenceTree}, {kRandom, kImanConover},   {kRandom, kNoCorrelation},
    {kLatin, kDependenceTree},  {kLatin, kImanConover},    {kLatin, kNoCorrelation},
    {kLatin, kSteinSample},     {kRepLatin, kImanConover}, {kRepLatin, kSteinSample},
};

std::string nameOf(const Combination& combination) {
  const char* modes[] = {"tree", "matrix", "none", "Stein"};
  return std::string(methodNameOf(combination.method)) + ", " + modes[combination.mode];
}

TEST(CorrelatedDesigns, areTheSameInStepsAgainAndAfterAStop) {
  for (const Combination& combination : kCombinations) {
    SCOPED_TRACE(nameOf(combination));
    FactorList factors = correlated(combination.mode);
    // Each call starts the stream of a Latin root's children anew, so that short steps change them.
    const bool childrenDiffer = combination.method == kLatin && combination.mode == kDependenceTree;
    const Table atOnce = generated(*samplerOf(combination.method, 95, 31), factors);
    ASSERT_EQ(atOnce.size(), 95u);
    const std::size_t memory = ShelfMemory::limit();
    ShelfMemory::use(0);
    EXPECT_EQ(generated(*samplerOf(combination.method, 95, 31), factors), atOnce) << "with what is laid by on the disk";
    ShelfMemory::use(memory);
    for (const double step : {1.0, 7.0})
      for (const std::int32_t column : {0, 2, 4}) {
        if (childrenDiffer && column != 4) continue;
        const Table inSteps = generated(*samplerOf(combination.method, 95, 31), factors, step);
        EXPECT_EQ(columnOf(inSteps, column), columnOf(atOnce, column)) << step << ' ' << column;
      }
    for (const std::vector<double>& run : atOnce) {
      EXPECT_EQ(run[1], 0.0);
      EXPECT_EQ(run[3], 103.0);
      for (const std::size_t i : {0u, 2u, 4u}) EXPECT_TRUE(run[i] > 0.0 && run[i] < 1.0);
    }
    // Given up half way, then made again: a replicated design continues its stream, all others repeat it.
    const std::unique_ptr<Sampler> sampler = samplerOf(combination.method, 95, 31);
    sampValues store;
    ASSERT_TRUE(store.allocate(5));
    sampler->reset();
    factors.prepareOrder();
    EXPECT_GE(sampler->generate(37.0, store, factors), 37.0);
    const Table second = generated(*sampler, factors);
    EXPECT_EQ(second == atOnce, combination.method != kRepLatin);
  }
}

TEST(CorrelatedDesigns, ofARefusedMatrixAreUncorrelatedOrRefused) {
  FactorList factors = correlated(kImanConover);
  EXPECT_EQ(makeSampler(kRandom)->warningBefore(factors), "");
  for (const auto& [i, j, correlation] : {std::tuple{0, 1, 0.9f}, {0, 2, 0.9f}, {1, 2, -0.9f}})
    EXPECT_TRUE(factors.setMatrix(i, j, correlation));
  FactorList plain = correlated(kNoCorrelation);
  const std::string text = "The Iman Conover Matrix is not positive definited.\nNo correlation can be calculated.";
  for (const MethodId method : {kRandom, kLatin}) {
    EXPECT_EQ(makeSampler(method)->warningBefore(factors), text);
    EXPECT_EQ(generated(*samplerOf(method, 50, 8), factors, 1.0), generated(*samplerOf(method, 50, 8), plain, 1.0));
  }
  EXPECT_EQ(refusal(*samplerOf(kRepLatin, 50, 8), factors), text);
}

// Nothing stochastic, or a table in which single precision can't tell the last cells from the end of a phase.
TEST(CorrelatedDesigns, unusualTables) {
  for (const CorrelationMode mode : {kDependenceTree, kImanConover, kNoCorrelation}) {
    FactorList constants = listOf("rcc");
    constants.correlationMode = mode;
    for (const MethodId method : {kRandom, kLatin}) {
      const Table table = generated(*samplerOf(method, 3, 1), constants, 1.0);
      EXPECT_EQ(table, Table(3, {0.0, 101.0, 102.0})) << mode;
    }
  }
  constexpr std::int32_t kRuns = 1500000;
  FactorList factors = listOf("sc");
  sampValues store;
  const std::unique_ptr<Sampler> sampler = samplerOf(kLatin, kRuns, 1);
  ASSERT_TRUE(generateInto(store, *sampler, factors));
  double last = 0.0;
  ASSERT_TRUE(store.getValue(kRuns - 1, 1, last));
  EXPECT_EQ(last, 101.0);
}

}  // namespace
}  // namespace tarvex
