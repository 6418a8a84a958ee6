#include "correlation/DiagonalBand.h"

#include "base/uniformRandom.h"
#include "support/Test.h"

namespace tarvex::test {
namespace {

TEST(DiagonalBand, correlationOutOfRangeMeansIndependence) {
  for (const double rho : {1.0000001, -1.5, 7.0, kNan, -std::numeric_limits<double>::infinity()}) {
    DiagonalBand band;
    band.setCorrelation(0.4);
    band.setCorrelation(rho);
    EXPECT_EQ(band.rho(), 0.0) << rho;
    EXPECT_EQ(band.band(), 0.0) << rho;
  }
}

TEST(DiagonalBand, fullCorrelationCopiesOrMirrors) {
  DiagonalBand band;
  for (const double rho : {1.0, -1.0}) {
    band.setCorrelation(rho);
    EXPECT_EQ(band.sampleConditional(0.25), rho > 0.0 ? 0.25 : 0.75);
  }
}

// The joint distribution has uniform margins, the wanted correlation, and no mass outside of the band.
TEST(DiagonalBand, jointDistribution) {
  constexpr std::size_t kRows = 20000;
  for (const double rho : {0.05, 0.5, 0.9, 0.99, -0.1, -0.6, -0.95}) {
    DiagonalBand band;
    band.setCorrelation(rho);
    const double w = 1.0 - band.band();
    std::vector<double> parents(kRows);
    std::int32_t state = -77;
    for (double& value : parents) value = uniformRandom(state);
    std::vector<double> children = parents;
    band.sampleConditional(children);
    for (std::size_t i = 0; i < kRows; ++i) {
      const double centre = rho > 0.0 ? parents[i] : 1.0 - parents[i];
      ASSERT_GE(children[i], std::max(0.0, centre - w) - 1e-15) << rho;
      ASSERT_LE(children[i], std::min(1.0, centre + w) + 1e-15) << rho;
    }
    EXPECT_NEAR(rankCorrelation(parents, children), rho, 4.0 / std::sqrt(kRows)) << rho;
    // Kolmogorov distance at the level 0.001, and the loose tolerance of the solution.
    std::sort(children.begin(), children.end());
    double distance = 0.0;
    for (std::size_t i = 0; i < kRows; ++i)
      distance = std::max(distance, std::abs(children[i] - (static_cast<double>(i) + 0.5) / kRows));
    EXPECT_LT(distance, 1.95 / std::sqrt(kRows) + 0.001) << rho;
  }
}

// Parents at, near and beyond the ends of the unit interval come out somewhere, and at once.
TEST(DiagonalBand, endsOfTheInterval) {
  for (const double rho : {1e-6, 0.3, 0.97, 0.9999999, -1e-6, -0.3, -0.97, -0.9999999}) {
    DiagonalBand band;
    band.setCorrelation(rho);
    for (const double u : {0.0, 1e-300, 1e-9, 0.5, 1.0 - 1e-16, 1.0})
      for (int i = 0; i < 50; ++i) {
        const double child = band.sampleConditional(u);
        ASSERT_TRUE(child >= 0.0 && child <= 1.0) << rho << ' ' << u << ' ' << child;
      }
    for (const double u : {-0.2, 1.2, kNan}) band.sampleConditional(u);
  }
}

}  // namespace
}  // namespace tarvex::test
