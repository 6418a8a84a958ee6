#include "factors/Distribution.h"

#include <bit>
#include <cstdlib>
#include <random>

#include "factors/FactorText.h"
#include "factors/TruncatedDistribution.h"
#include "support/Test.h"

namespace tarvex {
namespace {

// A member of the family with the ends of its support.
struct Member {
  const char *name, *type;
  std::vector<std::string> fields;
  double lower, upper;
};

// clang-format off
const std::vector<Member> kMembers{
    {"Normal",             "Normal",      {"5", "2", "0.001", "0.999"},              -kInf, kInf},
    {"NormalFarOut",       "Normal",      {"1e6", "1", "0.05", "0.9"},               -kInf, kInf},
    {"LogNormal",          "LogNormal",   {"0", "0.5", "0.001", "0.999"},            0.0, kInf},
    {"Exponential",        "Exponential", {"0.5", "3", "0.999"},                     3.0, kInf},
    {"ExponentialFarOut",  "Exponential", {"1", "1e5", "0.9"},                       1e5, kInf},
    {"Gamma",              "Gamma",       {"2.5", "1.5", "0.25", "0.999"},           0.25, kInf},
    {"GammaPole",          "Gamma",       {"0.5", "2", "0", "0.999"},                0.0, kInf},
    {"Weibull",            "Weibull",     {"1.8", "2", "0.5", "0.999"},              0.5, kInf},
    {"WeibullPole",        "Weibull",     {"0.8", "5", "0", "0.95"},                 0.0, kInf},
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
  EXPECT_EQ(member_->cumulative(-kInf), 0.0);
  EXPECT_EQ(member_->cumulative(kInf), 1.0);
  EXPECT_EQ(member_->cumulative(std::nextafter(GetParam().lower, -kInf)), 0.0);
  EXPECT_NEAR(member_->cumulative(std::nextafter(GetParam().upper, kInf)), 1.0, 1e-15);
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
  for (int k = 1; k < 100; ++k) {
    const TablePoint& point = member_->table[static_cast<std::size_t>(k)];
    if (static_cast<int>(point.p * 100.0) == k) {
      EXPECT_EQ(member_->Distribution::inverse(point.p), point.x) << k;
    }
  }
  for (int k = 1; k < 1000; ++k) {
    const double u = k / 1000.0;
    const double x = member_->inverse(u);
    EXPECT_NEAR(member_->cumulative(x), target(u), 1.1e-6 * target(u)) << "u " << u << " x " << x;
    EXPECT_EQ(member_->value(u), x);
  }
}

// A column's values are those of the plain bisections, bit by bit: numbers at random, at both ends and around the
// table's points. TARVEX_LONG_TEST is the number of values of each kind beyond the few that a usual run takes.
TEST_P(Family, columnIsTheBisectionsBitByBit) {
  const char* const asked = std::getenv("TARVEX_LONG_TEST");
  const int blocks = asked == nullptr ? 20 : std::atoi(asked) / 1000;
  std::mt19937_64 random(1);
  std::vector<double> u(1000), x(u.size());
  for (int block = 0; block < blocks; ++block) {
    for (double& number : u) {
      number = static_cast<double>(random() >> 11) * 0x1p-53;
      const auto choice = random() % 16;
      if (choice < 3) number = std::pow(number, 12.0);
      if (choice == 1) number = 1.0 - number;
      if (choice == 3) number = std::floor(number * 100.0) / 100.0 + 1e-12 * (number - 0.5);
    }
    if (block % 2 == 0) std::sort(u.begin(), u.end());
    member_->values(u.data(), x.data(), u.size());
    for (std::size_t i = 0; i < u.size(); ++i)
      ASSERT_EQ(std::bit_cast<std::uint64_t>(x[i]), std::bit_cast<std::uint64_t>(member_->value(u[i]))) << u[i];
  }
}

TEST_P(Family, inverseStaysInsideTheSupportAndForAnyNumberInsideTheTable) {
  for (const double u : {0.0, 5e-324, 1.0, std::nextafter(1.0, 0.0)}) {
    const double x = member_->inverse(u);
    EXPECT_TRUE(x >= GetParam().lower && x <= GetParam().upper) << "u " << u << " x " << x;
  }
  for (const double u : {-1.0, 2.0, 1e300, -kInf, kInf, kNan}) {
    const double x = member_->inverse(u);
    EXPECT_TRUE(x >= member_->table.front().x && x <= member_->table.back().x) << "u " << u << " x " << x;
  }
  EXPECT_FALSE(member_->cumulative(kNan) > 1.0);
  EXPECT_FALSE(member_->density(kInf) > 0.0);
}

INSTANTIATE_TEST_SUITE_P(Members, Family, testing::ValuesIn(kMembers),
                         [](const auto& row) { return std::string(row.param.name); });

// Moments, cumulative and density where the plain formulas overflow, vanish or cancel, by 60-digit arithmetic; and the
// inverse there.
struct Extreme {
  const char* type;
  std::vector<std::string> fields;
  double x, mean, stdDev, cumulative, density;
};

TEST(Distribution, extremeParameters) {
  constexpr double kAgreement = 1e-5;  // of a plain formula that stands
  // clang-format off
  const std::vector<Extreme> rows{
      {"Weibull", {"36", "4e8", "0", "0.999"}, 4e8, 393884204.11750196, 13761234.976627031, 0.63212055882855768, 3.3109149705429809e-8},
      {"Weibull", {"1e6", "2", "1", "0.999"}, 2.999998, 2.9999988455706483, 2.5650963052351202e-6, 0.30779924514234778, 127323.27710986013},
      {"Weibull", {"0.01", "1", "0", "0.999"}, 1e-9, 9.3326215443943257e157, 2.8083053027845336e187, 0.55639933134266211, 3605721.604754835},
      {"Weibull", {"2", "1e-200", "0", "0.999"}, 2e-200, 8.86226925452758e-201, 4.6325137517610423e-201, 0.98168436111126582, 7.3262555554936722e198},
      {"Weibull", {"700", "5", "0", "0.999"}, 4.99, 4.9958871101649617, 9.1440028621722566e-3, 0.21827441112259714, 27.00416319229108},
      {"Gamma", {"200", "1", "0", "0.999"}, 210.0, 200.0, 14.14213562373095, 0.76396967450115385, 0.021083359201786393},
      {"Gamma", {"3", "1e-200", "0", "0.999"}, 2e200, 3.0000000000000001e200, 1.7320508075688773e200, 0.32332358381693651, 2.7067056647322538e-201},
      {"Gamma", {"5e4", "2", "1", "0.999"}, 2.51e4, 25001.0, 111.80339887498948, 0.81213923025291433, 2.4039491375548981e-3},
      {"Beta", {"800", "900", "0", "1"}, 0.47, 0.47058823529411765, 0.012102223526438581, 0.48100415790699648, 32.9155568515646},
      {"Beta", {"2000", "3000", "-1", "1"}, -0.2, 0.8, 0.013855021027716425, 0.50076778794558917, 28.789659628268036},
      {"Beta", {"2", "3", "0", "1e200"}, 3e199, 3.9999999999999999e199, 1.9999999999999999e199, 0.34830000000000003, 1.7640000000000001e-200},
      {"Uniform", {"2000000:2000001:1"}, 2000000.25, 2000000.5, 0.28867513459481288, 0.25, 1.0},
      {"Uniform", {"0:1e-120:1"}, 2.5e-121, 4.9999999999999999e-121, 2.8867513459481288e-121, 0.25, 1.0e120},
      {"Uniform", {"1e150:3e150:1"}, 1.5e150, 2.0000000000000001e150, 5.7735026918962581e149, 0.25000000000000002, 4.9999999999999996e-151},
      {"Uniform", {"-1.5e308:1.5e308:1"}, 7.5e307, 0.0, 8.6602540378443866e307, 0.75, 3.3333333333333333e-309},
      {"LogUniform", {"2000000:2000001:1"}, 2000000.25, 2000000.4999999583, 0.28867513459481228, 0.25000004687499219, 1.0000001249999635},
      {"LogUniform", {"1e9:1000000001:1"}, 1000000000.5, 1.0000000005e9, 0.28867513459481288, 0.500000000125, 1.0},
      {"LogUniform", {"1e160:1e170:1"}, 1e165, 4.3429448185982239e168, 1.4081408709864108e169, 0.49999999999999999, 4.3429448190325187e-167},
      {"LogUniform", {"1e-200:1e-190:1"}, 1e-195, 4.3429448185982239e-192, 1.4081408709864108e-191, 0.5, 4.3429448190325179e193},
      {"Triangular", {"2000000", "2000000.5", "2000001"}, 2000000.75, 2000000.5, 0.20412414523193151, 0.875, 1.0},
      {"Triangular", {"1e200", "2e200", "4e200"}, 1.5e200, 2.3333333333333333e200, 6.2360956446232355e199, 0.083333333333333333, 3.3333333333333334e-201},
      {"Triangular", {"1e-200", "2e-200", "4e-200"}, 3e-200, 2.3333333333333333e-200, 6.2360956446232355e-201, 0.83333333333333333, 3.3333333333333334e199},
      {"Triangular", {"1000", "1001", "1003"}, 1001.5, 1001.3333333333333, 0.62360956446232356, 0.625, 0.5},
      {"LogNormal", {"400", "0.1", "0.001", "0.999"}, 5e173, 5.2476424155008171e173, 5.2607888940527114e172, 0.33235846994126638, 7.2635713404100012e-174},
      {"LogNormal", {"2", "1e-7", "0.001", "0.999"}, 7.3890553, 7.3890560989306872, 7.3890560989307053e-7, 0.13979627038094677, 300926.86380060652},
      {"Normal", {"0", "1e-200", "0.001", "0.999"}, 1e-200, 0.0, 9.9999999999999998e-201, 0.84134474606854295, 2.4197072451914335e199},
      {"Normal", {"0", "1e200", "0.001", "0.999"}, -1e200, 0.0, 9.9999999999999997e199, 0.15865525393145705, 2.4197072451914336e-201},
      {"Discrete", {"2000000:2000001:0.5", "2000001:2000002:0.5"}, 2000000.0, 2000000.5, 0.5, 0.5, 0.5},
      {"Exponential", {"1e-300", "0", "0.999"}, 1e300, 1.0e300, 1.0e300, 0.63212055882855768, 3.6787944117144232e-301},
  };
  // clang-format on
  for (const Extreme& row : rows) {
    SCOPED_TRACE(row.type + (' ' + row.fields[0] + ' ' + row.fields[1 % row.fields.size()]));
    const auto d = distributionOf(row.type, row.fields);
    ASSERT_NE(d, nullptr);
    EXPECT_TRUE(test::agrees(d->mean(), row.mean, 1e-12, kAgreement * row.stdDev)) << d->mean();
    EXPECT_TRUE(test::agrees(d->stdDev(), row.stdDev, kAgreement)) << d->stdDev();
    EXPECT_TRUE(test::agrees(d->cumulative(row.x), row.cumulative, 1e-7)) << d->cumulative(row.x);
    EXPECT_TRUE(test::agrees(d->density(row.x), row.density, 1e-7)) << d->density(row.x);
    EXPECT_EQ(d->parameterProblem(), "");
    if (!d->needsTable()) continue;
    ASSERT_TRUE(d->prepareInverse());
    const auto* truncated = dynamic_cast<const TruncatedDistribution*>(d.get());
    const double left = truncated == nullptr ? 0.0 : truncated->leftTruncation();
    const double right = truncated == nullptr ? 1.0 : truncated->rightTruncation();
    for (const double u : {0.001, 0.3, 0.5, 0.9, 0.999})
      EXPECT_NEAR(d->cumulative(d->value(u)), (right - left) * u + left, 2e-6) << u << ' ' << d->value(u);
  }
}

// Parameters that no search can bracket fail, quickly, with an empty table; extreme but proper ones can be sampled.
TEST(Distribution, improperParametersAndFarEnds) {
  const struct {
    const char* type;
    std::vector<std::string> fields;
    double median;  // nan: refused
    double tolerance = 0.0;
  } rows[] = {
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
  for (const auto& row : rows) {
    SCOPED_TRACE(row.type + (' ' + row.fields[0]));
    const auto distribution = distributionOf(row.type, row.fields);
    ASSERT_NE(distribution, nullptr);
    ASSERT_EQ(distribution->prepareInverse(), !std::isnan(row.median));
    if (std::isnan(row.median))
      EXPECT_TRUE(distribution->table.empty() && std::isnan(distribution->inverse(0.5)));
    else
      EXPECT_NEAR(distribution->inverse(0.5), row.median, row.tolerance);
  }
}

// A cumulative that is no number somewhere on their way ends both searches without a table.
TEST(Distribution, aCumulativeThatIsNoNumberFails) {
  class Broken : public Distribution {
   public:
    explicit Broken(double nanFrom) : Distribution("Broken", "broken"), nanFrom_(nanFrom) {}
    double mean() const override { return 0.5; }
    double stdDev() const override { return 0.3; }
    double cumulative(double x) const override {
      return x > nanFrom_ && x < nanFrom_ + 0.1 ? kNan : std::clamp(x, 0.0, 1.0);
    }
    double density(double) const override { return 1.0; }

   private:
    double nanFrom_;
  };
  for (const double nanFrom : {kInf, 0.0, 0.45, 0.92}) {
    Broken broken(nanFrom);
    EXPECT_EQ(broken.prepareInverse(), nanFrom == kInf) << nanFrom;
  }
}

}  // namespace
}  // namespace tarvex
