// Whole sample files against the expected ones: settings, draws, correlation, value pass, statistics, text form.
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>

#include "base/TextReader.h"
#include "base/TextWriter.h"
#include "base/uniformRandom.h"
#include "sampling/LatinSampler.h"
#include "sampling/PrepConfiguration.h"
#include "sampling/RandomSampler.h"
#include "sampling/RepLatinSampler.h"
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
