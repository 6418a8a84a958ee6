#include "sampling/PrepConfiguration.h"

#include <sys/resource.h>

#include <array>
#include <utility>

#include "factors/Constant.h"
#include "factors/Normal.h"
#include "factors/Relation.h"
#include "factors/Uniform.h"
#include "sampling/FixedSampler.h"
#include "sampling/RandomSampler.h"
#include "sampling/SampleFiles.h"
#include "support/Copies.h"
#include "support/FailingCalls.h"
#include "support/Test.h"

namespace tarvex {
namespace {

using test::textOf;

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
  EXPECT_TRUE(prep.sampler->setSamples(runs));
  return prep;
}

std::int32_t generateAll(PrepConfiguration& prep) {
  EXPECT_TRUE(prep.prepareGeneration());
  std::int32_t percent = 0;
  for (std::int32_t target = 1; percent >= 0 && percent < 100; ++target) percent = prep.generate(target);
  return percent;
}

// Within one call, in the design, its rank table, the values and the statistics; a stop anywhere leaves what a cancel
// leaves.
TEST(PrepConfiguration, reportsOftenAndStopsAnywhere) {
  const auto wide = [](CorrelationMode mode) {
    PrepConfiguration prep = uniformPair(4000);
    for (int i = 0; i < 72; ++i) prep.factors.addFactor(named<Constant>(("c" + std::to_string(i)).c_str()));
    prep.factors.correlationMode = mode;
    return prep;
  };
  for (const CorrelationMode mode : {kNoCorrelation, kImanConover}) {
    PrepConfiguration unwatched = wide(mode);
    ASSERT_TRUE(unwatched.prepareGeneration());
    ASSERT_EQ(unwatched.generate(100), 100);
    std::vector<double> reports;
    std::size_t stopAt = 1 << 20;
    const auto watch = [&](double done) {
      reports.push_back(done);
      return reports.size() < stopAt;
    };
    PrepConfiguration prep = wide(mode);
    ASSERT_TRUE(prep.prepareGeneration());
    EXPECT_EQ(prep.generate(100, Progress(watch)), 100);
    EXPECT_TRUE(std::ranges::is_sorted(reports));
    EXPECT_TRUE(textOf(prep) == textOf(unwatched));
    const std::size_t all = reports.size();
    for (std::size_t part = 0; part < 11; ++part) {
      stopAt = part * all / 11 + 1;
      reports.clear();
      ASSERT_TRUE(prep.prepareGeneration());
      EXPECT_EQ(prep.generate(100, Progress(watch)), -1);
      EXPECT_EQ(reports.size(), stopAt);
      prep.cancelGeneration();
      EXPECT_EQ(prep.samples.rows(), 0);
    }
    EXPECT_EQ(generateAll(prep), 100);
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

// A table of several windows, which no block of rows divides. A relation reads 0 of one that comes behind it.
TEST(PrepConfiguration, relationsAreTheSameByRunAndByFactor) {
  constexpr std::int32_t kRuns = 140000;
  const auto relation = [](const char* name, const char* text) {
    auto made = named<Relation>(name);
    EXPECT_TRUE(made->setExpression(text));
    return made;
  };
  PrepConfiguration prep = uniformPair(kRuns, relation("sum", "a + b + twice"));
  prep.factors.addFactor(relation("twice", "2 * sum"));
  ASSERT_EQ(generateAll(prep), 100);
  std::array<std::vector<double>, 4> columns;
  for (std::int32_t i = 0; i < 4; ++i) ASSERT_TRUE(prep.samples.getColumn(i, columns[i]));
  std::array<double, 4> row{};
  int other = 0;
  for (std::int32_t r = 0; r < kRuns; ++r) {
    ASSERT_TRUE(prep.samples.getRow(r, row.data()));
    for (std::size_t i = 0; i < 4; ++i) other += row[i] != columns[i][r] ? 1 : 0;
    ASSERT_NEAR(row[2], row[0] + row[1], 1e-5) << r;
    ASSERT_NEAR(row[3], 2.0 * row[2], 2e-5) << r;
  }
  EXPECT_EQ(other, 0);
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

// What can't be sampled is refused while the old sample is still there, what is doubtful told; typed rows need neither.
TEST(PrepConfiguration, problemsOfTheFactorsAreFoundFirst) {
  auto relation = named<Relation>("r");
  ASSERT_TRUE(relation->setExpression("a + nobody"));
  PrepConfiguration prep = uniformPair(20, std::move(relation));
  ASSERT_TRUE(prep.prepareGeneration());
  EXPECT_EQ(prep.warnings(), "r: 'nobody' is no factor and reads as 0");
  ASSERT_EQ(prep.generate(100), 100);
  prep.factors.factor(1).name = "b b";
  EXPECT_FALSE(prep.prepareGeneration());
  EXPECT_EQ(prep.errorText(), "b b: the factor name 'b b' is no name: letters and digits only, a letter first");
  EXPECT_EQ(prep.samples.rows(), 20);
  prep.sampler = std::make_unique<FixedSampler>();
  EXPECT_TRUE(prep.prepareGeneration()) << prep.errorText();
}

// A stop at any percent leaves nothing, in the object and in a copy of it; each then generates what it would have at
// first.
TEST(PrepConfiguration, operationsInAnyOrderAreSafe) {
  PrepConfiguration none;
  EXPECT_FALSE(none.prepareGeneration());
  EXPECT_EQ(none.errorText(), "  No samples to generate");
  EXPECT_EQ(none.generate(1), -1);
  none.cancelGeneration();
  PrepConfiguration fresh = uniformPair(400);
  ASSERT_EQ(generateAll(fresh), 100);
  for (const std::int32_t stop : {1, 20, 37, 50, 51, 80, 99}) {
    SCOPED_TRACE(stop);
    PrepConfiguration prep = uniformPair(400);
    ASSERT_TRUE(prep.prepareGeneration());
    for (std::int32_t target = 1; target <= stop; ++target) ASSERT_LT(prep.generate(target), 100);
    PrepConfiguration copy = test::copyOf(prep);
    for (PrepConfiguration* stopped : {&copy, &prep}) {
      stopped->cancelGeneration();
      EXPECT_EQ(stopped->samples.rows(), 0);
      EXPECT_EQ(stopped->generate(100), -1);
      ASSERT_TRUE(stopped->prepareGeneration());
      EXPECT_EQ(stopped->generate(1000), 100) << "in one step, beyond the end";
      stopped->cancelGeneration();
      EXPECT_EQ(textOf(*stopped), textOf(fresh)) << "a finished sample is not half-made";
    }
  }
}

TEST(PrepConfiguration, aSampleBeyondMemoryIsRefused) {
#ifdef __SANITIZE_ADDRESS__
  GTEST_SKIP() << "the sanitizer takes more addresses than the limit";
#endif
  rlimit limit{};
  ASSERT_EQ(getrlimit(RLIMIT_AS, &limit), 0);
  const rlimit small{std::min<rlim_t>(limit.rlim_cur, rlim_t{1} << 33), limit.rlim_max};
  ASSERT_EQ(setrlimit(RLIMIT_AS, &small), 0);
  PrepConfiguration prep = uniformPair(2000000000);
  {
    test::FailingCalls calls;
    calls.leaveFree(std::uint64_t{1} << 50);  // the disk has room enough
    EXPECT_EQ(generateAll(prep), -1);
  }
  ASSERT_EQ(setrlimit(RLIMIT_AS, &limit), 0);
  EXPECT_EQ(prep.errorText(), "There is not enough memory for a sample of 2000000000 runs of 2 factors.");
}

// What stands between the factors and the directory line is a section or nothing.
TEST(SampleFiles, aRecordIsReadAsMeantOrRefusedWithItsLine) {
  const struct {
    const char *name, *old, *text;
    const char* problem;  // empty: the record reads as it was
  } cases[] = {
      {"blanks around the method", "\n5\nRandom", "\n 5 \nRandom", ""},
      {"no method number", "\n5\nRandom\n", "\nRandom\n", "expected the number of the sampling method, found 'Random'"},
      {"unknown method", "\n5\nRandom", "\n9\nRandom", "method must be from 0 to 7, not 9"},
      {"negative runs", "Random\n2\n", "Random\n-2\n", "the number of runs must be at least 0, not -2"},
      {"a column less", "2\n2\n0\n0.25\t0.5\t\n0.75\t0.5\t\n0\n", "2\n1\n0\n0.25\t\n0.75\t\n0\n",
       "the table has 1 columns for 2 factors"},
      {"flag", "0\n2\n2\n", "7\n2\n2\n", ":1: the flag of an external sample must be 0 or 1, not 7"},
  };
  PrepConfiguration prep = uniformPair(2);
  ASSERT_TRUE(prep.samples.allocate(2));
  for (const double value : {0.25, 0.75}) ASSERT_GT(prep.samples.addRow(std::vector<double>{value, 0.5}.data()), 0);
  const test::TempDirectory directory;
  const std::string path = directory.file("a.sam");
  const std::string record = textOf(prep);
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    std::string text = record;
    ASSERT_NE(text.find(c.old), std::string::npos);
    test::writeFile(path, text.replace(text.find(c.old), std::string(c.old).size(), c.text));
    PrepConfiguration loaded = test::copyOf(prep);
    std::string message;
    EXPECT_EQ(loadSampleFile(path, loaded, message), c.problem == std::string()) << message;
    EXPECT_EQ(textOf(loaded), record);
    EXPECT_TRUE(message.empty() || message.starts_with("Error reading samples file\n" + path)) << message;
    EXPECT_NE(message.find(c.problem), std::string::npos) << message;
  }
}

TEST(ExternalSample, isTakenOrRefused) {
  const struct {
    const char *name, *text;
    const char* problem;  // behind the path; empty: taken
  } cases[] = {
      {"plain", "2\n2\na\nb\n1 2\n3 4\n", ""},
      {"numbers on any lines", "2\n2\na\nb\n1\n2 3\n4", ""},
      {"a word behind the name", "1\n1\na note\n5\n", ""},
      {"CR LF", "1\r\n1\r\na\r\n5\r\n", ""},
      {"nan", "1\n1\na\nnan\n", ""},
      {"text behind", "1\n1\na\n5\n\n6 7\n", ""},
      {"a letter in line 1", "2x\n1\na\n1 2\n",
       ":1: the number of samples must be a whole number of 1 or more, not '2x'"},
      {"a name that no sample file keeps", "1\n1\na-b\n5\n", ":3: the factor name 'a-b'"},
      {"a word among the numbers", "2\n1\na\n1 x\n", ":4: expected a number of the sample, found 'x'"},
  };
  const test::TempDirectory directory;
  const std::string path = directory.file("external.txt");
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    const bool accepted = *c.problem == 0;
    test::writeFile(path, c.text);
    PrepConfiguration prep;
    std::string message;
    EXPECT_EQ(loadExternalSample(path, prep, message), accepted);
    EXPECT_EQ(prep.external, accepted ? 1 : 0);
    if (c.name == std::string("text behind")) {
      EXPECT_TRUE(std::exchange(message, "").starts_with(path + ":6: '6' stands behind the last number"));
    }
    EXPECT_TRUE(message.starts_with(accepted ? "" : "Error reading external samples file\n" + path + c.problem))
        << message;
  }
  // An external sample is complete, and its file is never written.
  const std::string text = "2\n1\na\n5\n6\n";
  test::writeFile(path, text);
  PrepConfiguration prep;
  std::string message;
  ASSERT_TRUE(loadExternalSample(path, prep, message));
  EXPECT_TRUE(prep.prepareGeneration() && prep.generate(1) == 100 && prep.samples.rows() == 2);
  EXPECT_FALSE(saveSampleFile(path, prep, message));
  EXPECT_EQ(test::readFile(path), text);
}

}  // namespace
}  // namespace tarvex
