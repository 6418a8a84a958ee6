#include "factors/Distribution.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "factors/FactorText.h"
#include "factors/TruncatedDistribution.h"

namespace tarvex {
namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNan = std::numeric_limits<double>::quiet_NaN();

// A member of the family with the ends of its support.
struct Member {
  const char* name;
  const char* type;
  std::vector<std::string> fields;
  double lower;
  double upper;
};

// clang-format off
const std::vector<Member> kMembers{
    {"Normal",             "Normal",      {"5", "2", "0.001", "0.999"},              -kInfinity, kInfinity},
    {"NormalFarOut",       "Normal",      {"1e6", "1", "0.05", "0.9"},               -kInfinity, kInfinity},
    {"LogNormal",          "LogNormal",   {"0", "0.5", "0.001", "0.999"},            0.0, kInfinity},
    {"Exponential",        "Exponential", {"0.5", "3", "0.999"},                     3.0, kInfinity},
    {"ExponentialFarOut",  "Exponential", {"1", "1e5", "0.9"},                       1e5, kInfinity},
    {"Gamma",              "Gamma",       {"2.5", "1.5", "0.25", "0.999"},           0.25, kInfinity},
    {"GammaPole",          "Gamma",       {"0.5", "2", "0", "0.999"},                0.0, kInfinity},
    {"Weibull",            "Weibull",     {"1.8", "2", "0.5", "0.999"},              0.5, kInfinity},
    {"WeibullPole",        "Weibull",     {"0.8", "5", "0", "0.95"},                 0.0, kInfinity},
    {"Uniform",            "Uniform",     {"-2:3:1"},                                -2.0, 3.0},
    {"UniformSteps",       "Uniform",     {"0:1:0.3", "1:2.5:0.3", "4:5:0.4"},       0.0, 5.0},
    {"LogUniform",         "LogUniform",  {"0.1:10:1"},                              0.1, 10.0},
    {"LogUniformSteps",    "LogUniform",  {"1:10:0.7", "20:200:0.3"},                1.0, 200.0},
    {"Beta",               "Beta",        {"2", "3.5", "0", "1"},                    0.0, 1.0},
    {"BetaShifted",        "Beta",        {"3", "2", "10", "20"},                    10.0, 20.0},
    {"BetaPoles",          "Beta",        {"0.5", "2", "0", "1"},                    0.0, 1.0},
    {"Triangular",         "Triangular",  {"0", "1", "4"},                           0.0, 4.0},
};
// clang-format on

class Family : public testing::TestWithParam<Member> {
 protected:
  void SetUp() override {
    ASSERT_NE(member_, nullptr);
    ASSERT_TRUE(member_->prepareInverse());
    ASSERT_EQ(member_->table.size(), 101U);
  }

  // The cumulative that a uniform number stands for.
  double target(double u) const {
    const auto* truncated = dynamic_cast<const TruncatedDistribution*>(member_.get());
    if (truncated == nullptr) return u;
    return (truncated->rightTruncation() - truncated->leftTruncation()) * u + truncated->leftTruncation();
  }

  std::unique_ptr<Distribution> member_ = distributionOf(GetParam().type, GetParam().fields);
};

TEST_P(Family, cumulativeRisesFromZeroToOneOverTheSupport) {
  EXPECT_EQ(member_->cumulative(-kInfinity), 0.0);
  EXPECT_EQ(member_->cumulative(kInfinity), 1.0);
  EXPECT_EQ(member_->cumulative(std::nextafter(GetParam().lower, -kInfinity)), 0.0);
  EXPECT_NEAR(member_->cumulative(std::nextafter(GetParam().upper, kInfinity)), 1.0, 1e-15);
  const double from = member_->table.front().x;
  const double to = member_->table.back().x;
  double before = 0.0;
  for (int k = -200; k <= 1200; ++k) {
    const double p = member_->cumulative(from + (to - from) * k / 1000.0);
    EXPECT_LE(p, 1.0 + 1e-15);
    EXPECT_GE(p, before - 1e-15) << k;
    before = p;
  }
}

TEST_P(Family, inverseUndoesTheCumulative) {
  for (int k = 1; k < 1000; ++k) {
    const double u = k / 1000.0;
    const double x = member_->inverse(u);
    EXPECT_NEAR(member_->cumulative(x), target(u), 1.1e-6 * target(u)) << "u " << u << " x " << x;
    EXPECT_EQ(member_->value(u), x);
  }
}

TEST_P(Family, inverseStaysInsideTheSupportAndForAnyNumberInsideTheTable) {
  for (const double u : {0.0, 5e-324, 1.0, std::nextafter(1.0, 0.0)}) {
    const double x = member_->inverse(u);
    EXPECT_TRUE(x >= GetParam().lower && x <= GetParam().upper) << "u " << u << " x " << x;
  }
  for (const double u : {-1.0, 2.0, 1e300, -kInfinity, kInfinity, kNan}) {
    const double x = member_->inverse(u);
    EXPECT_TRUE(x >= member_->table.front().x && x <= member_->table.back().x) << "u " << u << " x " << x;
  }
  EXPECT_FALSE(member_->cumulative(kNan) > 1.0);
  EXPECT_FALSE(member_->density(kInfinity) > 0.0);
}

INSTANTIATE_TEST_SUITE_P(Members, Family, testing::ValuesIn(kMembers),
                         [](const auto& row) { return std::string(row.param.name); });

// Parameters that no search can bracket fail, quickly, with an empty table; extreme but proper ones can be sampled.
TEST(Distribution, improperAndExtremeParameters) {
  struct Row {
    const char* type;
    std::vector<std::string> fields;
    double median;  // nan: refused
    double tolerance = 0.0;
  };
  const std::vector<Row> rows{
      {"Normal", {"0", "0", "0.001", "0.999"}, kNan},
      {"Normal", {"0", "-1", "0.001", "0.999"}, kNan},
      {"Normal", {"nan", "1", "0.001", "0.999"}, kNan},
      {"Normal", {"inf", "1", "0.001", "0.999"}, kNan},
      {"LogNormal", {"0", "40", "0.001", "0.999"}, kNan},
      {"Exponential", {"0", "0", "0.999"}, kNan},
      {"Gamma", {"-2", "1", "0", "0.999"}, kNan},
      {"Weibull", {"0.005", "1", "0", "0.999"}, kNan},
      {"Uniform", {"0:1:0.5"}, kNan},
      {"LogUniform", {"-2:-1:1"}, kNan},
      {"Normal", {"1e12", "1e-3", "0.001", "0.999"}, 1e12, 1e-3},
      {"Normal", {"0", "1e-300", "0.001", "0.999"}, 0.0, 1e-305},
      {"LogNormal", {"0", "5", "0.001", "0.999"}, 1.0, 1e-4},
      {"Weibull", {"0.1", "1", "0", "1"}, std::pow(std::log(2.0), 10.0), 1e-5},
      {"Beta", {"0.01", "0.01", "0", "1"}, 0.5, 1e-6},
      {"Beta", {"1e6", "1e6", "0", "1"}, 0.5, 1e-8},
      {"Gamma", {"1e8", "1", "0", "1"}, 1e8 - 1.0 / 3.0, 0.1},
      {"Uniform", {"0:1e-100:1"}, 5e-101, 1e-108},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.type + (' ' + row.fields[0]));
    const auto distribution = distributionOf(row.type, row.fields);
    ASSERT_NE(distribution, nullptr);
    ASSERT_EQ(distribution->prepareInverse(), !std::isnan(row.median));
    if (std::isnan(row.median))
      EXPECT_TRUE(distribution->table.empty());
    else
      EXPECT_NEAR(distribution->inverse(0.5), row.median, row.tolerance);
  }
}

}  // namespace
}  // namespace tarvex
