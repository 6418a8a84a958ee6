#include "sampling/PrepConfiguration.h"

#include <gtest/gtest.h>

#include "base/RememberedDirectories.h"
#include "base/TextReader.h"
#include "base/TextWriter.h"
#include "factors/Normal.h"
#include "factors/Relation.h"
#include "factors/Uniform.h"
#include "sampling/RandomSampler.h"
#include "sampling/SampleFiles.h"
#include "support/Damage.h"
#include "support/Golden.h"
#include "support/TempDirectory.h"
#include "support/TextFiles.h"

namespace tarvex {
namespace {

std::string recordOf(const PrepConfiguration& prep) {
  TextWriter out;
  prep.write(out);
  return out.text();
}

template <class Kind>
std::unique_ptr<Kind> named(const char* name) {
  auto factor = std::make_unique<Kind>();
  factor->name = name;
  return factor;
}

// Random runs of two uniform factors and what `extra` adds.
PrepConfiguration uniformPair(std::int32_t runs, std::unique_ptr<Factor> extra = nullptr) {
  PrepConfiguration prep;
  prep.factors.addFactor(named<Uniform>("a"));
  prep.factors.addFactor(named<Uniform>("b"));
  if (extra) prep.factors.addFactor(std::move(extra));
  prep.sampler = std::make_unique<RandomSampler>();
  prep.sampler->setSamples(runs);
  return prep;
}

std::int32_t generateAll(PrepConfiguration& prep) {
  EXPECT_TRUE(prep.prepareGeneration());
  std::int32_t percent = 0;
  for (std::int32_t target = 1; percent >= 0 && percent < 100; ++target) percent = prep.generate(target);
  return percent;
}

TEST(SampleFiles, areWrittenBackAsTheyWere) {
  const test::TempDirectory directory;
  const std::string copy = directory.file("copy.sam");
  for (const char* name : {"random-none.sam", "random-by-factor.sam", "random-tree.sam", "latin-matrix.sam",
                           "latin-stein.sam", "replatin-matrix.sam", "lptau.sam", "morris.sam", "fast-classic.sam",
                           "fast-groups.sam", "sobol-order2.sam", "fixed.sam"}) {
    RememberedDirectories::forget();
    PrepConfiguration prep;
    std::string message;
    ASSERT_TRUE(loadSampleFile(test::goldenPath(name), prep, message)) << message;
    ASSERT_TRUE(saveSampleFile(copy, prep, message)) << message;
    EXPECT_EQ(test::readFile(copy), test::readFile(test::goldenPath(name))) << name;
  }
}

TEST(SampleFiles, damagedOnesLeaveTheConfiguration) {
  for (const char* name : {"fixed.sam", "morris.sam"}) {
    PrepConfiguration prep = uniformPair(7);
    ASSERT_EQ(generateAll(prep), 100);
    const std::string before = recordOf(prep);
    test::forEachDamage(test::readFile(test::goldenPath(name)), [&](const std::string& what, const std::string& text) {
      if (text.size() > 20000) return;  // a file of several thousand numbers takes too long number by number
      TextReader in = TextReader::fromText(text);
      PrepConfiguration loaded;
      EXPECT_TRUE(loaded.read(in) || in.fail()) << what;
    });
    const test::TempDirectory directory;
    std::string message;
    test::writeFile(directory.file("cut.sam"), test::readFile(test::goldenPath(name)).substr(0, 300));
    EXPECT_FALSE(loadSampleFile(directory.file("cut.sam"), prep, message));
    EXPECT_EQ(message, "Error reading samples file");
    EXPECT_EQ(recordOf(prep), before);
  }
}

TEST(PrepConfiguration, aFactorWithoutInverseEndsGeneration) {
  auto flat = named<Normal>("flat");
  ASSERT_TRUE(flat->setStdDeviation(0.0));
  std::unique_ptr<Factor> factors[] = {std::move(flat), named<Factor>("plain")};
  for (auto& factor : factors) {
    PrepConfiguration prep = uniformPair(20, std::move(factor));
    EXPECT_EQ(generateAll(prep), -1);
    EXPECT_EQ(prep.sampler->errorText, "I cannot calculate the inverse cumulative of factor 3 : generation aborted");
    prep.cancelGeneration();
    EXPECT_EQ(prep.samples.rows(), 0);
  }
}

TEST(PrepConfiguration, rowsInWhichARelationFailsAreZeroAndCounted) {
  auto relation = named<Relation>("r");
  // The dry run has a at 0, so the divisor is 1 there; in the sample it is 0 wherever a is above one half.
  ASSERT_TRUE(relation->setExpression("1 / (a < 0.5)"));
  PrepConfiguration prep = uniformPair(200, std::move(relation));
  ASSERT_EQ(generateAll(prep), 100);
  int failed = 0;
  for (std::int32_t r = 0; r < prep.samples.rows(); ++r) {
    double row[3];
    ASSERT_TRUE(prep.samples.getRow(r, row));
    EXPECT_EQ(row[2], row[0] < 0.5 ? 1.0 : 0.0);
    failed += row[0] < 0.5 ? 0 : 1;
  }
  EXPECT_EQ(prep.relationFailures(), "The relation r could not be evaluated in " + std::to_string(failed) +
                                         " of 200 runs and has the value 0 there.");
}

// A stop at any percent leaves nothing; the same object then generates what it would have at first.
TEST(PrepConfiguration, aStopLeavesNothingBehind) {
  for (const std::int32_t stop : {1, 20, 37, 50, 51, 80, 99}) {
    PrepConfiguration prep = uniformPair(400);
    ASSERT_TRUE(prep.prepareGeneration());
    for (std::int32_t target = 1; target <= stop; ++target) ASSERT_LT(prep.generate(target), 100);
    prep.cancelGeneration();
    EXPECT_EQ(prep.samples.rows(), 0);
    EXPECT_FALSE(prep.sampleStatistics);
    PrepConfiguration fresh = uniformPair(400);
    ASSERT_EQ(generateAll(prep), 100);
    ASSERT_EQ(generateAll(fresh), 100);
    EXPECT_EQ(recordOf(prep), recordOf(fresh)) << "after a stop at " << stop;
  }
}

TEST(ExternalSample, isTakenOrRefused) {
  struct Case {
    const char* name;
    const char* text;
    bool accepted;
  };
  const Case cases[] = {
      {"plain", "2\n2\na\nb\n1 2\n3 4\n", true},
      {"numbers on any lines", "2\n2\na\nb\n1\n2 3\n4", true},
      {"a word behind the name", "1\n1\na note\n5\n", true},
      {"CR LF", "1\r\n1\r\na\r\n5\r\n", true},
      {"nan", "1\n1\na\nnan\n", true},
      {"a letter in line 1", "2x\n1\na\n1 2\n", false},
      {"a sign in line 1", "-2\n1\na\n1 2\n", false},
      {"no runs", "0\n1\na\n", false},
      {"no factors", "1\n0\n1\n", false},
      {"a name that begins with a digit", "1\n1\n1a\n5\n", false},
      {"too few numbers", "2\n2\na\nb\n1 2 3\n", false},
      {"a word among the numbers", "2\n1\na\n1 x\n", false},
      {"more runs than the file could hold", "2147483647\n1\na\n1\n", false},
      {"more factors than the file could hold", "1\n2147483647\na\n1\n", false},
      {"nothing", "", false},
  };
  const test::TempDirectory directory;
  for (const Case& c : cases) {
    const std::string path = directory.file("external.txt");
    test::writeFile(path, c.text);
    PrepConfiguration prep;
    std::string message;
    EXPECT_EQ(loadExternalSample(path, prep, message), c.accepted) << c.name;
    EXPECT_EQ(prep.external, c.accepted ? 1 : 0) << c.name;
    EXPECT_EQ(message, c.accepted ? "" : "Error reading external samples file") << c.name;
  }
}

TEST(ExternalSample, isKeptInASampleFileAndNotGenerated) {
  const test::TempDirectory directory;
  test::writeFile(directory.file("external.txt"), "3\n2\nwidth\nheight\n1 10\n2 20\n6 60\n");
  PrepConfiguration prep;
  std::string message;
  ASSERT_TRUE(loadExternalSample(directory.file("external.txt"), prep, message));
  ASSERT_TRUE(saveSampleFile(directory.file("copy.sam"), prep, message));
  PrepConfiguration copy;
  ASSERT_TRUE(loadSampleFile(directory.file("copy.sam"), copy, message));
  EXPECT_EQ(recordOf(copy), recordOf(prep));
  EXPECT_EQ(copy.generate(1), 100);
  ASSERT_TRUE(copy.sampleStatistics);
  EXPECT_DOUBLE_EQ(copy.sampleStatistics->mean(0), 4.5) << "the sum 9 divided by n - 1";
  EXPECT_NEAR(copy.sampleStatistics->correlation(0, 1), 1.0, 1e-12);
}

}  // namespace
}  // namespace tarvex
