#include "postproc/CurveSpectrum.h"

#include "support/Test.h"

namespace tarvex {
namespace {

TEST(CurveSpectrum, SumIsThatOfItsFrequencies) {
  constexpr std::int32_t kRuns = 4001;
  std::vector<double> y;
  for (std::int32_t i = 0; i < kRuns; ++i) y.push_back(std::sin(0.01 * i * i));
  CurveSpectrum spectrum;
  ASSERT_TRUE(spectrum.load(y.data(), kRuns));
  for (const std::int32_t last : {0, 1, 2, 7, 1001}) {  // the last one is shared by the cores
    long double sum = 0.0L;
    for (std::int32_t w = 1; w <= last; ++w) sum += spectrum.at(w);
    long double added = 0.0L;
    EXPECT_TRUE(spectrum.addUpTo(last, added));
    EXPECT_EQ(added, sum) << last;
  }
}

}  // namespace
}  // namespace tarvex
