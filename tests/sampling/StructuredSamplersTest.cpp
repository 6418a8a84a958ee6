#include <set>

#include "sampling/Designs.h"
#include "sampling/MorrisSampler.h"
#include "sampling/RepLatinSampler.h"
#include "sampling/SobolSampler.h"
#include "support/Test.h"

namespace tarvex {
namespace {

MorrisSampler morrisOf(std::uint32_t levels, std::int32_t trajectories, std::int32_t k) {
  MorrisSampler sampler;
  EXPECT_TRUE(sampler.setLevels(levels) && sampler.setTrajectories(static_cast<std::uint32_t>(trajectories)));
  EXPECT_TRUE(sampler.setSamples(static_cast<std::int32_t>(MorrisSampler::runCount(trajectories, k))));
  return sampler;
}

struct Size {
  const char* kinds;
  std::uint32_t levels;
  std::int32_t trajectories;
};

// One factor moves a step, by half the levels; each moves once a trajectory; cells lie at the middle of levels.
TEST(MorrisSampler, makesTrajectoriesOfOneFactorAStep) {
  for (const Size& size : {Size{"s", 4, 3}, Size{"sss", 2, 40}, Size{"csrsscs", 4, 10}, Size{"ssssssss", 5, 25},
                           Size{"sscss", 6, 30}, Size{"srs", 7, 50}, Size{"ssssssssssssssssssss", 8, 4}}) {
    SCOPED_TRACE(std::string(size.kinds) + " at " + std::to_string(size.levels));
    const std::vector<std::int32_t> stochastic = stochasticOf(size.kinds);
    const auto k = static_cast<std::int32_t>(stochastic.size());
    const auto trajectoryLength = static_cast<std::size_t>(k) + 1;
    MorrisSampler sampler = morrisOf(size.levels, size.trajectories, k);
    FactorList factors = listOf(size.kinds);
    const Table runs = generated(sampler, factors);
    ASSERT_EQ(runs.size(), static_cast<std::size_t>(size.trajectories) * trajectoryLength);
    ASSERT_EQ(sampler.changedFactor().size(), runs.size());

    const double jump = std::floor(size.levels / 2.0) / size.levels;
    std::set<std::int32_t> moved;
    for (std::size_t run = 0; run < runs.size(); ++run) {
      const std::int32_t changed = sampler.changedFactor()[run];
      for (std::size_t i = 0; i < runs[run].size(); ++i) {
        const double cell = runs[run][i];
        if (size.kinds[i] != 's') {
          ASSERT_EQ(cell, size.kinds[i] == 'c' ? 100.0 + static_cast<double>(i) : 0.0);
        } else {
          const double level = cell * size.levels - 0.5;
          ASSERT_NEAR(level, std::round(level), 1e-12);
          // Base points and jumps of an odd grid leave its highest level unused.
          ASSERT_TRUE(level > -0.5 && level < 2 * (size.levels / 2) - 0.5) << level;
        }
        if (run % trajectoryLength == 0) continue;
        const bool mover = static_cast<std::int32_t>(i) == stochastic[static_cast<std::size_t>(changed)];
        ASSERT_NEAR(std::abs(cell - runs[run - 1][i]), mover ? jump : 0.0, 1e-14);
      }
      if (run % trajectoryLength == 0) {
        ASSERT_EQ(changed, -1);
        moved.clear();
      } else {
        ASSERT_TRUE(moved.insert(changed).second) << changed << " moves twice";
      }
    }
  }
}

TEST(MorrisSampler, refusesSettingsThatMakeNoDesign) {
  MorrisSampler sampler;
  EXPECT_FALSE(sampler.setLevels(0));
  EXPECT_FALSE(sampler.setTrajectories(0));
  FactorList factors = listOf("ss");
  EXPECT_EQ(refusal(sampler, factors), "  No samples to generate");
  MorrisSampler flat = morrisOf(1, 4, 2);
  EXPECT_EQ(refusal(flat, factors), "The number of levels must be at least 2");
  MorrisSampler partial = morrisOf(4, 4, 3);
  EXPECT_EQ(refusal(partial, factors), "The number of executions must be 12: trajectories times factors plus one");
}

TEST(RepLatinSampler, settingsThatGiveNoDesign) {
  FactorList factors = listOf("ss");
  factors.correlationMode = kImanConover;
  RepLatinSampler sampler;
  EXPECT_FALSE(sampler.setBaseDesign(0));
  for (const auto& [m, r] : {std::pair{6, 0}, {2147483647, 2147483647}}) {
    EXPECT_TRUE(sampler.setBaseDesign(m));
    sampler.setReplications(r);
    EXPECT_EQ(refusal(sampler, factors), "  No samples to generate");
  }
  // A change of the settings behind a design must not read beyond its table.
  RepLatinSampler made;
  EXPECT_TRUE(made.setBaseDesign(4));
  generated(made, factors);
  EXPECT_TRUE(made.hasRunTable());
  made.setReplications(50);
  EXPECT_FALSE(made.hasRunTable());
  EXPECT_EQ(made.runOf(0, 0), nullptr);

  sampler.setChoice(1);
  sampValues store;
  ASSERT_TRUE(store.allocate(2));
  factors.prepareOrder();
  EXPECT_EQ(sampler.generate(50.0, store, factors), 0.0);
  EXPECT_FALSE(sampler.hasRunTable());
}

SobolSampler sobolOf(std::int32_t baseSize, std::int32_t k, std::int32_t kind, std::int32_t order = 1,
                     bool cheap = false) {
  SobolSampler sampler;
  EXPECT_TRUE(sampler.setBaseSize(baseSize) && sampler.setDesignKind(kind) && sampler.setOrder(order));
  EXPECT_TRUE(
      sampler.setSamples(static_cast<std::int32_t>(baseSize * SobolSampler::blockCount(k, order, kind, cheap))));
  return sampler;
}

TEST(SobolSampler, countsBlocksOfManyFactors) {
  const auto count = [](std::int32_t k, std::int32_t order) {
    return SobolSampler::blockCount(k, order, SobolSampler::kUpToOrder, false);
  };
  EXPECT_EQ(count(4, 4), 2 + 4 + 6 + 4) << "the order of all factors has no block";
  EXPECT_EQ(count(185, 3), 2 + 185 + 17020 + 1038220);
  EXPECT_EQ(count(185, 90), SobolSampler::kManyBlocks);
}

TEST(SobolSampler, refusesWhatItHasNoPointsOrBlocksFor) {
  FactorList most = listOf(std::string(185, 's'));
  SobolSampler sampler = sobolOf(1, 185, SobolSampler::kFirstAndTotal);
  EXPECT_EQ(generated(sampler, most).size(), 372U);
  FactorList tooMany = listOf(std::string(186, 's'));
  sampler = sobolOf(1, 186, SobolSampler::kFirstAndTotal);
  EXPECT_EQ(refusal(sampler, tooMany), "Sample number 1%: generation failed");

  FactorList five = listOf("sssss");
  sampler = sobolOf(16, 5, SobolSampler::kUpToOrder, 6);
  EXPECT_EQ(refusal(sampler, five), "  Incorrect order number, order too big.");
  sampler = sobolOf(16, 4, SobolSampler::kFirstAndTotal);
  EXPECT_EQ(refusal(sampler, five), "The number of executions must be the base size times the number of blocks");
}

}  // namespace
}  // namespace tarvex
