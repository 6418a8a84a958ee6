// Whole sample files against the expected ones: settings, draws, correlation, value pass, statistics, text form.
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>

#include "base/TextReader.h"
#include "base/TextWriter.h"
#include "base/uniformRandom.h"
#include "sampling/FastSampler.h"
#include "sampling/FixedSampler.h"
#include "sampling/MorrisSampler.h"
#include "sampling/PrepConfiguration.h"
#include "sampling/RepLatinSampler.h"
#include "sampling/SobolSampler.h"
#include "support/Golden.h"
#include "support/TextFiles.h"

namespace tarvex::test {
namespace {

struct Case {
  const char* name;  // of the expected file, without its suffix
  const char* factors;
  std::function<std::unique_ptr<Sampler>()> make;
  std::int32_t order = 0;
};

std::unique_ptr<Sampler> runs(std::int32_t method, std::int32_t count, std::int32_t seed = 0) {
  std::unique_ptr<Sampler> sampler = makeSampler(method);
  EXPECT_TRUE(sampler->setSamples(count));
  if (seed > 0) {
    EXPECT_TRUE(sampler->setSeed(seed));
  }
  return sampler;
}

std::unique_ptr<Sampler> replicated(std::int32_t baseDesign, std::int32_t replications, std::int32_t seed = 0) {
  auto sampler = std::make_unique<RepLatinSampler>();
  EXPECT_TRUE(sampler->setBaseDesign(baseDesign));
  sampler->setReplications(replications);
  if (seed > 0) {
    EXPECT_TRUE(sampler->setSeed(seed));
  }
  return sampler;
}

std::unique_ptr<Sampler> morris(std::uint32_t trajectories, std::uint32_t levels, std::int32_t count,
                                std::int32_t seed) {
  auto sampler = std::make_unique<MorrisSampler>();
  EXPECT_TRUE(sampler->setTrajectories(trajectories) && sampler->setLevels(levels));
  EXPECT_TRUE(sampler->setSamples(count) && sampler->setSeed(seed));
  return sampler;
}

std::unique_ptr<Sampler> fast(std::int32_t mode, std::int32_t count, std::int32_t seed) {
  auto sampler = std::make_unique<FastSampler>();
  EXPECT_TRUE(sampler->setAnalysisMode(mode) && sampler->setSamples(count) && sampler->setSeed(seed));
  if (mode != FastSampler::kGroups) return sampler;
  for (const char* group : {"one", "two"}) sampler->addGroup(group);
  EXPECT_TRUE(sampler->addElement("one", "x1") && sampler->addElement("one", "x3") && sampler->addElement("two", "x4"));
  return sampler;
}

std::unique_ptr<Sampler> sobol(std::int32_t baseSize, std::int32_t kind, std::int32_t order, std::int32_t factors) {
  auto sampler = std::make_unique<SobolSampler>();
  EXPECT_TRUE(sampler->setBaseSize(baseSize) && sampler->setDesignKind(kind) && sampler->setOrder(order));
  const std::int64_t blocks = SobolSampler::blockCount(factors, order, kind, false);
  EXPECT_TRUE(sampler->setSamples(static_cast<std::int32_t>(baseSize * blocks)));
  return sampler;
}

std::unique_ptr<Sampler> fixedRows(const std::vector<std::vector<double>>& rows) {
  auto sampler = std::make_unique<FixedSampler>();
  sampler->setNumFactors(static_cast<std::int32_t>(rows.front().size()));
  for (const std::vector<double>& row : rows) EXPECT_TRUE(sampler->addRow(row));
  EXPECT_TRUE(sampler->setSamples(static_cast<std::int32_t>(rows.size())));
  return sampler;
}

// clang-format off
const std::vector<Case> kCases{
    {"random-none",      "kinds",    [] { return runs(kRandom, 100); }},
    {"random-by-factor", "mixed",    [] { return runs(kRandom, 40, 77); }, 1},
    {"random-tree",      "tree",     [] { return runs(kRandom, 120, 31); }},
    {"random-matrix",    "matrix",   [] { return runs(kRandom, 150, 5648423); }},
    {"latin-none",       "kinds",    [] { return runs(kLatin, 100, 9); }},
    {"latin-tree",       "tree",     [] { return runs(kLatin, 110, 12); }},
    {"latin-matrix",     "matrix",   [] { return runs(kLatin, 97, 3); }},
    {"latin-stein",      "stein",    [] { return runs(kLatin, 48, 8); }},
    {"plant",            "plant",    [] { return runs(kLatin, 60, 14); }},
    {"ishigami",         "ishigami", [] { return runs(kRandom, 200, 4); }},
    {"replatin-matrix",  "matrix",   [] { return replicated(20, 6); }},
    {"replatin-stein",   "stein",    [] { return replicated(15, 4, 44); }},
    {"pair",             "pair",     [] { return replicated(25, 5, 10); }},
    {"lptau",            "kinds",    [] { return runs(kLpTau, 128); }},
    {"morris",           "mixed",    [] { return morris(8, 4, 48, 21); }},
    {"fast-classic",     "mixed",    [] { return fast(FastSampler::kClassic, 315, 2); }},
    {"fast-extended",    "mixed",    [] { return fast(FastSampler::kExtended, 345, 2); }},
    {"fast-groups",      "mixed",    [] { return fast(FastSampler::kGroups, 400, 6); }},
    {"unit-classic",     "unit4",    [] { return fast(FastSampler::kClassic, 200, 1); }},
    {"unit-extended",    "unit4",    [] { return fast(FastSampler::kExtended, 400, 1); }},
    {"sobol",            "mixed",    [] { return sobol(16, SobolSampler::kFirstAndTotal, 1, 5); }},
    {"sobol-order2",     "mixed",    [] { return sobol(16, SobolSampler::kUpToOrder, 2, 5); }},
    {"unit-sobol",       "unit4",    [] { return sobol(32, SobolSampler::kFirstAndTotal, 1, 4); }},
    {"unit-order2",      "unit4",    [] { return sobol(32, SobolSampler::kUpToOrder, 2, 4); }},
    {"fixed",            "mixed",    [] { return fixedRows({{0.1, 0.5, 2, 0.6, 1, -3, 0.2, 1.5},
                                                            {0.9, 0.5, 2.5, 1.4, 1.25, -3, 0.333333333333, 2},
                                                            {0.5, 0.5, 1e-3, 7, 0, -3, 0.75, 1}}); }},
};
// clang-format on

class GoldenSample : public testing::TestWithParam<Case> {};

TEST_P(GoldenSample, agreesAndIsReadBack) {
  restoreInitialRandomState();
  PrepConfiguration prep;
  std::string message;
  ASSERT_TRUE(loadFactorFile(goldenPath(GetParam().factors) + ".fac", prep.factors, message)) << message;
  prep.sampler = GetParam().make();
  ASSERT_TRUE(prep.samples.setOrder(GetParam().order));
  ASSERT_TRUE(prep.prepareGeneration());
  for (std::int32_t target = 1, percent = 0; percent < 100; ++target) {
    percent = prep.generate(target);
    ASSERT_GE(percent, 0) << prep.sampler->errorText;
  }
  TextWriter out;
  prep.write(out);
  const std::string expected = std::string(GetParam().name) + ".sam";
  EXPECT_TRUE(compareGolden(expected, out.text()));

  PrepConfiguration loaded;
  const std::string text = readFile(goldenPath(expected));
  TextReader in = TextReader::fromText(text);
  ASSERT_TRUE(loaded.read(in));
  TextWriter again;
  loaded.write(again);
  // Behind the section stand a directory and a file name.
  const std::size_t section = text.rfind("\n\n", text.size() - 3);
  EXPECT_EQ(text.substr(0, section), again.text().substr(0, section));
}

INSTANTIATE_TEST_SUITE_P(Methods, GoldenSample, testing::ValuesIn(kCases), [](const auto& row) {
  std::string name = row.param.name;
  std::replace(name.begin(), name.end(), '-', '_');
  return name;
});

}  // namespace
}  // namespace tarvex::test
