#include "factors/IntervalDistribution.h"

#include <gtest/gtest.h>

#include <cmath>

#include "factors/Discrete.h"
#include "factors/LogUniform.h"
#include "factors/TabulatedValues.h"
#include "support/FailingCalls.h"
#include "support/TempDirectory.h"
#include "support/TextFiles.h"

namespace tarvex {
namespace {

std::unique_ptr<Interval> interval(double left, double right, double weight = 1.0) {
  return std::make_unique<Interval>(left, right, weight);
}

std::string listed(const IntervalDistribution& distribution) {
  std::string text;
  for (std::size_t i = 0; i < distribution.count(); ++i) {
    const Interval& row = *distribution.intervalAt(i);
    text += std::to_string(row.left) + ' ' + std::to_string(row.right) + ' ' + std::to_string(row.weight) + '\n';
  }
  return text;
}

TEST(IntervalDistribution, intervalsMayTouchAndPointsAreUnique) {
  Uniform uniform;
  EXPECT_TRUE(uniform.addInterval(interval(1.0, 2.0)));
  EXPECT_TRUE(uniform.addInterval(interval(3.0, 4.0)));
  EXPECT_FALSE(uniform.addInterval(interval(3.5, 5.0)));
  EXPECT_EQ(uniform.errorText, "Interval to insert overloads previous intervals stored");
  uniform.removeAt(3);
  uniform.removeAt(0);
  EXPECT_EQ(uniform.intervalAt(0)->left, 1.0);
  Discrete discrete;
  EXPECT_TRUE(discrete.addPoint(interval(-7.0, 0.0)));
  EXPECT_FALSE(discrete.addPoint(interval(1.0, 9.0)));
  EXPECT_EQ(discrete.errorText, "The new point already exists");
}

TEST(IntervalDistribution, copiesTakeGoodWeightsOnly) {
  LogUniform original;
  ASSERT_TRUE(original.addInterval(interval(3.0, 4.0, 1.5)));
  ASSERT_TRUE(original.addInterval(interval(4.0, 5.0, 0.25)));
  const std::unique_ptr<Factor> copy = original.clone();
  auto& intervals = dynamic_cast<IntervalDistribution&>(*copy);
  EXPECT_EQ(intervals.intervalAt(1)->weight, 1.0);
  EXPECT_EQ(intervals.intervalAt(1)->errorText, "Weight value error");
  EXPECT_EQ(intervals.intervalAt(2)->weight, 0.25);
  EXPECT_FALSE(intervals.intervalAt(0)->setBounds(-1.0, 1.0));  // still a logarithmic one
}

TEST(Discrete, ascendsAtEachRunningSum) {
  Discrete discrete;
  discrete.clear();
  discrete.addPoint(interval(1.0, 2.0, 0.2));
  discrete.addPoint(interval(2.0, 3.0, 0.3));
  discrete.addPoint(interval(3.0, 4.0, 0.5));
  const std::vector<std::pair<double, double>> rows{{0.0, 1.0}, {0.19, 1.0}, {0.2, 2.0}, {0.49, 2.0},
                                                    {0.5, 3.0}, {0.99, 3.0}, {1.0, 3.0}, {NAN, 3.0}};
  for (const auto& [u, x] : rows) EXPECT_EQ(discrete.value(u), x) << u;
}

class TabulatedValues : public testing::Test {
 protected:
  std::string message(const std::string& text, IntervalDistribution& distribution) {
    test::writeFile(path_, text);
    std::string reason;
    const std::string before = listed(distribution);
    const bool loaded = loadTabulatedValues(path_, distribution, reason);
    EXPECT_EQ(loaded, reason.empty());
    EXPECT_TRUE(loaded || listed(distribution) == before);
    return reason;
  }

  test::TempDirectory directory_;
  std::string path_ = directory_.file("table.fac");
};

TEST_F(TabulatedValues, comeBackFromTheirFile) {
  Discrete discrete;
  Uniform uniform;
  LogUniform logUniform;
  const std::vector<std::pair<IntervalDistribution*, const char*>> rows{
      {&discrete, "2\n-1.5\t0.25\n4\t0.75\n"},
      {&uniform, "3\n0\t1\t0.333333\n1\t2\t0.333333\n3\t4\t0.333333\n"},
      {&logUniform, "1\n0.5\t2\t1\n"},
  };
  for (const auto& [distribution, text] : rows) {
    ASSERT_EQ(message(text, *distribution), "");
    EXPECT_TRUE(distribution->checkWeights()) << text;
    std::string reason;
    ASSERT_TRUE(saveTabulatedValues(path_, *distribution, reason));
    EXPECT_EQ(test::readFile(path_), text);
  }
  EXPECT_EQ(listed(discrete), "-1.500000 -0.500000 0.250000\n4.000000 5.000000 0.750000\n");
}

TEST_F(TabulatedValues, damagedOnesLeaveTheFactor) {
  Discrete discrete;
  LogUniform logUniform;
  const char* const kReading = "Error reading tabulated values file";
  for (const char* text : {"", "x", "0\n", "-1\n", "2147483647\n1\t0.5\n", "2\n1\t0.5\n", "2\n1\t0.5\n1\t0.5\n",
                           "1\n1\t0\n", "1\n1\t1.5\n", "1\n1e999\t1\n", "1\nnan\t1\n", "1 1\t1\n"}) {
    EXPECT_EQ(message(text, discrete), kReading) << text;
  }
  for (const char* text : {"1\n0\t1\t1\n", "1\n2\t1\t1\n", "2\n1\t3\t0.5\n2\t4\t0.5\n", "1\n1\t2\n"}) {
    EXPECT_EQ(message(text, logUniform), kReading) << text;
  }
}

TEST_F(TabulatedValues, messagesTellOpeningFromContent) {
  Uniform uniform;
  std::string reason;
  EXPECT_FALSE(loadTabulatedValues(directory_.file("none"), uniform, reason));
  EXPECT_EQ(reason, "Error opening tabulated values file");
  EXPECT_FALSE(saveTabulatedValues(directory_.file("none/table.fac"), uniform, reason));
  EXPECT_EQ(reason, "Error opening saving file");
  test::FailingCalls calls;
  calls.fail(test::FailingCalls::kWrite, 1);
  EXPECT_FALSE(saveTabulatedValues(path_, uniform, reason));
  EXPECT_EQ(reason, "Error writing tabulated values file");
  EXPECT_TRUE(directory_.entries().empty());
}

}  // namespace
}  // namespace tarvex
