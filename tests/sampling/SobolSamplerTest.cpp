#include "sampling/SobolSampler.h"

#include "sampling/Designs.h"
#include "support/Test.h"

namespace tarvex {
namespace {

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
