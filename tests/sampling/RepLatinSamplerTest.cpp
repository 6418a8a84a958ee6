#include "sampling/RepLatinSampler.h"

#include "sampling/Designs.h"
#include "support/Test.h"

namespace tarvex {
namespace {

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

}  // namespace
}  // namespace tarvex
