#include <fstream>
#include <sstream>

#include "factors/FactorText.h"
#include "factors/InverseSearch.h"
#include "factors/NumericRoutines.h"
#include "support/Test.h"

namespace tarvex {
namespace {

using test::agrees;

constexpr double kEpsilon = std::numeric_limits<double>::epsilon();

struct Outcome {
  double p = 0.0;
  double q = 0.0;
  int status = 99;
  double bound = 0.0;
};

Outcome normal(double x, double mean, double sd) {
  Outcome o;
  cdfNormal(1, o.p, o.q, x, mean, sd, o.status, o.bound);
  return o;
}

Outcome gammaRatio(double x, double shape, double scale) {
  Outcome o;
  cdfGamma(1, o.p, o.q, x, shape, scale, o.status, o.bound);
  return o;
}

Outcome betaRatio(double x, double y, double a, double b) {
  Outcome o;
  cdfBeta(1, o.p, o.q, x, y, a, b, o.status, o.bound);
  return o;
}

// Closed forms and published values (M. Abramowitz, I. A. Stegun, tables 26.1 and 26.2); tails to full relative
// precision on the smaller side.
TEST(NumericRoutines, knownValues) {
  const double tiny = 1e-12;
  const struct {
    const char* name;
    Outcome outcome;
    double p, q;
    double tolerance;  // relative, on both
  } rows[] = {
      {"normal 1", normal(1.0, 0.0, 1.0), 0.84134474606854294859, 0.15865525393145705141, 4 * kEpsilon},
      {"normal -10", normal(-10.0, 0.0, 1.0), 7.6198530241605260660e-24, 1.0, 100 * kEpsilon},
      {"normal 38", normal(38.0, 0.0, 1.0), 1.0, 2.8854283600687843e-316, 1e-6},
      {"gamma exponential", gammaRatio(2.0, 1.0, 3.0), 1.0 - std::exp(-6.0), std::exp(-6.0), 8 * kEpsilon},
      {"gamma half", gammaRatio(0.5, 0.5, 2.0), std::erf(1.0), std::erfc(1.0), 8 * kEpsilon},
      {"gamma small x", gammaRatio(1e-10, 2.0, 1.0), 0.5e-20 * (1.0 - 2e-10 / 3.0), 1.0, 8 * kEpsilon},
      {"beta power", betaRatio(tiny, 1.0 - tiny, 5.0, 1.0), std::pow(tiny, 5.0), 1.0, 20 * kEpsilon},
      {"beta arcsine", betaRatio(0.25, 0.75, 0.5, 0.5), 1.0 / 3.0, 2.0 / 3.0, 8 * kEpsilon},
      {"beta tiny shape", betaRatio(0.5, 0.5, 1e-8, 1e-8), 0.5, 0.5, 1e-14},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(row.outcome.status, 0) << row.name;
    EXPECT_TRUE(agrees(row.outcome.p, row.p, row.tolerance)) << row.name;
    EXPECT_TRUE(agrees(row.outcome.q, row.q, row.tolerance)) << row.name;
  }
}

TEST(NumericRoutines, logarithmsOfGammaAndBeta) {
  EXPECT_TRUE(agrees(lnGamma(1e-300), 690.77552789821370521, 4 * kEpsilon));
  EXPECT_EQ(lnGamma(1.0), 0.0);
  EXPECT_TRUE(std::isnan(lnGamma(-121474836472.5)));
  EXPECT_TRUE(std::isnan(lnBeta(2.0, -121474836472.5)));
  EXPECT_TRUE(agrees(lnGamma(1e10), 1e10 * (std::log(1e10) - 1.0) - 0.5 * std::log(1e10) + 0.91893853320467274178,
                     8 * kEpsilon));
  // ln B(a, a) behind the range of B: Stirling's series, whose rest is far below the tolerance here.
  const double a = 5000.0;
  const double series = 0.5 * std::log(4.0 * 3.14159265358979323846 / a) - 2.0 * a * std::log(2.0) + 1.0 / (8.0 * a);
  EXPECT_TRUE(agrees(lnBeta(a, a), series, 1e-13));
}

constexpr double kRelative = 1e-11;  // moments, cumulatives, densities
constexpr double kAbsolute = 1e-15;  // cumulatives besides
constexpr double kValues = 1e-9;     // points and inverses, of the larger of their size and the deviation

// One block of the list of expected values.
class Block {
 public:
  explicit Block(const std::string& heading) {
    std::istringstream words(heading);
    std::string type;
    words >> type;
    std::vector<std::string> fields;
    for (std::string field; words >> field;) fields.push_back(field);
    distribution_ = distributionOf(type, fields);
  }

  bool valid() const { return distribution_ != nullptr; }

  void check(const std::string& key, const std::vector<double>& numbers, const std::string& word) {
    if (key == "search") {
      prepare(word);
    } else if (key == "moments") {
      near(distribution_->mean(), numbers[0], std::fabs(numbers[0]) * kRelative);
      near(distribution_->stdDev(), numbers[1], std::fabs(numbers[1]) * kRelative);
      deviation_ = numbers[1];
    } else if (key == "at") {
      near(distribution_->cumulative(numbers[0]), numbers[1], numbers[1] * kRelative + kAbsolute);
      if (numbers.size() > 2) near(distribution_->density(numbers[0]), numbers[2], numbers[2] * kRelative);
    } else if (key == "point") {
      const TablePoint point = distribution_->table.at(static_cast<std::size_t>(numbers[0]));
      near(point.x, numbers[1], valueTolerance(numbers[1]));
      near(point.p, numbers[2], kRelative);
    } else {
      ASSERT_EQ(key, "inverse");
      near(distribution_->value(numbers[0]), numbers[1], numbers.size() > 2 ? numbers[2] : valueTolerance(numbers[1]));
    }
  }

 private:
  void prepare(const std::string& search) {
    std::vector<TablePoint> points;
    if (search == "counted" || search == "second") {
      EXPECT_EQ(countedSearch(*distribution_, points), search == "counted");
    }
    EXPECT_EQ(distribution_->needsTable(), search != "none");
    if (!distribution_->needsTable()) return;
    ASSERT_TRUE(distribution_->prepareInverse());
    EXPECT_EQ(distribution_->table.size(), kTablePoints);
  }

  double valueTolerance(double expected) const { return std::max(std::fabs(expected), deviation_) * kValues; }

  static void near(double actual, double expected, double tolerance) { EXPECT_NEAR(actual, expected, tolerance); }

  std::unique_ptr<Distribution> distribution_;
  double deviation_ = 0.0;
};

TEST(InverseTable, agreesWithExpectedValues) {
  std::ifstream file(TARVEX_TEST_DATA "/golden/inverse.txt");
  ASSERT_TRUE(file);
  std::unique_ptr<Block> block;
  std::string heading;
  int blocks = 0;
  for (std::string line; std::getline(file, line);) {
    std::istringstream words(line);
    std::string key;
    if (!(words >> key)) continue;
    if (std::isupper(static_cast<unsigned char>(key[0])) != 0) {
      heading = line;
      block = std::make_unique<Block>(line);
      ASSERT_TRUE(block->valid()) << line;
      ++blocks;
      continue;
    }
    std::vector<double> numbers;
    std::string word;
    while (words >> word) {
      double number = 0.0;
      if (std::istringstream(word) >> number) numbers.push_back(number);
    }
    SCOPED_TRACE(heading + ": " + line);
    block->check(key, numbers, word);
  }
  EXPECT_EQ(blocks, 36);
}

}  // namespace
}  // namespace tarvex
