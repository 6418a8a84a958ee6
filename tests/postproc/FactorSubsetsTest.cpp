#include "postproc/FactorSubsets.h"

#include <gtest/gtest.h>

namespace tarvex {
namespace {

TEST(FactorSubsets, NumbersAreThoseOfTheList) {
  const FactorSubsets subsets(6, 4);
  EXPECT_EQ(subsets.all().size(), 6u + 15u + 20u + 15u);
  for (std::size_t i = 0; i < subsets.all().size(); ++i)
    EXPECT_EQ(subsets.numberOf(subsets.all()[i]), static_cast<std::int64_t>(i));
  EXPECT_EQ(subsets.numberOf({0, 1, 2, 3, 5}), 56 + 1);
  EXPECT_EQ(subsets.complement({0, 3, 4}), (FactorSubsets::Subset{1, 2, 5}));
  EXPECT_EQ(FactorSubsets::countOf(185, 185), FactorSubsets::kMany);
  EXPECT_EQ(FactorSubsets::countOf(3, 9), 7);
}

}  // namespace
}  // namespace tarvex
