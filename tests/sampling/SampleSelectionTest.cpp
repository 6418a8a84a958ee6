#include "sampling/SampleSelection.h"

#include "sampling/Designs.h"
#include "sampling/FixedSampler.h"
#include "sampling/PrepConfiguration.h"
#include "sampling/SampleFiles.h"
#include "sampling/SamplerFactory.h"
#include "support/Test.h"

namespace tarvex {
namespace {

// Rows 0, 1, 2, ... of a list with a constant; factor values no generator would make, so that only a copy explains
// them.
PrepConfiguration numberedSample(std::int32_t methodId, std::int32_t runs) {
  PrepConfiguration prep;
  prep.factors = listOf("scs");
  prep.sampler = makeSampler(methodId);
  prep.sampler->setNumFactors(3);
  EXPECT_TRUE(prep.sampler->setSamples(runs));
  EXPECT_TRUE(prep.samples.allocate(3));
  EXPECT_TRUE(prep.samples.setOrder(1));
  for (std::int32_t run = 0; run < runs; ++run) {
    const std::vector<double> row{run * 1.0, 101.0, run * -0.5};
    EXPECT_GT(prep.samples.addRow(row.data()), 0);
    auto* fixed = dynamic_cast<FixedSampler*>(prep.sampler.get());
    EXPECT_TRUE(fixed == nullptr || fixed->addRow(row));
  }
  return prep;
}

TEST(SampleSelection, reopensAsASampleOfTheKeptRuns) {
  const test::TempDirectory directory;
  const test::ScopedCurrentDirectory here;
  const std::string path = directory.file("kept.sam");
  std::string message;
  for (std::int32_t method = 0; method < kMethodCount; ++method) {
    PrepConfiguration prep = numberedSample(method, 10);
    prep.external = method == kRandom ? 1 : 0;
    for (const std::vector<std::int32_t>& runs : {std::vector<std::int32_t>{1, 4, 9}, {7}, {}}) {
      SCOPED_TRACE(std::string(methodNameOf(method)) + ", " + std::to_string(runs.size()) + " runs");
      ASSERT_TRUE(saveSelection(path, prep, runs, message)) << message;
      PrepConfiguration read;
      ASSERT_TRUE(loadSampleFile(path, read, message)) << message;

      Table expected;
      for (const std::int32_t run : runs) expected.push_back({run * 1.0, 101.0, run * -0.5});
      EXPECT_EQ(tableOf(read.samples), expected);
      EXPECT_EQ(read.samples.order(), 1);
      EXPECT_EQ(read.external, prep.external);
      EXPECT_EQ(read.sampleFile, path);
      const bool keeps = method == kFixed || method == kLatin || method == kLpTau || method == kRandom;
      EXPECT_EQ(read.sampler->methodId, keeps ? method : static_cast<std::int32_t>(kRandom));
      EXPECT_EQ(read.sampler->numSamples, static_cast<std::int32_t>(runs.size()));
      if (method == kFixed) {
        EXPECT_EQ(tableOf(dynamic_cast<const FixedSampler&>(*read.sampler).values()), expected);
      }
      ASSERT_TRUE(read.sampleStatistics);
      if (runs.size() == 3) {
        EXPECT_DOUBLE_EQ(read.sampleStatistics->mean(0), 7.0);
        EXPECT_DOUBLE_EQ(read.sampleStatistics->correlation(0, 2), -1.0);
      }
    }
  }
}

TEST(SampleSelection, leavesEverythingAsItWasWhenItFails) {
  const PrepConfiguration prep = numberedSample(kRandom, 3);
  PrepConfiguration selection = numberedSample(kLatin, 5);
  std::string message;
  EXPECT_FALSE(selectRuns(prep, {0, 3}, selection, message));
  EXPECT_EQ(message, "Run 4 can't be read: Wrong line position.");
  EXPECT_EQ(selection.samples.rows(), 5);
}

}  // namespace
}  // namespace tarvex
