#include "postproc/CurveSpectrum.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>
#include <vector>

namespace tarvex {
namespace {

TEST(CurveSpectrum, FindsACosineAtItsFrequency) {
  // 3 cos(2 s) + sin(5 s) on an odd grid about 0: power 2 (3 / 2)^2 and 2 (1 / 2)^2, variance 5 n / (n - 1).
  constexpr int kRuns = 41;
  std::vector<double> y;
  for (int i = 0; i < kRuns; ++i) {
    const double s = (i - kRuns / 2) * 2.0 * std::numbers::pi / kRuns;
    y.push_back(7.0 + 3.0 * std::cos(2.0 * s) + std::sin(5.0 * s));
  }
  CurveSpectrum spectrum;
  spectrum.load(y.data(), kRuns);
  EXPECT_NEAR(static_cast<double>(spectrum.variance()), 5.0 * kRuns / (kRuns - 1), 1e-13);
  for (int w = 1; w <= 20; ++w)
    EXPECT_NEAR(static_cast<double>(spectrum.at(w)), w == 2 ? 4.5 : w == 5 ? 0.5 : 0.0, 1e-14) << w;
  EXPECT_NEAR(static_cast<double>(spectrum.at(-2 + kRuns * 3)), 4.5, 1e-13);  // whole turns don't matter
}

TEST(CurveSpectrum, SumIsThatOfItsFrequencies) {
  constexpr std::int32_t kRuns = 4001;
  std::vector<double> y;
  for (std::int32_t i = 0; i < kRuns; ++i) y.push_back(std::sin(0.01 * i * i));
  CurveSpectrum spectrum;
  spectrum.load(y.data(), kRuns);
  for (const std::int32_t last : {0, 1, 2, 7, 1001}) {  // the last one is shared by the cores
    long double sum = 0.0L;
    for (std::int32_t w = 1; w <= last; ++w) sum += spectrum.at(w);
    EXPECT_EQ(spectrum.sumUpTo(last), sum) << last;
  }
}

}  // namespace
}  // namespace tarvex
