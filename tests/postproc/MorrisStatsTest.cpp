#include "postproc/MorrisStats.h"

#include "postproc/DesignStudy.h"
#include "sampling/MorrisSampler.h"
#include "support/Test.h"

namespace tarvex {
namespace {

std::unique_ptr<MorrisSampler> morrisDesign(std::uint32_t levels, std::uint32_t trajectories, std::int32_t inputs) {
  auto sampler = std::make_unique<MorrisSampler>();
  EXPECT_TRUE(sampler->setLevels(levels) && sampler->setTrajectories(trajectories));
  EXPECT_TRUE(sampler->setSamples(static_cast<std::int32_t>(MorrisSampler::runCount(trajectories, inputs))));
  return sampler;
}

TEST(MorrisStats, LinearModelHasEffectsOfTwiceTheChange) {
  const std::vector<double> c = {3.0, -2.0, 0.5, 0.0};
  for (const std::uint32_t levels : {4u, 6u, 5u}) {
    const DesignStudy study = makeDesignStudy(linearModel(c), morrisDesign(levels, 7, 4));
    MorrisStats stats;
    ASSERT_TRUE(stats.compute(study.prep, study.outputs)) << stats.errorText;
    const double jump = static_cast<double>(levels / 2) / levels;
    for (std::size_t i = 0; i < c.size(); ++i) {
      const std::string name = "x" + std::to_string(i + 1);
      EXPECT_NEAR(valueOf(stats, name, MorrisStats::kMean), 2.0 * std::fabs(c[i]) * jump, 1e-14) << name;
      // The square root of a difference that cancels: half the digits.
      EXPECT_NEAR(valueOf(stats, name, MorrisStats::kSigma), 0.0, 1e-7) << name;
    }
    EXPECT_EQ(valueOf(stats, "k", MorrisStats::kMean), 0.0);
  }
}

TEST(MorrisStats, HandComputedSpread) {
  // One input, two trajectories, effects 2 |0 - 1| = 2 and 2 |5 - 2| = 6: mean 4, variance 8.
  const double y[] = {0.0, 1.0, 5.0, 2.0};
  const DesignStudy study =
      makeDesignStudy(1, morrisDesign(4, 2, 1), {[&](const std::vector<double>&, std::int32_t run) { return y[run]; }});
  MorrisStats stats;
  ASSERT_TRUE(stats.compute(study.prep, study.outputs));
  EXPECT_DOUBLE_EQ(valueOf(stats, "x1", MorrisStats::kMean), 4.0);
  EXPECT_DOUBLE_EQ(valueOf(stats, "x1", MorrisStats::kSigma), std::sqrt(8.0));
}

}  // namespace
}  // namespace tarvex
